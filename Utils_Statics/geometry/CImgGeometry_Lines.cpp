// CImgGeometry: drawing and clipping lines.
#include "Utils_Statics/CImgGeometry.h"

#include <base/WrapArithmetic.h>
#include <qor_utils/PixelCoordinates.h>
#include <qor_utils/Rounding.h>

#include <afxwin.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>

namespace {

// The imaging parameters that the drawing operations pass on.
struct Imaging
{
    const UPoint& origin;
    const UPoint& micronsPerPixel;
    int samplingFreq;
    int scanA;
    int scanB;
    const ZelProbe* probe;
    int soundSpeed;
    int scanC;
    int width;
    int height;
    int flip;
    int ld;

    UPoint ToPixel(int line, int sample) const
    {
        return qor_utils::GetPixelCoordinatesLD(line, sample, origin, micronsPerPixel, samplingFreq,
                                                scanA, scanB, probe, soundSpeed, ld, scanC, width,
                                                height, flip);
    }
    int ProbeType() const { return probe ? probe->type : -1; }
    bool KnownProbe() const { return ProbeType() >= 0 && ProbeType() <= 2; }
};

URect Bounds(const UPoint& a, const UPoint& b)
{
    return {std::min(a.x, b.x), std::min(a.y, b.y), std::max(a.x, b.x), std::max(a.y, b.y)};
}

void Stroke(CDC* dc, const UPoint& from, const UPoint& to)
{
    if (!dc) return;
    dc->MoveTo(from.x, from.y);
    dc->LineTo(to.x, to.y);
}

URect DrawStraight(CDC* dc, const UPoint& p1, const UPoint& p2)
{
    Stroke(dc, p1, p2);
    return Bounds(p1, p2);
}

int Depth(const Imaging& imaging, int sample)
{
    const int product = base::wrap::Multiply(imaging.soundSpeed, 1000000);
    return base::wrap::Truncate(static_cast<double>(sample) * product /
                                (2.0 * imaging.samplingFreq));
}

// The box of the circle of constant depth. It is deliberately one pixel larger at the right and the
// bottom than at the left and the top, and its edges are not put in order after flipping.
CRect ArcBox(const Imaging& imaging, int sample)
{
    const int radius = base::wrap::Add(Depth(imaging, sample), imaging.probe->radius);
    const int rx = base::wrap::Divide(radius, imaging.micronsPerPixel.x);
    const int ry = base::wrap::Divide(radius, imaging.micronsPerPixel.y);
    CRect box;
    box.SetRect(base::wrap::Subtract(-1, rx), base::wrap::Subtract(-1, ry), base::wrap::Add(rx, 2),
                base::wrap::Add(ry, 2));
    box.OffsetRect(imaging.origin.x, imaging.origin.y);
    if (imaging.flip & qor_utils::flipLeftRight) {
        box.left = base::wrap::Subtract(imaging.width, box.left);
        box.right = base::wrap::Subtract(imaging.width, box.right);
    }
    if (imaging.flip & qor_utils::flipTopBottom) {
        box.top = base::wrap::Subtract(imaging.height, box.top);
        box.bottom = base::wrap::Subtract(imaging.height, box.bottom);
    }
    return box;
}

// True when GDI can be asked for an arc of this box. No device shows one of more than half a
// million pixels, and GDI implementations have been seen to fail on it.
bool Drawable(const CRect& box)
{
    constexpr long long most = 1 << 19;
    const auto small = [](long long a, long long b) {
        return std::abs(a) <= most && std::abs(a - b) <= most;
    };
    return small(box.left, box.right) && small(box.top, box.bottom);
}

// GDI draws arcs counter-clockwise: below its centre an arc runs from left to right, above it from
// right to left.
void DrawArc(CDC* dc, const Imaging& imaging, int sample, const UPoint& p1, const UPoint& p2)
{
    if (!dc) return;
    const bool reversed =
        (imaging.probe->radius < 0) != ((imaging.flip & qor_utils::flipTopBottom) != 0);
    // When both x are equal, the arc starts at p2, or at p1 when reversed.
    const bool fromFirst = (p1.x < p2.x) != reversed;
    const UPoint& start = fromFirst ? p1 : p2;
    const UPoint& end = fromFirst ? p2 : p1;
    const CRect box = ArcBox(imaging, sample);
    if (!Drawable(box)) return;
    ::Arc(dc->m_hDC, box.left, box.top, box.right, box.bottom, start.x, start.y, end.x, end.y);
}

// Draws the straight line from p1 to p2, clipped to the sector edges unless the probe is curved or
// linear or the sector extended.
URect DrawClipped(CDC* dc, const Imaging& imaging, const UPoint& p1, const UPoint& p2,
                  const ULine& clip1, const ULine& clip2)
{
    const int probe = imaging.ProbeType();
    if (probe == qor_utils::curvedProbe || probe == qor_utils::linearProbe)
        return DrawStraight(dc, p1, p2);
    const ULine line{p1.x, p1.y, p2.x, p2.y};
    ULine out = line;
    // `out` is drawn even when neither edge clips.
    if (imaging.scanB == 0 && !CImgGeometry::ClipLines(dc, line, clip1, out, true))
        CImgGeometry::ClipLines(dc, line, clip2, out, false);
    return DrawStraight(dc, {out.x1, out.y1}, {out.x2, out.y2});
}

} // namespace

