#include "record/MovieFile.h"

#include "base/FileReader.h"

#include <base/FilePath.h>
#include <base/FileReplacement.h>

#include <windows.h>

#include <cstdint>

namespace exam {

namespace {

// ---- The place of a movie

// True when the code page has all characters of a text.
bool IsInCodePage(const std::wstring& text)
{
    if (GetACP() == CP_UTF8) return true;
    BOOL replaced = FALSE;
    const int length =
        WideCharToMultiByte(CP_ACP, WC_NO_BEST_FIT_CHARS, text.data(),
                            static_cast<int>(text.size()), nullptr, 0, nullptr, &replaced);
    return length > 0 && !replaced;
}

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

// A path in `folder` that no file has yet.
std::wstring UnusedPath(const std::wstring& folder)
{
    const std::wstring stem = folder + L"exam-" + std::to_wstring(GetCurrentProcessId()) + L"-";
    for (int number = 1;; ++number) {
        std::wstring path = stem + std::to_wstring(number) + L".avi";
        if (KindOfFile(path) == FileKind::missing) return path;
    }
}

// ---- The parts of a movie

// The name of a chunk, as its four characters lie in the file.
using FourCC = std::uint32_t;

constexpr FourCC Code(const char (&text)[5])
{
    FourCC code = 0;
    for (int i = 3; i >= 0; --i)
        code = code << 8 | static_cast<unsigned char>(text[i]);
    return code;
}

constexpr std::int64_t chunkHead = 8;       // name and size
constexpr std::int64_t listType = 4;        // the name that stands first in a list
constexpr std::int64_t totalFramesAt = 16;  // offset in the main header
constexpr std::int64_t streamLengthAt = 32; // offset in the stream's header

// A chunk, or the contents of a list; its name is then the type of the list.
struct Chunk
{
    FourCC name = 0;
    std::int64_t begin = 0;
    std::int64_t end = 0;
};

struct IndexEntry
{
    FourCC name;
    std::uint32_t flags;
    std::uint32_t offset; // of the frame's chunk, counted from the type of the list of frames
    std::uint32_t size;
};
static_assert(sizeof(IndexEntry) == 16);

bool IsFrame(FourCC name)
{
    return name == Code("00db") || name == Code("00dc");
}

// The chunk at `position`; nothing when it does not end by `end`.
std::optional<Chunk> ReadChunk(const FileReader& file, std::int64_t position, std::int64_t end)
{
    std::uint32_t head[2] = {};
    if (position + chunkHead > end || !file.Read(position, head, sizeof head)) return {};
    Chunk chunk{head[0], position + chunkHead, position + chunkHead + head[1]};
    if (chunk.end > end) return {};
    if (chunk.name != Code("RIFF") && chunk.name != Code("LIST")) return chunk;
    if (!file.Read(chunk.begin, &chunk.name, sizeof chunk.name)) return {};
    chunk.begin += listType;
    return chunk;
}

// The first chunk of that name in a list.
std::optional<Chunk> FindChunk(const FileReader& file, const Chunk& list, FourCC name)
{
    std::int64_t position = list.begin;
    while (const auto chunk = ReadChunk(file, position, list.end)) {
        if (chunk->name == name) return chunk;
        position = chunk->end + chunk->end % 2;
    }
    return {};
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
    const std::int64_t entries = (index.end - index.begin) / std::int64_t{sizeof(IndexEntry)};
    for (std::int64_t i = 0; i < entries; ++i) {
        IndexEntry entry{};
        if (!file.Read(index.begin + i * std::int64_t{sizeof entry}, &entry, sizeof entry))
            return {};
        const auto frame = ReadChunk(file, frames.begin - listType + entry.offset, frames.end);
        if (!frame || !IsFrame(entry.name) || frame->name != entry.name ||
            frame->end - frame->begin != entry.size)
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
               L"no "
               L"short form; movies cannot be written there";
    m_writingPath = UnusedPath(*writable);
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
    if (!riff || riff->name != Code("AVI ")) return L"it is shorter than its header says";
    const auto headers = FindChunk(file, *riff, Code("hdrl"));
    if (!headers) return L"it has no header";
    const auto total = ReadNumber(file, FindChunk(file, *headers, Code("avih")), totalFramesAt);
    const auto stream = FindChunk(file, *headers, Code("strl"));
    if (!total || !stream) return L"it has no header";
    const auto length = ReadNumber(file, FindChunk(file, *stream, Code("strh")), streamLengthAt);
    if (!length) return L"it has no header";
    const auto movie = FindChunk(file, *riff, Code("movi"));
    if (!movie) return L"it has no frames";
    const auto index = FindChunk(file, *riff, Code("idx1"));
    if (!index) return L"it has no index";
    const auto indexed = CountIndexed(file, *movie, *index);
    if (!indexed) return L"its index does not lead to its frames";
    return CompareCounts(*indexed, *total, *length, frames);
}

} // namespace exam
