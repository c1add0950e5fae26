#include <Utils_Statics/CCineStoreAVI.h>

#include "recording/CaptureSettings.h"

#include <algorithm>
#include <cstddef>
#include <cwchar>
#include <new>

using namespace utils_statics;

namespace {

void CopyName(wchar_t* target, std::size_t size, const wchar_t* name)
{
    const std::size_t length = std::min(std::wcslen(name), size - 1);
    std::wmemcpy(target, name, length);
    target[length] = L'\0';
}

// An installed codec, opened only to be asked.
class QueriedCodec
{
public:
    QueriedCodec(DWORD type, DWORD handler) : m_codec(ICOpen(type, handler, ICMODE_QUERY)) {}
    ~QueriedCodec()
    {
        if (m_codec) ICClose(m_codec);
    }
    QueriedCodec(const QueriedCodec&) = delete;
    QueriedCodec& operator=(const QueriedCodec&) = delete;

    bool IsNamed(const wchar_t* name, ICINFO& info) const
    {
        return m_codec && ICGetInfo(m_codec, &info, sizeof info) != 0 &&
               std::wcscmp(info.szName, name) == 0;
    }

    // Fetches the state into a block that the options point to and the caller owns. The state's
    // size; 0 without one.
    int FetchState(AVICOMPRESSOPTIONS& options) const
    {
        const auto size = static_cast<LONG>(ICSendMessage(m_codec, ICM_GETSTATE, 0, 0));
        if (size <= 0) return 0; // negative: the codec does not know the message
        std::unique_ptr<std::byte[]> state(new (std::nothrow)
                                               std::byte[static_cast<std::size_t>(size)]());
        if (!state) return 0;
        ICSendMessage(m_codec, ICM_GETSTATE, reinterpret_cast<DWORD_PTR>(state.get()),
                      static_cast<DWORD_PTR>(size));
        options.cbParms = static_cast<DWORD>(size);
        options.lpParms = state.release();
        return size;
    }

private:
    HIC m_codec;
};

} // namespace

void CCineStoreAVI::SetCompression(wchar_t* name)
{
    if (name) CopyName(compressionName, compressionNameSize, name);
}

bool CCineStoreAVI::CompressStream(const CString& codec)
{
    CopyName(compressionName, compressionNameSize, codec);
    AVICOMPRESSOPTIONS options{};
    const int found = FindCompressorOption(compressionName, &options);
    const std::unique_ptr<std::byte[]> state(static_cast<std::byte*>(options.lpParms));
    if (found == -1) return false;
    options.dwQuality = RecordQuality();
    PAVISTREAM stream = nullptr;
    if (FAILED(AVIMakeCompressedStream(&stream, rawStream.get(), &options, nullptr)) || !stream)
        return false;
    outStream.reset(stream);
    return true;
}

// The size of the codec's state (0 when it has none), or -1 when no installed codec has the name.
// The options' lpParms is then an array of std::byte that the caller deletes.
int CCineStoreAVI::FindCompressorOption(CString name, AVICOMPRESSOPTIONS* options)
{
    ICINFO info{};
    for (DWORD i = 0; info = {}, info.dwSize = sizeof info, ICInfo(ICTYPE_VIDEO, i, &info); ++i) {
        const QueriedCodec codec(ICTYPE_VIDEO, info.fccHandler);
        if (!codec.IsNamed(name, info)) continue;
        options->fccType = info.fccType;
        options->fccHandler = info.fccHandler;
        options->dwFlags =
            info.dwFlags; // as they stand, although these flags mean something else there
        return codec.FetchState(*options);
    }
    return -1;
}
