#pragma once

#include <cstdint>
#include <string>
#include <vector>

// Writes image files byte by byte, without the platform.

// A PNG file of these pixels (0xAARRGGBB, top row first). The header may claim another size.
std::string PngFile(int width, int height, const std::vector<std::uint32_t>& pixels);
std::string PngFileThatClaims(std::uint32_t width, std::uint32_t height);

// A GIF file whose only picture claims a size and has one red pixel, on a screen of another size.
struct SizeOfGif
{
    std::uint32_t width;
    std::uint32_t height;
};
std::string GifFile(SizeOfGif screen, SizeOfGif picture);

// A BMP file whose header claims this size and whose pixels are missing.
std::string BmpFileThatClaims(int width, int height);

// A JPEG file and a TIFF file that claim this size and have no pixels. In the TIFF file all numbers
// begin with their high byte when it is big; those of the size have so many bytes.
std::string JpegFileThatClaims(std::uint32_t width, std::uint32_t height);
std::string TiffFileThatClaims(std::uint32_t width, std::uint32_t height, bool isBig, int bytes);

// A square picture of an icon file, with 32 bits a pixel: the upper half in one colour, the lower
// in another. Colours without alpha are transparent.
std::string IconPicture(int size, std::uint32_t upper, std::uint32_t lower);
// An icon picture that claims this size and has no pixels.
std::string IconPictureThatClaims(int width, int height);

// An icon file with one entry for each picture, all entries of one size. The second function makes
// one with a single good picture.
std::string IconFileOf(int size, const std::vector<std::string>& pictures);
std::string IconFile(int size, std::uint32_t upper, std::uint32_t lower);
