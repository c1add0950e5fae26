// CCineStoreAVI: the codec that compresses the movie.
#include "Utils_Statics/CCineStoreAVI.h"

#include "recording/CaptureSettings.h"
#include "recording/CodecOptions.h"

#include <base/Owner.h>

#include <algorithm>
#include <cstddef>
#include <cwchar>
#include <memory>
#include <new>

using namespace utils_statics;

namespace {

struct CodecTraits
{
    using Handle = HIC;
    static HIC Empty() noexcept { return nullptr; }
    static void Release(HIC codec) noexcept { ICClose(codec); }
};
using Codec = base::Owner<CodecTraits>;

void CopyName(wchar_t* target, std::size_t size, const wchar_t* name)
{
    const std::size_t length = std::min(std::wcslen(name), size - 1);
    std::wmemcpy(target, name, length);
    target[length] = L'\0';
}

// Reads the information of the installed video codec with that index; false when there are no more.
bool InstalledCodec(DWORD index, ICINFO& info)
{
    info = {};
    info.dwSize = sizeof info;
    return ICInfo(ICTYPE_VIDEO, index, &info) != FALSE;
}

bool IsNamed(const Codec& codec, const wchar_t* name, ICINFO& info)
{
    return codec && ICGetInfo(codec.get(), &info, sizeof info) != 0 &&
           std::wcscmp(info.szName, name) == 0;
}

// Fetches the codec's state into a new block that the options point to. Returns the block's size,
// or 0 when there is no state.
int FetchState(const Codec& codec, AVICOMPRESSOPTIONS& options)
{
    const auto size = static_cast<LONG>(ICSendMessage(codec.get(), ICM_GETSTATE, 0, 0));
    if (size <= 0) return 0; // negative when the codec does not know the message
    std::unique_ptr<std::byte[]> state(new (std::nothrow)
                                           std::byte[static_cast<std::size_t>(size)]());
    if (!state) return 0;
    ICSendMessage(codec.get(), ICM_GETSTATE, reinterpret_cast<DWORD_PTR>(state.get()),
                  static_cast<DWORD_PTR>(size));
    options.cbParms = static_cast<DWORD>(size);
    options.lpParms = state.release();
    return size;
}

} // namespace

void CCineStoreAVI::SetCompression(wchar_t* name)
{
    if (name) CopyName(compressionName, compressionNameSize, name);
}

bool CCineStoreAVI::ChooseCodec(const CString& codec, CodecOptions& options)
{
    CopyName(compressionName, compressionNameSize, codec);
    if (FindCompressorOption(compressionName, &options.Get()) == -1) return false;
    options.Get().dwQuality = RecordQuality();
    return true;
}

// Returns the size of the codec's state (0 for none), or -1 when no installed codec has the name.
// The options' lpParms is the state, an array of std::byte that the caller deletes.
// NOLINTNEXTLINE(performance-unnecessary-value-param): contract
int CCineStoreAVI::FindCompressorOption(CString name, AVICOMPRESSOPTIONS* options)
{
    ICINFO info;
    for (DWORD i = 0; InstalledCodec(i, info); ++i) {
        const Codec codec(ICOpen(ICTYPE_VIDEO, info.fccHandler, ICMODE_QUERY));
        if (!IsNamed(codec, name, info)) continue;
        options->fccType = info.fccType;
        options->fccHandler = info.fccHandler;
        // Deliberate: the flags are copied unchanged, although they mean something else in the
        // options.
        options->dwFlags = info.dwFlags;
        return FetchState(codec, *options);
    }
    return -1;
}
