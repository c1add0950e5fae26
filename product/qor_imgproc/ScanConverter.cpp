#include <qor_imgproc/ScanConverter.h>

#include <qor_imgproc/FrameMap.h>
#include <qor_imgproc/PixelConverter.h>

namespace {

template <class T>
void Store(T* destination, T value)
{
    if (destination) *destination = value;
}

} // namespace

void ScanConverter::GetPreciseUSCoordinates(int x, int y, int* line, int* sample, unsigned int* lineFraction,
                                            unsigned int* sampleFraction, const URect& lineSampleRect,
                                            const ZelProbe* probe, int soundSpeed, int /*steerAngle*/, int scanB,
                                            int lines, int samplingFreq, const UPoint& origin,
                                            const UPoint& micronsPerPixel, double sinSteer, double cosSteer,
                                            bool /*fine*/)
{
    const PixelConverter converter(lineSampleRect, probe, soundSpeed, scanB, lines, samplingFreq, origin,
                                   micronsPerPixel, sinSteer, cosSteer);
    const ScanPixel pixel = converter.At(x, y);
    Store(line, pixel.line);
    Store(sample, pixel.sample);
    Store(lineFraction, pixel.lineFraction);
    Store(sampleFraction, pixel.sampleFraction);
}

bool ScanConverter::ConvertFrame(const FrameGeometry& geometry, const unsigned char* frame, unsigned char* image,
                                 unsigned char background)
{
    return frame && image && FrameMap(geometry).Convert(frame, image, background);
}
