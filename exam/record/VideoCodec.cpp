#include "record/VideoCodec.h"

#include <afxwin.h>

#include <vfw.h>

namespace exam {

namespace {

constexpr wchar_t section[] = L"Settings\\Capture";
constexpr wchar_t entry[] = L"RecordCodec";
constexpr wchar_t uncompressed[] = L"Uncompressed";
constexpr wchar_t firstChoice[] = L"MJPG";

// Asks one installed codec for its short name; empty when it cannot be opened.
std::wstring ShortName(const ICINFO& listed)
{
    ICINFO info{};
    info.dwSize = sizeof info;
    const HIC codec = ICOpen(ICTYPE_VIDEO, listed.fccHandler, ICMODE_QUERY);
    if (!codec) return {};
    const bool answered = ICGetInfo(codec, &info, sizeof info) != 0;
    ICClose(codec);
    return answered ? info.szName : L"";
}

} // namespace

std::wstring MovieCodec()
{
    CWinApp& app = *AfxGetApp();
    const CString codec = app.GetProfileString(section, entry, L"");
    if (!codec.IsEmpty()) return codec.GetString();
    app.WriteProfileString(section, entry, firstChoice);
    return firstChoice;
}

bool IsUsableCodec(const std::wstring& name)
{
    if (name == uncompressed) return true;
    ICINFO info{};
    for (DWORD i = 0; info = {}, info.dwSize = sizeof info, ICInfo(ICTYPE_VIDEO, i, &info); ++i)
        if (ShortName(info) == name) return true;
    return false;
}

} // namespace exam
