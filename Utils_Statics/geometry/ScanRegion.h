#pragma once

#include <qor_utils/UPoint.h>
#include <qor_utils/URect.h>
#include <qor_utils/ZelProbe.h>

namespace utils_statics {

// The imaged region of one frame, in lines and samples, as the pixels of an image see it.
class ScanRegion
{
public:
    // The parameters of CreateImageMask that place the region in the image.
    struct Parameters
    {
        const ZelProbe* probe;
        int soundSpeed;   // m/s
        int samplingFreq; // Hz
        int steerAngle;   // thousandths of a degree
        int scanB;        // passed on to the conversions
        int lines;        // scan lines of the frame
        UPoint origin;
        UPoint micronsPerPixel;
    };

    // What the scan converter says of one pixel.
    struct Pixel
    {
        int line;    // relative to the region's first line
        bool inside; // strictly: the region's edges are outside
    };

    // `imageRect` is the region in elements x samples.
    ScanRegion(const Parameters& parameters, const URect& imageRect);

    // `fine` asks for the full accuracy of the conversion.
    Pixel At(int x, int y, bool fine) const;

    // The first line past the region, relative to its first line.
    int LineEnd() const { return m_lineEnd; }

    // The region in lines x samples of the frame.
    const URect& Rect() const { return m_rect; }

    // Whether the region is a part of the frame: it begins at or behind the probe's face and ends
    // with the last line. Only then is its outline where ToPixel puts its edges.
    bool IsPartOfFrame() const
    {
        return m_rect.left >= 0 && m_rect.right <= m_parameters.lines && m_rect.top >= 0;
    }

    // The pixel of a line and a sample of the frame.
    UPoint ToPixel(int line, int sample) const;

private:
    Parameters m_parameters;
    double m_sinSteer;
    double m_cosSteer;
    URect m_rect; // lines x samples
    int m_lineEnd;
    int m_sampleEnd;
};

} // namespace utils_statics