URect CImgGeometry::DrawVerticalUSLine(CDC* dc, int line, int sample1, int sample2,
                                       const UPoint& origin, const UPoint& micronsPerPixel,
                                       int samplingFreq, int scanA, int scanB,
                                       const ZelProbe* probe, int soundSpeed, int scanC, int width,
                                       int height, int flip, int ld)
{
    const Imaging imaging{origin,     micronsPerPixel, samplingFreq, scanA,  scanB, probe,
                          soundSpeed, scanC,           width,        height, flip,  ld};
    if (!imaging.KnownProbe()) return {};
    return DrawStraight(dc, imaging.ToPixel(line, sample1), imaging.ToPixel(line, sample2));
}

URect CImgGeometry::DrawHorizontalUSLine(CDC* dc, int sample, int line1, int line2,
                                         const UPoint& origin, const UPoint& micronsPerPixel,
                                         int samplingFreq, int scanA, int scanB,
                                         const ZelProbe* probe, int soundSpeed, int scanC,
                                         int width, int height, int flip, int ld)
{
    const Imaging imaging{origin,     micronsPerPixel, samplingFreq, scanA,  scanB, probe,
                          soundSpeed, scanC,           width,        height, flip,  ld};
    if (micronsPerPixel.x == 0 || micronsPerPixel.y == 0 || !imaging.KnownProbe()) return {};
    const UPoint p1 = imaging.ToPixel(line1, sample);
    const UPoint p2 = imaging.ToPixel(line2, sample);
    if (imaging.ProbeType() != qor_utils::curvedProbe) return DrawStraight(dc, p1, p2);
    DrawArc(dc, imaging, sample, p1, p2);
    return Bounds(p1, p2);
}

URect CImgGeometry::DrawVerticalUSLineClip(CDC* dc, int line, int sample1, int sample2,
                                           const UPoint& origin, const UPoint& micronsPerPixel,
                                           int samplingFreq, int scanA, int scanB,
                                           const ZelProbe* probe, int soundSpeed,
                                           const ULine& clip1, const ULine& clip2, int scanC,
                                           int width, int height, int flip, int ld)
{
    const Imaging imaging{origin,     micronsPerPixel, samplingFreq, scanA,  scanB, probe,
                          soundSpeed, scanC,           width,        height, flip,  ld};
    return DrawClipped(dc, imaging, imaging.ToPixel(line, sample1), imaging.ToPixel(line, sample2),
                       clip1, clip2);
}

URect CImgGeometry::DrawHorizontalUSLineClip(CDC* dc, int sample, int line1, int line2,
                                             const UPoint& origin, const UPoint& micronsPerPixel,
                                             int samplingFreq, int scanA, int scanB,
                                             const ZelProbe* probe, int soundSpeed,
                                             const ULine& clip1, const ULine& clip2, int scanC,
                                             int width, int height, int flip, int ld)
{
    const Imaging imaging{origin,     micronsPerPixel, samplingFreq, scanA,  scanB, probe,
                          soundSpeed, scanC,           width,        height, flip,  ld};
    if (imaging.ProbeType() == qor_utils::curvedProbe)
        return DrawHorizontalUSLine(dc, sample, line1, line2, origin, micronsPerPixel, samplingFreq,
                                    scanA, scanB, probe, soundSpeed, scanC, width, height, flip,
                                    ld);
    return DrawClipped(dc, imaging, imaging.ToPixel(line1, sample), imaging.ToPixel(line2, sample),
                       clip1, clip2);
}

