#include "recording/CaptureSettings.h"

#include "environment/Application.h"

namespace utils_statics {

namespace {

constexpr wchar_t section[] = L"Settings\\Capture";

} // namespace

CString RecordCodec()
{
    return ProfileText(section, L"RecordCodec", L"XVID");
}

DWORD RecordQuality()
{
    return ProfileNumber(section, L"RecordQuality", 100) * 100u;
}

} // namespace utils_statics
