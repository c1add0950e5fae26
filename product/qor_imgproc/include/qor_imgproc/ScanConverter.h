#pragma once

#include <qor_imgproc/export.h>
#include <qor_utils/UPoint.h>
#include <qor_utils/URect.h>
#include <qor_utils/ZelProbe.h>

/// Conversion between the acquisition grid and the displayed image; docs/conversion-model.md has
/// the geometry. Its operations have no state, may be called on any thread and do not throw.
class QOR_IMGPROC_API ScanConverter
{
public:
    /// The (line, sample) under pixel (x, y) of the image before flipping: the exact inverse of
    /// qor_utils::GetPixelCoordinatesLD with `lines` lines over the aperture and no line offset.
    ///
    /// - `line` and `sample` are rounded downwards and are negative before the first.
    /// - `lineFraction` and `sampleFraction` are the sixteenths above them, 0 to 15.
    /// - Positions are first rounded to the nearest sixteenth, so that a pixel on a line gets that
    ///   line. Positions beyond +-2^26 become that limit.
    /// - Each of the four results may be null.
    /// - `line` and `sample` count from the left top corner of `lineSampleRect`, unless that is all
    ///   zero.
    /// - `sinSteer` and `cosSteer` are those of `steerAngle`. The angle itself is not used.
    /// - `fine` asks for full accuracy, which is always given.
    ///
    /// Input without a geometry (no probe, unknown type; a frequency, sound speed, line or element
    /// count, pitch or sector that is not positive; zero radius or scale; an angle that is not a
    /// number) puts every pixel outside: line and sample -1, fractions 0.
    static void GetPreciseUSCoordinates(int x, int y, int* line, int* sample,
                                        unsigned int* lineFraction, unsigned int* sampleFraction,
                                        const URect& lineSampleRect, const ZelProbe* probe,
                                        int soundSpeed, int steerAngle, int scanB, int lines,
                                        int samplingFreq, const UPoint& origin,
                                        const UPoint& micronsPerPixel, double sinSteer,
                                        double cosSteer, bool fine);
};
