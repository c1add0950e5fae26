#include "record/VideoCodec.h"

#include <base/Owner.h>

#include <windows.h>
#include <vfw.h>

#include <cwchar>

namespace exam {

namespace {

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

bool IsSameName(const std::wstring& a, const std::wstring& b)
{
    return _wcsicmp(a.c_str(), b.c_str()) == 0;
}

} // namespace

std::optional<std::wstring> FindCodec(const std::wstring& name)
{
    if (IsSameName(name, uncompressedMovies)) return uncompressedMovies;
    for (DWORD i = 0;; ++i) {
        ICINFO listed = EmptyInfo();
        if (!ICInfo(ICTYPE_VIDEO, i, &listed)) return {};
        if (std::wstring installed = ShortName(listed); IsSameName(name, installed))
            return installed;
    }
}

} // namespace exam
