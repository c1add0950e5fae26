#pragma once

#include <qor_imgproc/export.h>
#include <qor_utils/UPoint.h>
#include <qor_utils/URect.h>
#include <qor_utils/ZelProbe.h>

/// Conversion between the acquisition grid and the displayed image; docs/conversion-model.md has
/// the geometry. Static operations without state: any thread, nothing thrown.
class QOR_IMGPROC_API ScanConverter
{
public:
    /// The (line, sample) under pixel (x, y) of the image before flipping: the exact inverse of
    /// qor_utils::GetPixelCoordinatesLD with `lines` lines over the aperture and no line offset.
    ///
    /// - `line`, `sample`: rounded downwards, negative before the first; `lineFraction`,
    /// `sampleFraction`: sixteenths
    ///   above them, 0 to 15. Positions are rounded to the nearest sixteenth first, so that a pixel
    ///   on a line says so. Each of the four may be null. Positions beyond +-2^26 stop there.
    /// - `lineSampleRect`: unless all zero, `line` and `sample` are counted from its left top
    /// corner.
    /// - `steerAngle` is what `sinSteer` and `cosSteer` are the sine and cosine of; these are what
    /// is used.
    /// - `fine` asks for full accuracy; it is always given.
    ///
    /// Input without a geometry (no probe, unknown type; a frequency, sound speed, line or element
    /// count, pitch or sector that is not positive; zero radius or scale; an angle that is no
    /// number) puts every pixel outside: line and sample -1, fractions 0.
    static void GetPreciseUSCoordinates(int x, int y, int* line, int* sample,
                                        unsigned int* lineFraction, unsigned int* sampleFraction,
                                        const URect& lineSampleRect, const ZelProbe* probe,
                                        int soundSpeed, int steerAngle, int scanB, int lines,
                                        int samplingFreq, const UPoint& origin,
                                        const UPoint& micronsPerPixel, double sinSteer,
                                        double cosSteer, bool fine);
};
