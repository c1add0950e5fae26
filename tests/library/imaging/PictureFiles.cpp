#include "PictureFiles.h"

#include <array>
#include <utility>

namespace {

void AppendNumber(std::string& bytes, std::uint32_t value, int count, bool isBig)
{
    for (int i = 0; i < count; ++i)
        bytes += static_cast<char>(value >> 8 * (isBig ? count - 1 - i : i));
}

void AppendBig32(std::string& bytes, std::uint32_t value)
{
    AppendNumber(bytes, value, 4, true);
}

void AppendLittle(std::string& bytes, std::uint32_t value, int count)
{
    AppendNumber(bytes, value, count, false);
}

std::uint32_t Crc(const std::string& bytes)
{
    std::uint32_t crc = 0xFFFFFFFF;
    for (const char character : bytes) {
        crc ^= static_cast<std::uint8_t>(character);
        for (int bit = 0; bit < 8; ++bit)
            crc = crc & 1 ? crc >> 1 ^ 0xEDB88320 : crc >> 1;
    }
    return ~crc;
}

std::uint32_t Adler(const std::string& bytes)
{
    std::uint32_t a = 1;
    std::uint32_t b = 0;
    for (const char character : bytes) {
        a = (a + static_cast<std::uint8_t>(character)) % 65521;
        b = (b + a) % 65521;
    }
    return b << 16 | a;
}

std::string Chunk(const std::string& type, const std::string& data)
{
    std::string chunk;
    AppendBig32(chunk, static_cast<std::uint32_t>(data.size()));
    chunk += type + data;
    AppendBig32(chunk, Crc(type + data));
    return chunk;
}

// A zlib stream of stored blocks.
std::string Stored(const std::string& data)
{
    std::string stream = "\x78\x01";
    for (std::size_t at = 0; at == 0 || at < data.size(); at += 65535) {
        const std::string block = data.substr(at, 65535);
        const auto length = static_cast<std::uint32_t>(block.size());
        stream += static_cast<char>(at + 65535 >= data.size());
        AppendLittle(stream, length, 2);
        AppendLittle(stream, ~length, 2);
        stream += block;
    }
    AppendBig32(stream, Adler(data));
    return stream;
}

std::string Png(std::uint32_t width, std::uint32_t height, const std::string& rows)
{
    std::string header;
    AppendBig32(header, width);
    AppendBig32(header, height);
    header += std::string("\x08\x06\x00\x00\x00", 5); // 8 bits each of red, green, blue and alpha
    return "\x89PNG\r\n\x1A\n" + Chunk("IHDR", header) + Chunk("IDAT", Stored(rows)) +
           Chunk("IEND", "");
}

void AppendInfoHeader(std::string& bytes, int width, int height)
{
    AppendLittle(bytes, 40, 4);
    AppendLittle(bytes, static_cast<std::uint32_t>(width), 4);
    AppendLittle(bytes, static_cast<std::uint32_t>(height), 4);
    AppendLittle(bytes, 1, 2);
    AppendLittle(bytes, 32, 2);
    bytes.append(24, '\0');
}

} // namespace

std::string PngFile(int width, int height, const std::vector<std::uint32_t>& pixels)
{
    std::string rows;
    for (std::size_t i = 0; i < pixels.size(); ++i) {
        if (i % static_cast<std::size_t>(width) == 0) rows += '\0'; // no filter
        for (const int shift : {16, 8, 0, 24})
            rows += static_cast<char>(pixels[i] >> shift);
    }
    return Png(static_cast<std::uint32_t>(width), static_cast<std::uint32_t>(height), rows);
}

std::string PngFileThatClaims(std::uint32_t width, std::uint32_t height)
{
    return Png(width, height, std::string(100, '\0'));
}

