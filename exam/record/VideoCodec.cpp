#include "record/VideoCodec.h"

#include <afxwin.h>
#include <base/Owner.h>

#include <vfw.h>

namespace exam {

namespace {

constexpr wchar_t section[] = L"Settings\\Capture";
constexpr wchar_t entry[] = L"RecordCodec";
constexpr wchar_t uncompressed[] = L"Uncompressed";
constexpr wchar_t firstChoice[] = L"MJPG";

struct CodecTraits
{
    using Handle = HIC;
    static HIC Empty() noexcept { return nullptr; }
    static void Release(HIC codec) noexcept { ICClose(codec); }
};

ICINFO EmptyInfo()
{
    ICINFO info{};
    info.dwSize = sizeof info;
    return info;
}

// Asks one installed codec for its short name; empty when it cannot be opened.
std::wstring ShortName(const ICINFO& listed)
{
    const base::Owner<CodecTraits> codec(ICOpen(ICTYPE_VIDEO, listed.fccHandler, ICMODE_QUERY));
    ICINFO info = EmptyInfo();
    return codec && ICGetInfo(codec.get(), &info, sizeof info) != 0 ? info.szName : L"";
}

} // namespace

std::optional<std::wstring> MovieCodec()
{
    CWinApp& app = *AfxGetApp();
    const CString codec = app.GetProfileString(section, entry, L"");
    if (!codec.IsEmpty()) return std::wstring(codec.GetString());
    if (!app.WriteProfileString(section, entry, firstChoice)) return {};
    return firstChoice;
}

bool IsUsableCodec(const std::wstring& name)
{
    if (name == uncompressed) return true;
    for (DWORD i = 0;; ++i) {
        ICINFO listed = EmptyInfo();
        if (!ICInfo(ICTYPE_VIDEO, i, &listed)) return false;
        if (ShortName(listed) == name) return true;
    }
}

} // namespace exam
