#pragma once

#include <qor_imgproc/export.h>
#include <qor_utils/ConversionModel.h>
#include <qor_utils/UPoint.h>
#include <qor_utils/URect.h>

/// A position on the acquisition grid as ScanConverter::GetPreciseUSCoordinates reports it: whole
/// numbers, rounded downwards, and sixteenths above them.
struct ScanPixel
{
    int line = -1;
    int sample = -1;
    unsigned int lineFraction = 0;
    unsigned int sampleFraction = 0;
};

/// Pixels to (line, sample) for the pixels of one image: what does not change from pixel to pixel
/// is worked out once. Its results are those of ScanConverter::GetPreciseUSCoordinates to the last
/// bit (which is one use of this class). A value; any thread; nothing thrown.
class QOR_IMGPROC_API PixelConverter
{
public:
    /// Parameters as of ScanConverter::GetPreciseUSCoordinates.
    PixelConverter(const URect& lineSampleRect, const ZelProbe* probe, int soundSpeed, int scanB,
                   int lines, int samplingFreq, const UPoint& origin, const UPoint& micronsPerPixel,
                   double sinSteer, double cosSteer);

    /// The position under pixel (x, y) of the image before flipping.
    ScanPixel At(int x, int y) const;

    /// How far the outside reaches upwards, told from one pixel of a column.
    struct Outside
    {
        ScanPixel pixel;         ///< the position under the pixel itself
        bool inside = false;     ///< 0 < line < lineEnd and 0 < sample < sampleEnd
        int pixelsAbove = 0;     ///< so many pixels directly above are certainly outside too ...
        int pixelsPastLines = 0; ///< ... and so many have certainly a line at or past lineEnd
    };

    /// Tests pixel (x, y) against the region of lines and samples between 0 and the ends (both
    /// exclusive) and says how many pixels above it need no test: a lower bound from the distance
    /// to the region's nearest edge.
    Outside TestUpwards(int x, int y, int lineEnd, int sampleEnd) const;

private:
    qor_utils::MicronPoint ToMicrons(int x, int y) const;
    ScanPixel Quantise(const qor_utils::ScanPoint& scan) const;
    int PixelsWithin(double microns) const;

    qor_utils::ConversionModel m_model;
    UPoint m_origin;
    UPoint m_scale;
    UPoint m_corner; // line and sample that count as 0
};
