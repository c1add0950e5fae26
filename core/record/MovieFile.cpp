#include "record/MovieFile.h"

#include "base/FileReader.h"
#include "base/UnusedPath.h"
#include "image/AviChunks.h"

#include <base/Encoding.h>
#include <base/FilePath.h>
#include <base/FileReplacement.h>

#include <cstddef>
#include <cstdint>

namespace exam {

namespace {

std::wstring ShortPath(const std::wstring& path)
{
    std::wstring result(GetShortPathNameW(path.c_str(), nullptr, 0), L'\0');
    const auto size = static_cast<DWORD>(result.size());
    const DWORD length = GetShortPathNameW(path.c_str(), result.data(), size);
    result.resize(length < size ? length : 0);
    return result;
}

std::wstring FolderOf(const std::wstring& fullPath)
{
    return fullPath.substr(0, fullPath.find_last_of(L"\\/") + 1);
}

std::optional<std::uint32_t> ReadNumber(const FileReader& file, const std::optional<Chunk>& chunk,
                                        std::int64_t offset)
{
    std::uint32_t number = 0;
    if (!chunk || chunk->begin + offset + std::int64_t{sizeof number} > chunk->end ||
        !file.Read(chunk->begin + offset, &number, sizeof number))
        return {};
    return number;
}

// The number of frames that an index lists; nothing when an entry does not lead to a frame of its
// size.
std::optional<std::int64_t> CountIndexed(const FileReader& file, const Chunk& frames,
                                         const Chunk& index)
{
    constexpr std::int64_t entrySize = sizeof(AVIINDEXENTRY);
    const std::int64_t entries = (index.end - index.begin) / entrySize;
    for (std::int64_t i = 0; i < entries; ++i) {
        AVIINDEXENTRY entry{}; // its offset is counted from the type of the list of frames
        if (!file.Read(index.begin + i * entrySize, &entry, sizeof entry)) return {};
        const auto frame =
            ReadChunk(file, frames.begin - listType + entry.dwChunkOffset, frames.end);
        if (!frame || !IsFrame(entry.ckid) || frame->name != entry.ckid ||
            frame->end - frame->begin != entry.dwChunkLength)
            return {};
    }
    return entries;
}

std::wstring CompareCounts(std::int64_t indexed, std::int64_t total, std::int64_t length, int added)
{
    if (indexed < added)
        return L"it holds " + std::to_wstring(indexed) + L" of " + std::to_wstring(added) +
               L" frames";
    return total == indexed && length == indexed ? L"" : L"its counts of frames differ";
}

} // namespace

bool IsInCodePage(const std::wstring& text)
{
    return base::WideFromBytes(CP_ACP, base::BytesFromWide(CP_ACP, text)) == text;
}

std::optional<std::wstring> CodePagePath(const std::wstring& path)
{
    if (IsInCodePage(path)) return path;
    std::wstring alternative = ShortPath(path);
    if (alternative.empty() || !IsInCodePage(alternative)) return {};
    return alternative;
}

MovieTarget::~MovieTarget()
{
    if (!m_writingPath.empty()) DeleteFileW(m_writingPath.c_str());
}

std::wstring MovieTarget::Choose(const std::wstring& path, bool overwrite)
{
    m_path = base::FullPath(path.c_str());
    m_overwrite = overwrite;
    const std::wstring folder = FolderOf(m_path);
    if (KindOfFile(folder) != FileKind::folder) return L"there is no folder " + folder;
    const FileKind kind = KindOfFile(m_path);
    if (kind == FileKind::folder || kind == FileKind::device) return FindFileProblem(m_path);
    if (kind == FileKind::file && !overwrite)
        return L"this file exists already; --overwrite replaces it";
    const auto writable = CodePagePath(folder);
    if (!writable)
        return L"the folder's name has characters that the system's code page does not have, and "
               L"no short form; movies cannot be written there";
    m_writingPath = UnusedPath(*writable + L"exam-", L".avi");
    return L"";
}

bool MovieTarget::PutInPlace()
{
    const bool inPlace = m_overwrite ? base::MoveOver(m_writingPath.c_str(), m_path.c_str())
                                     : MoveFileW(m_writingPath.c_str(), m_path.c_str());
    if (!inPlace) return false;
    m_writingPath.clear();
    return true;
}

std::wstring FindMovieProblem(const std::wstring& path, int frames)
{
    FileReader file;
    if (!file.Open(path)) return L"it cannot be read again";
    const auto riff = ReadChunk(file, 0, file.Size());
    if (!riff || riff->name != formtypeAVI) return L"it is shorter than its header says";
    const auto headers = FindChunk(file, *riff, listtypeAVIHEADER);
    if (!headers) return L"it has no header";
    const auto total = ReadNumber(file, FindChunk(file, *headers, ckidAVIMAINHDR),
                                  offsetof(MainAVIHeader, dwTotalFrames));
    const auto stream = FindChunk(file, *headers, listtypeSTREAMHEADER);
    if (!total || !stream) return L"it has no header";
    const auto length = ReadNumber(file, FindChunk(file, *stream, ckidSTREAMHEADER),
                                   offsetof(AVIStreamHeader, dwLength));
    if (!length) return L"it has no header";
    const auto movie = FindChunk(file, *riff, listtypeAVIMOVIE);
    if (!movie) return L"it has no frames";
    const auto index = FindChunk(file, *riff, ckidAVINEWINDEX);
    if (!index) return L"it has no index";
    const auto indexed = CountIndexed(file, *movie, *index);
    if (!indexed) return L"its index does not lead to its frames";
    return CompareCounts(*indexed, *total, *length, frames);
}

} // namespace exam