std::string GifFile(SizeOfGif screen, SizeOfGif picture)
{
    std::string file = "GIF89a";
    AppendLittle(file, screen.width, 2);
    AppendLittle(file, screen.height, 2);
    file += std::string("\x80\x00\x00", 3);             // a palette of two colours
    file += std::string("\xFF\x00\x00\x00\x00\xFF", 6); // red and blue
    file += std::string("\x21\xFE\x05later\x00", 9);    // a comment
    file += std::string("\x2C\x00\x00\x00\x00", 5);
    AppendLittle(file, picture.width, 2);
    AppendLittle(file, picture.height, 2);
    file += '\0';
    file += std::string("\x02\x02\x44\x01\x00", 5); // clear, colour 0, end
    return file + ";";
}

std::string BmpFileThatClaims(int width, int height)
{
    std::string file = "BM";
    AppendLittle(file, 54, 4);
    AppendLittle(file, 0, 4);
    AppendLittle(file, 54, 4);
    AppendInfoHeader(file, width, height);
    return file;
}

std::string JpegFileThatClaims(std::uint32_t width, std::uint32_t height)
{
    // A byte of padding, a comment, a table whose marker is between those of frames, and the frame.
    std::string file("\xFF\xD8\xFF\xFF\xFE\0\5abc\xFF\xC4\0\2\xFF\xC2\0\x11\x08", 19);
    AppendNumber(file, height, 2, true);
    AppendNumber(file, width, 2, true);
    return file.append(8, '\0');
}

std::string TiffFileThatClaims(std::uint32_t width, std::uint32_t height, bool isBig, int bytes)
{
    constexpr std::uint32_t directory = 12;
    std::string file(isBig ? "MM\0*" : "II*\0", 4);
    AppendNumber(file, directory, 4, isBig);
    file.resize(directory);
    AppendNumber(file, 2, 2, isBig);
    for (const auto& [tag, value] : {std::pair{256U, width}, std::pair{257U, height}}) {
        AppendNumber(file, tag, 2, isBig);
        AppendNumber(file, bytes == 2 ? 3 : 4, 2, isBig);
        AppendNumber(file, 1, 4, isBig);
        AppendNumber(file, value, bytes, isBig);
        file.append(static_cast<std::size_t>(4 - bytes), '\0');
    }
    return file;
}

// Appends its colours, then the mask of its transparent pixels.
std::string IconPicture(int size, std::uint32_t upper, std::uint32_t lower)
{
    std::string image;
    AppendInfoHeader(image, size, 2 * size); // colours and mask
    for (int y = size - 1; y >= 0; --y)
        for (int x = 0; x < size; ++x)
            AppendLittle(image, y < size / 2 ? upper : lower, 4);
    const int maskStride = (size + 31) / 32 * 4;
    for (int y = size - 1; y >= 0; --y) {
        const bool hidden = (y < size / 2 ? upper : lower) >> 24 == 0;
        image.append(static_cast<std::size_t>(maskStride), hidden ? '\xFF' : '\0');
    }
    return image;
}

std::string IconPictureThatClaims(int width, int height)
{
    std::string image;
    AppendInfoHeader(image, width, 2 * height); // colours and mask
    return image;
}

std::string IconFileOf(int size, const std::vector<std::string>& pictures)
{
    std::string file;
    for (const std::size_t number : {std::size_t{0}, std::size_t{1}, pictures.size()})
        AppendLittle(file, static_cast<std::uint32_t>(number), 2);
    std::size_t place = 6 + 16 * pictures.size();
    for (const std::string& picture : pictures) {
        file += static_cast<char>(size);
        file += static_cast<char>(size);
        AppendLittle(file, 0, 2);
        AppendLittle(file, 1, 2);
        AppendLittle(file, 32, 2);
        AppendLittle(file, static_cast<std::uint32_t>(picture.size()), 4);
        AppendLittle(file, static_cast<std::uint32_t>(place), 4);
        place += picture.size();
    }
    for (const std::string& picture : pictures)
        file += picture;
    return file;
}

std::string IconFile(int size, std::uint32_t upper, std::uint32_t lower)
{
    return IconFileOf(size, {IconPicture(size, upper, lower)});
}
