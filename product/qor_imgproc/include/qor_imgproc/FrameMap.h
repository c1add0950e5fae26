#pragma once

#include <qor_imgproc/FrameGeometry.h>
#include <qor_imgproc/export.h>

#include <cstddef>
#include <cstdint>
#include <vector>

namespace qor_utils {
class ConversionModel;
}

/// The way from a frame's bytes to an image, worked out once for a geometry and then applied to any number of frames.
/// Eight bytes an image pixel. After building it is only read: any number of threads may convert with it.
class QOR_IMGPROC_API FrameMap
{
public:
    /// Builds the map. It is not valid (Valid() says so, Convert does nothing) when the geometry has no image: a size
    /// that is not positive, a probe without a geometry, a zero scale, a frame of more than 2^31 - 1 bytes, an image
    /// of more than 2^26 pixels or too little memory.
    explicit FrameMap(const FrameGeometry& geometry);

    bool Valid() const { return !m_pixels.empty(); }

    /// Scan-converts one frame (lines x samples bytes, samples running fastest) into width x height grey bytes, rows
    /// from the top: bilinear interpolation, `background` outside the frame. False, with nothing written, when the
    /// map is not valid or a pointer is null.
    bool Convert(const unsigned char* frame, unsigned char* image, unsigned char background = 0) const;

private:
    struct Pixel
    {
        std::uint32_t offset;       // of the four bytes' first, or Outside
        std::uint16_t lineWeight;   // of the second line, 0 to 256
        std::uint16_t sampleWeight; // of the second sample, 0 to 256
    };
    static constexpr std::uint32_t Outside = 0xFFFFFFFF;

    void Fill(const FrameGeometry& geometry, const qor_utils::ConversionModel& model);
    Pixel MakePixel(double line, double sample) const;
    unsigned char Interpolate(const unsigned char* first, const Pixel& pixel) const;

    int m_lines;
    int m_samples;
    std::size_t m_nextLine;   // from a byte to the one on the next line; 0 when there is one line only
    std::size_t m_nextSample; // likewise
    std::vector<Pixel> m_pixels;
};
