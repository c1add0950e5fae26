#pragma once

#include <qor_utils/export.h>
#include <qor_utils/UPoint.h>
#include <qor_utils/URect.h>
#include <qor_utils/ZelProbe.h>

/// Conversion from the acquisition grid (scan line, sample) to the pixels of the displayed image;
/// docs/conversion-model.md has the geometry. The functions are pure, may be called on any thread
/// and do not throw.
///
/// Common parameters:
/// - `origin` is the pixel of the image origin before flipping: the centre of curvature of a curved
///   face, or the centre of the face of other probes.
/// - `micronsPerPixel` is the horizontal and vertical scale.
/// - `samplingFreq` is in Hz, `soundSpeed` in m/s.
/// - `scanA` is the steering angle, `scanB` the extension of a phased sector by a virtual apex
///   (0 for none), both in thousandths of a degree.
/// - `scanC` is the line offset, which is added to `line`.
/// - `width` and `height` are the image's size in pixels.
/// - `flip` mirrors left-right by bit 0 and top-bottom by bit 1. This happens only when both sizes
///   are non-zero, and maps x to width - x and y to height - y.
namespace qor_utils {

/// The bits of `flip`.
enum Flip : int
{
    flipLeftRight = 1,
    flipTopBottom = 2,
};

/// The display pixel of (line, sample), where `line` counts elements. Input without a geometry (no
/// probe, unknown type, non-positive frequency or sound speed) gives the pixel of the origin. A
/// zero scale gives the origin's coordinate on its axis. Results beyond 32 bits become the nearest
/// value.
QOR_UTILS_API UPoint GetPixelCoordinates(int line, int sample, const UPoint& origin,
                                         const UPoint& micronsPerPixel, int samplingFreq, int scanA,
                                         int scanB, const ZelProbe* probe, int soundSpeed,
                                         int scanC, int width, int height, int flip);

/// Does what GetPixelCoordinates does, with `ld` scan lines over the aperture. An `ld` of 0 or less
/// means one line for each element.
QOR_UTILS_API UPoint GetPixelCoordinatesLD(int line, int sample, const UPoint& origin,
                                           const UPoint& micronsPerPixel, int samplingFreq,
                                           int scanA, int scanB, const ZelProbe* probe,
                                           int soundSpeed, int ld, int scanC, int width, int height,
                                           int flip);

/// Microns per sample: soundSpeed x 1,000,000 / (2 x samplingFreq), in double precision. 0 for a
/// zero frequency.
QOR_UTILS_API double GetSampleSize(int samplingFreq, int soundSpeed);

/// Converts an image rectangle (elements x samples) to the line/sample rectangle of the scan
/// converter: the horizontal edges are multiplied by lines / elements and truncated, the samples
/// are kept. Without elements `out` is all zero.
QOR_UTILS_API void ConvertRect(const URect& in, int lines, int elements, URect& out);

} // namespace qor_utils
