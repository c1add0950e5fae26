#pragma once

#include <qor_utils/ConversionModel.h>
#include <qor_utils/ScanGeometry.h>

#include <cstdint>
#include <vector>

namespace qor_imgproc {

// The source of one image pixel's grey level: four neighbouring bytes of a frame and their weights.
struct FramePixel
{
    static constexpr std::uint32_t outside = 0xFFFFFFFF;

    std::uint32_t offset = outside; // offset of the first of the four bytes
    std::uint16_t lineWeight = 0;   // weight of the second line, 0 to 256
    std::uint16_t sampleWeight = 0; // weight of the second sample, 0 to 256
};

// The steps between the four bytes in the frame: to the next line, and to the next sample. Each is
// 0 when there is no other line or sample.
struct FrameSteps
{
    std::uint32_t line = 0;
    std::uint32_t sample = 0;
};

inline unsigned char Interpolate(const unsigned char* frame, const FramePixel& pixel,
                                 const FrameSteps& steps)
{
    const unsigned char* here = frame + pixel.offset;
    const unsigned char* next = here + steps.line;
    const unsigned int second = pixel.sampleWeight;
    const unsigned int first = 256u - second;
    const unsigned int onThis = here[0] * first + here[steps.sample] * second;
    const unsigned int onNext = next[0] * first + next[steps.sample] * second;
    return static_cast<unsigned char>(
        (onThis * (256u - pixel.lineWeight) + onNext * pixel.lineWeight + 0x8000u) >> 16);
}

inline void InterpolateRun(const unsigned char* frame, const FramePixel* begin,
                           const FramePixel* end, const FrameSteps& steps, unsigned char background,
                           unsigned char* image)
{
    for (const FramePixel* pixel = begin; pixel != end; ++pixel)
        *image++ =
            pixel->offset == FramePixel::outside ? background : Interpolate(frame, *pixel, steps);
}

// The pixels of a scan-converted image, one row after the other.
class FrameRows
{
public:
    // Throws std::bad_alloc when memory is short.
    explicit FrameRows(const qor_utils::ScanGeometry& geometry);

    // True when the geometry has an image; FrameMap states the conditions.
    static bool HasImage(const qor_utils::ScanGeometry& geometry);

    // Writes the pixels of row `y`, as many as the image is wide. The geometry must have an image.
    void Row(int y, FramePixel* pixels);

    FrameSteps Steps() const;

private:
    void LinearRow(double y, FramePixel* pixels) const;
    template <qor_utils::ScanShape shape>
    void FanRow(double y, FramePixel* pixels);
    FramePixel PixelOf(const qor_utils::ScanPoint& scan) const;

    qor_utils::ScanGeometry m_geometry;
    qor_utils::ConversionModel m_model;
    double m_left; // microns of the first pixel
    double m_step; // microns to the next pixel
    std::vector<qor_utils::ScanPoint> m_row;
};

} // namespace qor_imgproc
