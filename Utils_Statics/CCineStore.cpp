#include "Utils_Statics/CCineStore.h"

#include <io.h>

#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <utility>

namespace {

constexpr long long countOffset = 4;
static_assert(offsetof(CineHeader, frameCount) == countOffset);

void CopyDescription(std::uint32_t (&words)[CineHeader::descWords], const uDataDesc& description)
{
    static_assert(sizeof description == sizeof words + sizeof(std::uint32_t));
    std::memcpy(words, reinterpret_cast<const char*>(&description) + sizeof(std::uint32_t),
                sizeof words);
}

// Removes what a failed write has left behind `end`, because the next block has to follow the last
// complete one. The number of bytes that the write reports is no help: it can be 0 after a part was
// written.
void CutBack(std::FILE* file, long long end)
{
    std::clearerr(file);
    if (end >= 0 && _fseeki64(file, end, SEEK_SET) == 0) _chsize_s(_fileno(file), end);
}

} // namespace

CCineStore::~CCineStore()
{
    CCineStore::EndStorage();
}

bool CCineStore::InitStorage(CString fileName, uData dataType, uDataDesc description, int e1,
                             int e2, int e3, int e4, int e5, int e6)
{
    type = dataType;
    frameCount = 0;
    CopyDescription(desc, description);
    const std::int32_t values[extraValues] = {e1, e2, e3, e4, e5, e6};
    std::memcpy(extra, values, sizeof extra);

    if (!CreateFile(fileName)) return false;
    const CineHeader& header = *this;
    if (std::fwrite(&header, sizeof header, 1, file) != 1) return false;
    path = std::move(fileName);
    return true;
}

bool CCineStore::CreateFile(const CString& fileName)
{
    if (file) std::fclose(std::exchange(file, nullptr));
    file = _wfopen(fileName, L"wb+");
    if (!file) return false;
    // Blocks go straight to the operating system, so that a killed process loses none that was
    // accepted. They are large; a buffer would only add a copy.
    std::setvbuf(file, nullptr, _IONBF, 0);
    return true;
}

bool CCineStore::AddFrame(void* data, int size)
{
    if (!AppendBlock(data, size)) return false;
    // The count wraps like the 32-bit field that it is.
    frameCount = static_cast<std::int32_t>(static_cast<std::uint32_t>(frameCount) + 1);
    return true;
}

bool CCineStore::AddECGData(void* data, int size)
{
    if (!AppendBlock(data, size)) return false;
    // Replaces the count, because readers of ECG files expect the size of the last block here.
    frameCount = size;
    return true;
}

bool CCineStore::AppendBlock(const void* data, int size)
{
    if (!file || !data || size <= 0) return false;
    const long long end = _ftelli64(file); // negative for a file without positions, such as a pipe
    if (std::fwrite(data, static_cast<std::size_t>(size), 1, file) == 1) return true;
    CutBack(file, end);
    return false;
}

bool CCineStore::EndStorage()
{
    if (!file) return false;
    const bool patched = PatchCount();
    std::fclose(std::exchange(file, nullptr));
    if (!patched) return false;
    Announce();
    return true;
}

void CCineStore::Announce() const
{
    if (!completeCallback) return;
    // The callback gets a copy, because it may start the next file, which records its own path.
    // Without memory for the copy it gets the path itself.
    const std::unique_ptr<wchar_t, decltype(&std::free)> copy(_wcsdup(path), &std::free);
    completeCallback(copy ? copy.get() : path.GetString(), userData);
}

bool CCineStore::PatchCount()
{
    return _fseeki64(file, countOffset, SEEK_SET) == 0 &&
           std::fwrite(&frameCount, sizeof frameCount, 1, file) == 1;
}

void CCineStore::SetCompleteCallback(CompleteCallback callback, void* callbackData)
{
    completeCallback = callback;
    userData = callbackData;
}
