#include "Utils_Statics/CImgGeometry.h"

#include <base/WrapArithmetic.h>
#include <qor_utils/Rounding.h>

#include <afxwin.h>

#include <algorithm>
#include <cstdint>

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

void Stroke(CDC* dc, const UPoint& from, const UPoint& to)
{
    if (!dc) return;
    dc->MoveTo(from.x, from.y);
    dc->LineTo(to.x, to.y);
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
