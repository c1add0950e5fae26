#pragma once

#include <cstdint>
#include <optional>

namespace utils_statics {

// The bytes of an image file, wherever they lie.
class ImageBytes
{
public:
    virtual ~ImageBytes() = default;
    virtual std::int64_t Size() = 0;
    // Reads bytes that lie within the size. What cannot be read stays as it is at `to`.
    virtual void Read(std::int64_t at, char* to, int bytes) = 0;
};

struct ImageExtent
{
    std::int64_t width;
    std::int64_t height;
};

// The size that the header of an image file states (BMP, GIF, ICO, JPEG, PNG, TIFF); nothing for
// every other file. Nothing else of the file is read.
std::optional<ImageExtent> StatedExtent(ImageBytes& file);

// True for a GIF file whose first picture has no colours, neither its own nor the file's.
bool IsGifWithoutPalette(ImageBytes& file);

} // namespace utils_statics
