#include "record/MovieRepair.h"

#include "base/FileReader.h"
#include "base/ScreenLayout.h"
#include "image/AviChunks.h"
#include "record/MovieNote.h"

#include <base/Handles.h>

#include <algorithm>
#include <climits>
#include <optional>
#include <string_view>
#include <vector>

namespace exam {

namespace {

constexpr FOURCC jpegCodec = mmioFOURCC('M', 'J', 'P', 'G');
constexpr std::int32_t usualRate = 30'000; // frames per 1000 s
constexpr std::int32_t bytesPerPixel = 4;  // of uncompressed frames

// ---- What is left of the damaged movie

// The position of the first chunk that holds a frame. The room for headers comes before it, and may
// hold anything.
std::optional<std::int64_t> FindFirstFrame(const FileReader& file)
{
    constexpr std::int64_t headerRoom = 0x10000;
    std::string head(static_cast<std::size_t>(std::min(file.Size(), headerRoom)), '\0');
    if (!file.Read(0, head.data(), head.size())) return {};
    for (std::size_t at = head.find("00d"); at != std::string::npos;
         at = head.find("00d", at + 1)) {
        const auto position = static_cast<std::int64_t>(at);
        const auto chunk = ReadChunk(file, position, file.Size());
        if (chunk && IsFrame(chunk->name) && chunk->end > chunk->begin) return position;
    }
    return {};
}

// The whole frames from there on, up to the first chunk that is none.
std::vector<Chunk> FindFrames(const FileReader& file)
{
    std::vector<Chunk> frames;
    auto position = FindFirstFrame(file);
    while (position) {
        const auto chunk = ReadChunk(file, *position, file.Size());
        if (!chunk || !IsFrame(chunk->name) || chunk->end - chunk->begin > mostFrameBytes) break;
        frames.push_back(*chunk);
        position = Behind(*chunk);
    }
    return frames;
}

unsigned Big(std::string_view bytes, std::size_t at)
{
    return static_cast<unsigned char>(bytes[at]) * 256U + static_cast<unsigned char>(bytes[at + 1]);
}

// The size that a JPEG image gives of itself in its start of frame; nothing for other bytes.
std::optional<CSize> JpegSize(std::string_view bytes)
{
    constexpr unsigned baseline = 0xFFC0;
    constexpr unsigned progressive = 0xFFC2;
    constexpr std::size_t enough = 9; // bytes from the marker to the end of the width
    if (bytes.size() < 4 || Big(bytes, 0) != 0xFFD8) return {};
    for (std::size_t at = 2; at + enough <= bytes.size(); at += 2 + Big(bytes, at + 2)) {
        const unsigned marker = Big(bytes, at);
        if (marker >= baseline && marker <= progressive)
            return CSize(static_cast<int>(Big(bytes, at + 7)),
                         static_cast<int>(Big(bytes, at + 5)));
    }
    return {};
}

std::optional<CSize> JpegSize(const FileReader& file, const Chunk& frame)
{
    constexpr std::int64_t most = 0x1000; // tables are shorter
    std::string bytes(static_cast<std::size_t>(std::min(frame.end - frame.begin, most)), '\0');
    if (!file.Read(frame.begin, bytes.data(), bytes.size())) return {};
    return JpegSize(bytes);
}

// The facts about a movie without a note, as far as its first frame tells them.
std::optional<MovieNote> NoteFromFrame(const FileReader& file, const Chunk& frame)
{
    if (const auto size = JpegSize(file, frame))
        return MovieNote{size->cx, size->cy, usualRate, jpegCodec};
    const CSize size = ConsoleLayout().movie.Size();
    const std::int64_t screen = std::int64_t{size.cx} * size.cy * bytesPerPixel;
    if (frame.end - frame.begin != screen) return {};
    return MovieNote{size.cx, size.cy, usualRate, 0};
}

bool IsPlausible(const MovieNote& note)
{
    constexpr std::int32_t mostPixels = 1 << 15; // along a side
    return note.width > 0 && note.width <= mostPixels && note.height > 0 &&
           note.height <= mostPixels && note.framesPer1000s > 0;
}

// ---- The new movie

template <class Part>
void Append(std::string& bytes, const Part& part)
{
    bytes.append(reinterpret_cast<const char*>(&part), sizeof part);
}

// Appends the head of a list whose content, its type included, has `size` bytes.
void AppendListHead(std::string& bytes, FOURCC kind, std::uint32_t size, FOURCC type)
{
    Append(bytes, kind);
    Append(bytes, size);
    Append(bytes, type);
}

void AppendChunk(std::string& bytes, FOURCC name, std::string_view content)
{
    Append(bytes, name);
    Append(bytes, static_cast<std::uint32_t>(content.size()));
    bytes += content;
}

// The parts of a movie that depend on its frames.
struct Contents
{
    std::uint32_t count = 0;
    std::uint32_t largest = 0; // bytes of a frame
    std::uint32_t bytes = 0;   // of all frames with their heads
    std::string index;
};

// Nothing when the movie would be too large for the format's numbers.
std::optional<Contents> Survey(const std::vector<Chunk>& frames)
{
    Contents contents;
    std::int64_t position = listType; // is counted from the type of the list of frames
    for (const Chunk& frame : frames) {
        const auto size = static_cast<std::uint32_t>(frame.end - frame.begin);
        Append(contents.index,
               AVIINDEXENTRY{frame.name, AVIIF_KEYFRAME, static_cast<DWORD>(position), size});
        contents.largest = std::max(contents.largest, size);
        position += chunkHead + size + size % 2;
        if (position > INT32_MAX) return {};
    }
    contents.count = static_cast<std::uint32_t>(frames.size());
    contents.bytes = static_cast<std::uint32_t>(position - listType);
    return contents;
}

MainAVIHeader MainHeader(const MovieNote& note, const Contents& contents)
{
    constexpr double microsPer1000s = 1e9;
    MainAVIHeader header{};
    header.dwMicroSecPerFrame = static_cast<DWORD>(microsPer1000s / note.framesPer1000s);
    header.dwFlags = AVIF_HASINDEX;
    header.dwTotalFrames = contents.count;
    header.dwStreams = 1;
    header.dwSuggestedBufferSize = contents.largest;
    header.dwWidth = static_cast<DWORD>(note.width);
    header.dwHeight = static_cast<DWORD>(note.height);
    return header;
}

AVIStreamHeader StreamHeader(const MovieNote& note, const Contents& contents)
{
    AVIStreamHeader header{};
    header.fccType = streamtypeVIDEO;
    header.fccHandler = note.codec;
    header.dwScale = 1000;
    header.dwRate = static_cast<DWORD>(note.framesPer1000s);
    header.dwLength = contents.count;
    header.dwSuggestedBufferSize = contents.largest;
    header.dwQuality = ICQUALITY_DEFAULT;
    header.rcFrame.right = static_cast<decltype(header.rcFrame.right)>(note.width);
    header.rcFrame.bottom = static_cast<decltype(header.rcFrame.bottom)>(note.height);
    return header;
}

BITMAPINFOHEADER Format(const MovieNote& note)
{
    constexpr WORD compressedBits = 24;
    BITMAPINFOHEADER format{};
    format.biSize = sizeof format;
    format.biWidth = note.width;
    format.biHeight = note.height;
    format.biPlanes = 1;
    format.biBitCount = note.codec == 0 ? bytesPerPixel * CHAR_BIT : compressedBits;
    format.biCompression = note.codec;
    format.biSizeImage =
        static_cast<DWORD>(note.width) * static_cast<DWORD>(note.height) * bytesPerPixel;
    return format;
}

template <class Part>
std::string_view BytesOf(const Part& part)
{
    return {reinterpret_cast<const char*>(&part), sizeof part};
}

std::string HeaderList(const MovieNote& note, const Contents& contents)
{
    std::string stream;
    AppendChunk(stream, ckidSTREAMHEADER, BytesOf(StreamHeader(note, contents)));
    AppendChunk(stream, ckidSTREAMFORMAT, BytesOf(Format(note)));
    std::string headers;
    AppendChunk(headers, ckidAVIMAINHDR, BytesOf(MainHeader(note, contents)));
    AppendListHead(headers, FOURCC_LIST, static_cast<std::uint32_t>(listType + stream.size()),
                   listtypeSTREAMHEADER);
    headers += stream;
    std::string list;
    AppendListHead(list, FOURCC_LIST, static_cast<std::uint32_t>(listType + headers.size()),
                   listtypeAVIHEADER);
    return list + headers;
}

// The bytes before the first frame.
std::string Beginning(const MovieNote& note, const Contents& contents)
{
    const std::string headers = HeaderList(note, contents);
    const auto movie = static_cast<std::uint32_t>(listType + contents.bytes);
    std::string bytes;
    AppendListHead(bytes, FOURCC_RIFF,
                   static_cast<std::uint32_t>(listType + headers.size() + chunkHead + movie +
                                              chunkHead + contents.index.size()),
                   formtypeAVI);
    bytes += headers;
    AppendListHead(bytes, FOURCC_LIST, movie, listtypeAVIMOVIE);
    return bytes;
}

bool Write(HANDLE file, std::string_view bytes)
{
    DWORD written = 0;
    return WriteFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr) &&
           written == bytes.size();
}

// Copies a frame with its head; the result has an even size.
bool CopyFrame(const FileReader& from, const Chunk& frame, HANDLE to)
{
    std::string bytes(static_cast<std::size_t>(chunkHead + frame.end - frame.begin), '\0');
    if (!from.Read(frame.begin - chunkHead, bytes.data(), bytes.size())) return false;
    bytes.resize(bytes.size() + bytes.size() % 2);
    return Write(to, bytes);
}

bool WriteMovie(const FileReader& from, const std::vector<Chunk>& frames, const MovieNote& note,
                const Contents& contents, HANDLE to)
{
    std::string index;
    AppendChunk(index, ckidAVINEWINDEX, contents.index);
    return Write(to, Beginning(note, contents)) &&
           std::all_of(frames.begin(), frames.end(),
                       [&](const Chunk& frame) { return CopyFrame(from, frame, to); }) &&
           Write(to, index);
}

} // namespace

bool HoldsFrame(const std::wstring& movie)
{
    FileReader file;
    return file.Open(movie) && FindFirstFrame(file).has_value();
}

std::wstring RebuildMovie(const std::wstring& damaged, const std::wstring& rebuilt, int& frames)
{
    FileReader file;
    if (!file.Open(damaged)) return L"it cannot be read";
    const std::vector<Chunk> found = FindFrames(file);
    if (found.empty()) return L"it holds no whole frame";
    auto note = ReadNote(damaged);
    if (!note || !IsPlausible(*note)) note = NoteFromFrame(file, found.front());
    if (!note) return L"its frames do not tell their size, and the note beside it is gone";
    const auto contents = Survey(found);
    if (!contents) return L"it is too large";
    const base::File target(CreateFileW(rebuilt.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                        FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!target || !WriteMovie(file, found, *note, *contents, target.get()))
        return L"the repaired movie cannot be written; is the disk full?";
    frames = static_cast<int>(found.size());
    return L"";
}

} // namespace exam
