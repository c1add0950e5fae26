#pragma once

#include <qor_utils/ULine.h>
#include <qor_utils/UPoint.h>
#include <qor_utils/URect.h>
#include <qor_utils/ZelProbe.h>
#include <Utils_Statics/export.h>

#include <atltypes.h>

class CDC;

/// The geometry of the ultrasound image: lines on a device context that follow the probe,
/// conversions between pixels and scan coordinates, and the mask of the imaged region. The
/// operations are static and keep no state; any thread may call them as far as the device context
/// allows. Nothing is thrown.
///
/// Parameters that most operations take:
/// - `origin` is the pixel of the image origin, the centre of curvature of a curved probe.
/// - `micronsPerPixel` is the scale in x and in y.
/// - `samplingFreq` is the sampling frequency in Hz, `soundSpeed` is in m/s. The depth of sample s
///   in microns is trunc(s x (soundSpeed x 1,000,000) / (2.0 x samplingFreq)). The product in
///   parentheses is 32 bits wide and wraps around above 2147 m/s.
/// - `scanA`, `scanB`, `scanC` and `ld` go to the conversion routines; their header
///   qor_utils/PixelCoordinates.h explains them. Angles are thousandths of a degree.
/// - `width` and `height` are the image size in pixels. Bit 0 of `flip` mirrors left-right, bit 1
///   top-bottom.
///
/// Drawing uses the pen selected into `dc`; with a null `dc` the same is computed and nothing is
/// drawn. A drawing operation returns the bounding rectangle of the two end points drawn, also for
/// an arc, or all zeros when nothing is to be drawn. A null `probe` counts as one of unknown type.
///
/// Meaningless numbers never trap. A real quotient by zero becomes the nearest representable
/// number, or 0 when both are zero. Integer sums, differences and quotients wrap around. Real
/// results beyond 32 bits stop at the nearest limit.
class UTILS_STATICS_API CImgGeometry
{
public:
    CImgGeometry() = delete;

    /// Draws the part of scan line `line` between two samples, a straight line on every probe.
    /// Probes of unknown type draw nothing.
    static URect DrawVerticalUSLine(CDC* dc, int line, int sample1, int sample2,
                                    const UPoint& origin, const UPoint& micronsPerPixel,
                                    int samplingFreq, int scanA, int scanB, const ZelProbe* probe,
                                    int soundSpeed, int scanC, int width, int height, int flip,
                                    int ld);

    /// Draws the line of constant depth at `sample` between two scan lines: an arc on curved
    /// probes, a chord on the others (deliberately also on phased ones). Nothing is drawn for
    /// probes of unknown type or with a zero scale. An arc of a circle of more than half a million
    /// pixels is not drawn, but the result is as if it were.
    static URect DrawHorizontalUSLine(CDC* dc, int sample, int line1, int line2,
                                      const UPoint& origin, const UPoint& micronsPerPixel,
                                      int samplingFreq, int scanA, int scanB, const ZelProbe* probe,
                                      int soundSpeed, int scanC, int width, int height, int flip,
                                      int ld);

    /// Does what DrawVerticalUSLine does, but on probes that are neither curved nor linear it clips
    /// to the sector edges `clip1` (at the line's start) and `clip2` (at its end), unless the
    /// sector is extended (scanB). It also draws on probes of unknown type.
    static URect DrawVerticalUSLineClip(CDC* dc, int line, int sample1, int sample2,
                                        const UPoint& origin, const UPoint& micronsPerPixel,
                                        int samplingFreq, int scanA, int scanB,
                                        const ZelProbe* probe, int soundSpeed, const ULine& clip1,
                                        const ULine& clip2, int scanC, int width, int height,
                                        int flip, int ld);

    /// Does what DrawHorizontalUSLine does, with the clipping of DrawVerticalUSLineClip. It also
    /// draws on probes of unknown type, and with a zero scale unless the probe is curved.
    static URect DrawHorizontalUSLineClip(CDC* dc, int sample, int line1, int line2,
                                          const UPoint& origin, const UPoint& micronsPerPixel,
                                          int samplingFreq, int scanA, int scanB,
                                          const ZelProbe* probe, int soundSpeed, const ULine& clip1,
                                          const ULine& clip2, int scanC, int width, int height,
                                          int flip, int ld);

    /// Clips `line` against the edge line `clip`, at its start or its end, into `out`. When nothing
    /// was clipped, the result is false and `out` is `line` with its end points in order.
    ///
    /// Where line and edge cross, a stroke is drawn from the intersection. On a vertical edge it
    /// runs along the edge down to the line's lower end. On any other edge it runs horizontally, to
    /// the x that the edge has at the height of the line's lower end. A line that is nearly
    /// horizontal (less than 10 pixels) draws none.
    static bool ClipLines(CDC* dc, const ULine& line, const ULine& clip, ULine& out,
                          bool clipStart);

    /// Computes the intersection of the infinite lines through two segments, in single precision.
    /// False, with `pt` unchanged, for parallel lines. The y on a vertical `a` is truncated,
    /// everything else rounded.
    static bool GetIntersectPt(const ULine& a, const ULine& b, UPoint& pt);

    /// The pixel of the point on `line` that lies `distanceMicrons` deeper than `startSample`, the
    /// distance truncated to whole samples.
    static UPoint GetPixelDistanceCoordinates(int line, int startSample, int distanceMicrons,
                                              const UPoint& origin, const UPoint& micronsPerPixel,
                                              int samplingFreq, int scanA, int scanB,
                                              const ZelProbe* probe, int soundSpeed, int scanC,
                                              int width, int height, int flip);

    /// Microns from `sample1` to `sample2`, truncated; negative when sample2 comes first.
    static int GetUSDistance(int sample1, int sample2, int samplingFreq, int soundSpeed);

    /// The (line, sample) under pixel (x, y) of the flipped image. In the result x counts elements,
    /// less `lineOffset`, and y counts samples. `lines` is the number of scan lines of the frame.
    /// (0, 0) without a probe.
    static UPoint GetUSCoordinates(int x, int y, const UPoint& origin,
                                   const UPoint& micronsPerPixel, int samplingFreq, int steerAngle,
                                   int scanB, int lines, const ZelProbe* probe, int soundSpeed,
                                   int lineOffset, int width, int height, int flip);

    /// Fills `mask` (width x height bytes, rows from the top) with `value` where a pixel lies
    /// inside the imaged region and 0 elsewhere. `imageRect` is the region in elements x samples;
    /// its edges are outside. The region is assumed to be one vertical run in each column. False
    /// only for a null `mask` of a non-empty image.
    static bool CreateImageMask(unsigned char* mask, int width, int height, int samplingFreq,
                                int steerAngle, int lines, CRect imageRect, int scanB,
                                const ZelProbe* probe, int soundSpeed, const UPoint& origin,
                                const UPoint& micronsPerPixel, unsigned char value);

    /// Centres `rect` horizontally in a span of `width` pixels, one pixel to the left of the exact
    /// middle.
    static void CenterImageRect(CRect& rect, int width);
};
