#include "geometry/ScanRegion.h"

#include "geometry/Angle.h"

#include <base/WrapArithmetic.h>
#include <qor_imgproc/ScanConverter.h>
#include <qor_utils/PixelCoordinates.h>

#include <cmath>

namespace utils_statics {

ScanRegion::ScanRegion(const Parameters& parameters, const URect& imageRect)
    : m_parameters(parameters), m_sinSteer(std::sin(ToRadians(parameters.steerAngle))),
      m_cosSteer(std::cos(ToRadians(parameters.steerAngle)))
{
    qor_utils::ConvertRect(imageRect, parameters.lines,
                           parameters.probe ? parameters.probe->elements : 0, m_rect);
    m_lineEnd = base::wrap::Subtract(m_rect.right, m_rect.left);
    m_sampleEnd = base::wrap::Subtract(m_rect.bottom, m_rect.top);
}

ScanRegion::Pixel ScanRegion::At(int x, int y, bool fine) const
{
    const Parameters& p = m_parameters;
    int line = 0;
    int sample = 0;
    unsigned int lineFraction = 0;
    unsigned int sampleFraction = 0;
    ScanConverter::GetPreciseUSCoordinates(x, y, &line, &sample, &lineFraction, &sampleFraction,
                                           m_rect, p.probe, p.soundSpeed, p.steerAngle, p.scanB,
                                           p.lines, p.samplingFreq, p.origin, p.micronsPerPixel,
                                           m_sinSteer, m_cosSteer, fine);
    return {line, line > 0 && line < m_lineEnd && sample > 0 && sample < m_sampleEnd};
}

UPoint ScanRegion::ToPixel(int line, int sample) const
{
    const Parameters& p = m_parameters;
    constexpr int lineOffset = 0;
    constexpr int notFlipped = 0;
    return qor_utils::GetPixelCoordinatesLD(line, sample, p.origin, p.micronsPerPixel,
                                            p.samplingFreq, p.steerAngle, p.scanB, p.probe,
                                            p.soundSpeed, p.lines, lineOffset, 0, 0, notFlipped);
}

} // namespace utils_statics
