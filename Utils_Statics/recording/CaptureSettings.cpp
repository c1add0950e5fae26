#include "recording/CaptureSettings.h"

#include <afxwin.h>

#include <cstdint>

namespace utils_statics {

namespace {

constexpr wchar_t section[] = L"Settings\\Capture";

} // namespace

CString RecordCodec()
{
    CWinApp* const app = AfxGetApp();
    return app ? app->GetProfileString(section, L"RecordCodec", L"XVID") : CString(L"XVID");
}

DWORD RecordQuality()
{
    CWinApp* const app = AfxGetApp();
    const std::uint32_t percent = app ? app->GetProfileInt(section, L"RecordQuality", 100) : 100;
    return percent * 100;
}

} // namespace utils_statics
