#include "image/PixelFrames.h"

#include <qor_utils/ZelProbe.h>

#include <cstddef>
#include <cstdlib>

namespace exam {

namespace {

// A pixel counts as a tenth of a millimetre in both directions, so that it is shown as a square.
// Nobody is told of it.
constexpr int pixelMicrons = 100;
constexpr int soundSpeed = 1540;
constexpr int samplingFreq = soundSpeed * (1'000'000 / pixelMicrons) / 2;

} // namespace

bool PixelFrames::Describe(SIZE size, int frames, int framesPer1000s)
{
    if (size.cx < 2 || size.cy < 2 || size.cx > mostPixels || size.cy > mostPixels || frames < 1)
        return false;
    m_description.count = frames;
    uDataDesc& stream = m_description.stream;
    stream.lines = size.cx;
    stream.samples = size.cy;
    stream.bitsPerSample = 8;
    stream.samplingFreq = samplingFreq;
    stream.soundSpeed = soundSpeed;
    stream.probeType = qor_utils::linearProbe;
    stream.elements = size.cx;
    stream.pitch = pixelMicrons;
    stream.frameRate = framesPer1000s;
    return true;
}

bool PixelFrames::ToPlanes(const BITMAPINFOHEADER& header, const std::uint8_t* rows,
                           std::vector<std::uint8_t>& bytes) const
{
    const bool isPlain = header.biCompression == BI_RGB || header.biCompression == BI_BITFIELDS;
    if (!isPlain || (header.biBitCount != 24 && header.biBitCount != 32) ||
        header.biWidth != Lines() || std::abs(header.biHeight) != Samples())
        return false;
    const auto width = static_cast<std::size_t>(Lines());
    const auto height = static_cast<std::size_t>(Samples());
    const std::size_t pixel = header.biBitCount / 8U;
    const std::size_t stride = (width * pixel + 3) / 4 * 4;
    bytes.resize(width * height * pictureColours);
    for (std::size_t y = 0; y < height; ++y) {
        const std::uint8_t* from = rows + (header.biHeight > 0 ? height - 1 - y : y) * stride;
        for (std::size_t x = 0; x < width; ++x, from += pixel)
            for (std::size_t colour = 0; colour < pictureColours; ++colour)
                bytes[(colour * width + x) * height + y] = from[colour];
    }
    return true;
}

} // namespace exam
