#pragma once

#include <Utils_Statics/export.h>

#include <atltypes.h>
#include <qor_utils/ULine.h>
#include <qor_utils/UPoint.h>
#include <qor_utils/URect.h>
#include <qor_utils/ZelProbe.h>

class CDC;

/// The geometry of the ultrasound image: lines on a device context that follow the probe, pixels to
/// scan coordinates and back, and the mask of the imaged region. Static operations without state:
/// any thread as far as the device context allows. Nothing is thrown and nothing is kept.
///
/// Parameters that most operations take:
/// - `origin`: pixel of the image origin, the centre of curvature of a curved probe;
/// - `micronsPerPixel`: scale, in x and in y;
/// - `samplingFreq`: sampling frequency in Hz; `soundSpeed`: in m/s. The depth of sample s in
///   microns is trunc(s x (soundSpeed x 1,000,000) / (2.0 x samplingFreq)). The product in
///   parentheses is 32 bits wide and wraps around above 2147 m/s;
/// - `scanA`, `scanB`, `scanC`, `ld`: passed on to the conversion routines, whose header
///   qor_utils/PixelCoordinates.h explains them; angles are thousandths of a degree;
/// - `width`, `height`: image size in pixels; `flip`: bit 0 mirrors left-right, bit 1 top-bottom.
///
/// Drawing uses the pen selected into `dc`; with a null `dc` the same is computed and nothing
/// drawn. Results are the bounding rectangle of the two end points drawn (also of an arc), or all
/// zero when nothing was drawn. A null `probe` counts as one of unknown type.
///
/// Numbers without a meaning never trap: quotients by zero become the nearest representable number
/// (0 / 0 and integer quotients: 0), integer sums and differences wrap around, and real results
/// beyond 32 bits stop at the nearest limit.
class UTILS_STATICS_API CImgGeometry
{
public:
    CImgGeometry() = delete;

    /// Draws the part of scan line `line` between two samples: straight on every probe. Unknown
    /// types draw nothing.
    static URect DrawVerticalUSLine(CDC* dc, int line, int sample1, int sample2,
                                    const UPoint& origin, const UPoint& micronsPerPixel,
                                    int samplingFreq, int scanA, int scanB, const ZelProbe* probe,
                                    int soundSpeed, int scanC, int width, int height, int flip,
                                    int ld);

    /// Draws the line of constant depth at `sample` between two scan lines: an arc on curved
    /// probes, a chord on the others (deliberately also on phased ones). Unknown types and a zero
    /// scale draw nothing. An arc of a circle of more than half a million pixels is not drawn; its
    /// result is the same.
    static URect DrawHorizontalUSLine(CDC* dc, int sample, int line1, int line2,
                                      const UPoint& origin, const UPoint& micronsPerPixel,
                                      int samplingFreq, int scanA, int scanB, const ZelProbe* probe,
                                      int soundSpeed, int scanC, int width, int height, int flip,
                                      int ld);

    /// As DrawVerticalUSLine, clipped to the sector edges `clip1` (at the line's start) and `clip2`
    /// (at its end) on probes that are neither curved nor linear, unless the sector is extended
    /// (scanB).
    static URect DrawVerticalUSLineClip(CDC* dc, int line, int sample1, int sample2,
                                        const UPoint& origin, const UPoint& micronsPerPixel,
                                        int samplingFreq, int scanA, int scanB,
                                        const ZelProbe* probe, int soundSpeed, const ULine& clip1,
                                        const ULine& clip2, int scanC, int width, int height,
                                        int flip, int ld);

    /// As DrawHorizontalUSLine, clipped likewise.
    static URect DrawHorizontalUSLineClip(CDC* dc, int sample, int line1, int line2,
                                          const UPoint& origin, const UPoint& micronsPerPixel,
                                          int samplingFreq, int scanA, int scanB,
                                          const ZelProbe* probe, int soundSpeed, const ULine& clip1,
                                          const ULine& clip2, int scanC, int width, int height,
                                          int flip, int ld);

    /// Clips `line` against the edge line `clip`, at its start or its end, into `out`. False when
    /// nothing was clipped; `out` is then `line` with its end points in order.
    ///
    /// Where line and edge cross, a stroke is drawn from the intersection. On a vertical edge it
    /// runs along the edge down to the line's lower end. On any other edge it runs horizontally, to
    /// the x that the edge has at the height of the line's lower end. A line that is nearly
    /// horizontal (less than 10 pixels) draws none.
    static bool ClipLines(CDC* dc, const ULine& line, const ULine& clip, ULine& out,
                          bool clipStart);

    /// The intersection of the infinite lines through two segments, in single precision. False,
    /// with `pt` unchanged, for parallel lines. The y on a vertical `a` is truncated, everything
    /// else rounded.
    static bool GetIntersectPt(const ULine& a, const ULine& b, UPoint& pt);

    /// The pixel of the point `distanceMicrons` deeper than `startSample` on `line`, to the whole
    /// sample above.
    static UPoint GetPixelDistanceCoordinates(int line, int startSample, int distanceMicrons,
                                              const UPoint& origin, const UPoint& micronsPerPixel,
                                              int samplingFreq, int scanA, int scanB,
                                              const ZelProbe* probe, int soundSpeed, int scanC,
                                              int width, int height, int flip);

    /// Microns from `sample1` to `sample2`, truncated; negative when sample2 comes first.
    static int GetUSDistance(int sample1, int sample2, int samplingFreq, int soundSpeed);

    /// The (line, sample) under pixel (x, y) of the flipped image: x counts elements less
    /// `lineOffset`, y samples. `lines` is the number of scan lines of the frame. (0, 0) without a
    /// probe.
    static UPoint GetUSCoordinates(int x, int y, const UPoint& origin,
                                   const UPoint& micronsPerPixel, int samplingFreq, int steerAngle,
                                   int scanB, int lines, const ZelProbe* probe, int soundSpeed,
                                   int lineOffset, int width, int height, int flip);

    /// Fills `mask` (width x height bytes, rows from the top) with `value` where a pixel lies
    /// inside the imaged region and 0 elsewhere. `imageRect` is the region in elements x samples;
    /// its edges are outside. The region is taken to be one vertical run in each column. True, also
    /// with nothing to write; false only for a null `mask` of a non-empty image.
    static bool CreateImageMask(unsigned char* mask, int width, int height, int samplingFreq,
                                int steerAngle, int lines, CRect imageRect, int scanB,
                                const ZelProbe* probe, int soundSpeed, const UPoint& origin,
                                const UPoint& micronsPerPixel, unsigned char value);

    /// Centres `rect` horizontally in a span of `width` pixels, one pixel to the left of the exact
    /// middle.
    static void CenterImageRect(CRect& rect, int width);
};