namespace {

constexpr float verticalSlope = 1e10F; // steeper than any line between two 32-bit points

ULine Reversed(const ULine& line)
{
    return {line.x2, line.y2, line.x1, line.y1};
}

void SetStart(ULine& line, const UPoint& p)
{
    line.x1 = p.x;
    line.y1 = p.y;
}

void SetEnd(ULine& line, const UPoint& p)
{
    line.x2 = p.x;
    line.y2 = p.y;
}

void Replace(ULine& line, bool start, const UPoint& p)
{
    if (start)
        SetStart(line, p);
    else
        SetEnd(line, p);
}

bool Between(int value, int low, int high)
{
    return low <= value && value <= high;
}

float Slope(const ULine& line)
{
    if (line.x1 == line.x2) return verticalSlope;
    const auto dy = static_cast<float>(std::int64_t{line.y2} - line.y1);
    const auto dx = static_cast<float>(std::int64_t{line.x2} - line.x1);
    return dy / dx;
}

// The height at x = 0 of the line with slope `m` through the start of `line`.
float Intercept(const ULine& line, float m)
{
    return static_cast<float>(line.y1) - static_cast<float>(line.x1) * m;
}

// The height at `x` of the line with slope `m` through the start of `line`.
float HeightAt(int x, const ULine& line, float m)
{
    return static_cast<float>(x) * m + Intercept(line, m);
}

ULine HorizontalAt(int y)
{
    return {0, y, 1000, y};
}

// The point of `clip` at the height `y`. A horizontal edge has no such point: the result is (0, 0),
// which callers deliberately do not check.
UPoint PointAtHeight(const ULine& clip, int y)
{
    UPoint point;
    CImgGeometry::GetIntersectPt(HorizontalAt(y), clip, point);
    return point;
}

bool ClipAgainstSloping(CDC* dc, const ULine& line, const ULine& clip, const UPoint& ip, ULine& out)
{
    out = line.y1 > line.y2 ? Reversed(line) : line;
    if (Between(ip.y, out.y1, out.y2) &&
        Between(ip.x, std::min(out.x1, out.x2), std::max(out.x1, out.x2))) {
        UPoint edge;
        // Deliberate: the stroke is horizontal, at the height of the intersection. It ends at the x
        // that the edge has at the line's lower end.
        if (CImgGeometry::GetIntersectPt(HorizontalAt(out.y2), clip, edge))
            Stroke(dc, ip, {edge.x, ip.y});
        SetEnd(out, ip);
        return true;
    }
    if (out.y1 < ip.y) return false;
    if (out.y2 < ip.y || ip.y < 1) return false;
    const UPoint lower = PointAtHeight(clip, std::max(out.y1, out.y2));
    const UPoint upper = PointAtHeight(clip, std::min(out.y1, out.y2));
    SetStart(out, lower);
    SetEnd(out, upper);
    return true;
}

bool ClipAgainstVertical(CDC* dc, const ULine& clip, const UPoint& ip, ULine& out, bool clipStart)
{
    const int edge = clip.x1;
    const bool outside =
        clipStart ? out.x1 <= edge && out.x2 <= edge : out.x1 >= edge && out.x2 >= edge;
    if (outside) {
        out.x1 = out.x2 = ip.x; // the heights stay
        return true;
    }
    if (!Between(ip.x, out.x1, out.x2)) return false;
    UPoint foot;
    if (CImgGeometry::GetIntersectPt(HorizontalAt(std::max(out.y1, out.y2)), clip, foot))
        Stroke(dc, ip, foot);
    Replace(out, clipStart, ip);
    return true;
}

} // namespace

bool CImgGeometry::ClipLines(CDC* dc, const ULine& line, const ULine& clip, ULine& out,
                             bool clipStart)
{
    const ULine whole = line; // `out` may be the same object
    const std::int64_t rise = std::int64_t{whole.y1} - whole.y2;
    const bool nearlyHorizontal = rise > -10 && rise < 10;
    out = whole.x1 > whole.x2 ? Reversed(whole) : whole;
    UPoint ip;
    if (!GetIntersectPt(whole, clip, ip)) return false;
    if (nearlyHorizontal) {
        if (!Between(ip.x, out.x1, out.x2)) return false;
        Replace(out, clipStart, ip);
        return true;
    }
    if (clip.x1 != clip.x2) return ClipAgainstSloping(dc, whole, clip, ip, out);
    return ClipAgainstVertical(dc, clip, ip, out, clipStart);
}

bool CImgGeometry::GetIntersectPt(const ULine& a, const ULine& b, UPoint& pt)
{
    const float ma = Slope(a);
    const float mb = Slope(b);
    if (ma == mb) return false;
    if (ma == verticalSlope) {
        // Deliberate: truncated here, rounded in the next case.
        pt = {a.x1, base::wrap::Truncate(HeightAt(a.x1, b, mb))};
    } else if (mb == verticalSlope) {
        pt = {b.x1, qor_utils::round(HeightAt(b.x1, a, ma))};
    } else {
        const float ca = Intercept(a, ma);
        const float cb = Intercept(b, mb);
        const float k = 1.0F / (mb - ma);
        pt = {qor_utils::round((ca - cb) * k), qor_utils::round((ca * mb - cb * ma) * k)};
    }
    return true;
}
