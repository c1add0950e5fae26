#include "imaging/ImageExtent.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <string_view>

namespace utils_statics {

namespace {

using namespace std::string_view_literals;

constexpr std::uint32_t oldDibHeader = 12; // bytes; its fields have 16 bits

// No more entries are read: real files have some dozen.
constexpr std::uint32_t mostEntries = 1000;

using Extent = ImageExtent;
using MaybeExtent = std::optional<Extent>;

enum class ByteOrder
{
    little,
    big,
};

// Reads a file at any offset. Numbers that lie outside the file are 0.
class Reader
{
public:
    explicit Reader(ImageBytes& file) : m_file(file), m_size(file.Size()) {}

    std::uint32_t Number(std::int64_t at, int bytes, ByteOrder order)
    {
        std::array<char, 4> text = {};
        Read(at, text.data(), bytes);
        std::uint32_t number = 0;
        for (int i = 0; i < bytes; ++i) {
            const int place = order == ByteOrder::big ? bytes - 1 - i : i;
            number |= std::uint32_t{static_cast<std::uint8_t>(text[static_cast<std::size_t>(i)])}
                      << 8 * place;
        }
        return number;
    }
    std::uint32_t Little(std::int64_t at, int bytes)
    {
        return Number(at, bytes, ByteOrder::little);
    }
    std::uint32_t Big(std::int64_t at, int bytes) { return Number(at, bytes, ByteOrder::big); }

    bool Has(std::int64_t at, std::string_view text)
    {
        std::array<char, 8> found = {};
        Read(at, found.data(), static_cast<int>(text.size()));
        return std::string_view(found.data(), text.size()) == text;
    }

private:
    void Read(std::int64_t at, char* to, int bytes)
    {
        if (at + bytes <= m_size) m_file.Read(at, to, bytes);
    }

    ImageBytes& m_file;
    std::int64_t m_size;
};

// The extent of a PNG image that begins at `at`.
MaybeExtent PngExtent(Reader& file, std::int64_t at)
{
    if (!file.Has(at, "\x89PNG\r\n\x1A\n"sv)) return std::nullopt;
    return Extent{file.Big(at + 16, 4), file.Big(at + 20, 4)};
}

// The offset of a GIF file's first block, after its palette.
std::int64_t FirstGifBlock(Reader& file)
{
    const std::uint32_t flags = file.Little(10, 1);
    const bool hasPalette = (flags & 0x80) != 0;
    return 13 + (hasPalette ? 3LL << ((flags & 7) + 1) : 0);
}

// The offset after the extension that begins at `at`.
std::int64_t BehindGifExtension(Reader& file, std::int64_t at)
{
    at += 2;
    while (const std::uint32_t size = file.Little(at, 1))
        at += 1 + std::int64_t{size};
    return at + 1;
}

// The offset of a GIF file's first picture; none for other files and for files without pictures.
std::optional<std::int64_t> FirstGifPicture(Reader& file)
{
    if (!file.Has(0, "GIF8"sv)) return std::nullopt;
    std::int64_t at = FirstGifBlock(file);
    while (file.Has(at, "\x21"sv))
        at = BehindGifExtension(file, at);
    return file.Has(at, "\x2C"sv) ? std::optional(at) : std::nullopt;
}

// The extent of the first picture. The screen that holds the pictures is not decoded.
MaybeExtent GifExtent(Reader& file)
{
    const std::optional<std::int64_t> at = FirstGifPicture(file);
    if (!at) return std::nullopt;
    return Extent{file.Little(*at + 5, 2), file.Little(*at + 7, 2)};
}

// The extent in the header of a device-independent bitmap; the height of a top-down one is
// negative.
Extent DibExtent(Reader& file, std::int64_t at)
{
    if (file.Little(at, 4) == oldDibHeader) return {file.Little(at + 4, 2), file.Little(at + 6, 2)};
    const auto width = static_cast<std::int32_t>(file.Little(at + 4, 4));
    const auto height = static_cast<std::int32_t>(file.Little(at + 8, 4));
    return {width, std::abs(std::int64_t{height})};
}

MaybeExtent BmpExtent(Reader& file)
{
    if (!file.Has(0, "BM"sv)) return std::nullopt;
    return DibExtent(file, 14);
}

// The extent of an icon file's first picture, the only one that GDI+ decodes.
MaybeExtent IconExtent(Reader& file)
{
    if (!file.Has(0, "\0\0\1\0"sv)) return std::nullopt;
    const std::int64_t at = file.Little(18, 4);
    const MaybeExtent png = PngExtent(file, at);
    return png ? png : DibExtent(file, at);
}

// The extent in the first frame header among the segments of a JPEG file.
MaybeExtent JpegExtent(Reader& file)
{
    if (!file.Has(0, "\xFF\xD8\xFF"sv)) return std::nullopt;
    for (std::int64_t at = 2; file.Big(at, 1) == 0xFF;) {
        const std::uint32_t marker = file.Big(at + 1, 1);
        const bool isFrame =
            marker >= 0xC0 && marker <= 0xCF && marker != 0xC4 && marker != 0xC8 && marker != 0xCC;
        if (isFrame) return Extent{file.Big(at + 7, 2), file.Big(at + 5, 2)};
        at += marker == 0xFF ? 1 : 2 + std::int64_t{file.Big(at + 2, 2)}; // 0xFF is padding
    }
    return std::nullopt;
}

// The extent in the first directory of a TIFF file.
MaybeExtent TiffExtent(Reader& file)
{
    const bool isBig = file.Has(0, "MM\0*"sv);
    if (!isBig && !file.Has(0, "II*\0"sv)) return std::nullopt;
    const ByteOrder order = isBig ? ByteOrder::big : ByteOrder::little;
    const std::int64_t directory = file.Number(4, 4, order);
    const std::uint32_t entries = std::min(file.Number(directory, 2, order), mostEntries);
    Extent extent = {1, 1};
    for (std::uint32_t i = 0; i < entries; ++i) {
        const std::int64_t entry = directory + 2 + 12 * std::int64_t{i};
        const std::uint32_t tag = file.Number(entry, 2, order);
        const int bytes = file.Number(entry + 2, 2, order) == 3 ? 2 : 4; // a short or a long
        if (tag == 256) extent.width = file.Number(entry + 8, bytes, order);
        if (tag == 257) extent.height = file.Number(entry + 8, bytes, order);
    }
    return extent;
}

} // namespace

std::optional<ImageExtent> StatedExtent(ImageBytes& file)
{
    Reader reader(file);
    MaybeExtent extent = PngExtent(reader, 0);
    for (const auto read : {GifExtent, BmpExtent, IconExtent, JpegExtent, TiffExtent})
        if (!extent) extent = read(reader);
    return extent;
}

bool IsGifWithoutPalette(ImageBytes& file)
{
    constexpr std::uint32_t paletteFlag = 0x80;
    Reader reader(file);
    const std::optional<std::int64_t> picture = FirstGifPicture(reader);
    return picture && ((reader.Little(10, 1) | reader.Little(*picture + 9, 1)) & paletteFlag) == 0;
}

} // namespace utils_statics
