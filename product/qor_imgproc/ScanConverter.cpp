#include <qor_imgproc/ScanConverter.h>

#include "FrameRows.h"

#include <qor_imgproc/PixelConverter.h>

#include <new>
#include <vector>

namespace {

template <class T>
void Store(T* destination, T value)
{
    if (destination) *destination = value;
}

} // namespace

void ScanConverter::GetPreciseUSCoordinates(
    int x, int y, int* line, int* sample, unsigned int* lineFraction, unsigned int* sampleFraction,
    const URect& lineSampleRect, const ZelProbe* probe, int soundSpeed, int /*steerAngle*/,
    int scanB, int lines, int samplingFreq, const UPoint& origin, const UPoint& micronsPerPixel,
    double sinSteer, double cosSteer, bool /*fine*/)
{
    const PixelConverter converter(lineSampleRect, probe, soundSpeed, scanB, lines, samplingFreq,
                                   origin, micronsPerPixel, sinSteer, cosSteer);
    const ScanPixel pixel = converter.At(x, y);
    Store(line, pixel.line);
    Store(sample, pixel.sample);
    Store(lineFraction, pixel.lineFraction);
    Store(sampleFraction, pixel.sampleFraction);
}

bool ScanConverter::ConvertFrame(const FrameGeometry& geometry, const unsigned char* frame,
                                 unsigned char* image, unsigned char background)
{
    if (!frame || !image || !FrameRows::HasImage(geometry)) return false;
    try {
        const auto width = static_cast<std::size_t>(geometry.width);
        FrameRows rows(geometry);
        std::vector<FramePixel> row(width);
        for (int y = 0; y < geometry.height; ++y, image += width) {
            rows.Row(y, row.data());
            InterpolateRun(frame, row.data(), row.data() + width, rows.Steps(), background, image);
        }
    } catch (const std::bad_alloc&) {
        return false; // before anything is written: both rows exist before the loop
    }
    return true;
}
