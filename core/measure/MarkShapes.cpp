#include "measure/MarkShapes.h"

#include "study/SpectralPoints.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace exam {

namespace {

constexpr double halfSize = 40;    // pixels, of a mark that is placed by one press
constexpr double firstAngle = -60; // degrees, of a new angle
constexpr double firstRatio = 0.6; // of a new ellipse's axes
constexpr double arrowHead = 14;   // pixels
constexpr double arrowAngle = 25;  // degrees
constexpr int ellipseSteps = 72;

PixelPoint Sum(const PixelPoint& a, const PixelPoint& b)
{
    return {a.x + b.x, a.y + b.y};
}

PixelPoint Difference(const PixelPoint& to, const PixelPoint& from)
{
    return {to.x - from.x, to.y - from.y};
}

PixelPoint Scaled(const PixelPoint& a, double factor)
{
    return {a.x * factor, a.y * factor};
}

PixelPoint Turned(const PixelPoint& a, double degrees)
{
    const double radians = degrees * std::numbers::pi / 180;
    return {a.x * std::cos(radians) - a.y * std::sin(radians),
            a.x * std::sin(radians) + a.y * std::cos(radians)};
}

PixelPoint Middle(const PixelPoint& a, const PixelPoint& b)
{
    return Scaled(Sum(a, b), 0.5);
}

// Half of an ellipse's other axis: the distance of a point from the line through the first one.
double OtherHalf(const PixelPoint& a, const PixelPoint& b, const PixelPoint& point)
{
    const PixelPoint axis = Difference(b, a);
    const PixelPoint way = Difference(point, a);
    const double length = std::hypot(axis.x, axis.y);
    return length == 0 ? 0 : std::abs(axis.x * way.y - axis.y * way.x) / length;
}

// The end of an ellipse's other axis.
PixelPoint OtherEnd(const PixelPoint& a, const PixelPoint& b, double half)
{
    const PixelPoint axis = Difference(b, a);
    const double length = std::hypot(axis.x, axis.y);
    return length == 0 ? a : Sum(Middle(a, b), Scaled(Turned(axis, 90), half / length));
}

PixelPoints CurveOutline(const PixelPoints& points)
{
    std::vector<MarkPoint> trace;
    for (const PixelPoint& point : points)
        trace.push_back({point.x, point.y});
    PixelPoints curve;
    for (const MarkPoint& point : SmoothTrace(trace))
        curve.push_back({point.x, point.y});
    return curve;
}

PixelPoints EllipseOutline(const PixelPoints& points)
{
    const PixelPoint middle = Middle(points[0], points[1]);
    const PixelPoint half = Difference(points[1], middle);
    const double ratio =
        OtherHalf(points[0], points[1], points[2]) / std::max(1e-9, std::hypot(half.x, half.y));
    const PixelPoint other = Scaled(Turned(half, 90), ratio);
    PixelPoints outline;
    for (int i = 0; i <= ellipseSteps; ++i) {
        const double angle = 2 * std::numbers::pi * i / ellipseSteps;
        outline.push_back(
            Sum(middle, Sum(Scaled(half, std::cos(angle)), Scaled(other, std::sin(angle)))));
    }
    return outline;
}

PixelPoints RectangleOutline(const PixelPoint& a, const PixelPoint& b)
{
    return {a, {b.x, a.y}, b, {a.x, b.y}, a};
}

PixelPoints ArrowOutline(const PixelPoint& from, const PixelPoint& tip)
{
    const PixelPoint back = Difference(from, tip);
    const double length = std::max(1e-9, std::hypot(back.x, back.y));
    const PixelPoint barb = Scaled(back, arrowHead / length);
    return {from, tip, Sum(tip, Turned(barb, arrowAngle)), tip,
            Sum(tip, Turned(barb, -arrowAngle))};
}

double DistanceFromLine(const PixelPoint& a, const PixelPoint& b, const PixelPoint& place)
{
    const PixelPoint line = Difference(b, a);
    const PixelPoint way = Difference(place, a);
    const double square = line.x * line.x + line.y * line.y;
    const double share =
        square == 0 ? 0 : std::clamp((way.x * line.x + way.y * line.y) / square, 0.0, 1.0);
    return Distance(Sum(a, Scaled(line, share)), place);
}

} // namespace

CPoint PixelAt(const PixelPoint& point)
{
    return {static_cast<int>(std::lround(point.x)), static_cast<int>(std::lround(point.y))};
}

PixelPoint Exactly(CPoint pixel)
{
    return {static_cast<double>(pixel.x), static_cast<double>(pixel.y)};
}

PixelPoint MiddleOf(const CRect& area)
{
    return {(area.left + area.right) / 2.0, (area.top + area.bottom) / 2.0};
}

PixelPoint MiddleOf(const PixelPoints& points)
{
    PixelPoint middle;
    for (const PixelPoint& point : points)
        middle = Sum(middle, Scaled(point, 1.0 / static_cast<double>(points.size())));
    return middle;
}

double Distance(const PixelPoint& a, const PixelPoint& b)
{
    return std::hypot(b.x - a.x, b.y - a.y);
}

PixelPoints PointsOfDrag(MarkKind kind, const PixelPoint& from, const PixelPoint& to)
{
    const PixelPoint way = Difference(to, from);
    switch (kind) {
    case MarkKind::angle: return {to, from, Sum(from, Turned(way, firstAngle))};
    case MarkKind::ellipse:
        return {from, to, OtherEnd(from, to, Distance(from, to) / 2 * firstRatio)};
    case MarkKind::velocity:
    case MarkKind::text:
    case MarkKind::term: return {to};
    default: return {from, to};
    }
}

PixelPoints PointsAround(MarkKind kind, const PixelPoint& middle)
{
    const PixelPoint from{middle.x - halfSize, middle.y};
    const PixelPoint to{middle.x + halfSize, middle.y};
    switch (kind) {
    case MarkKind::trace:
        return EllipseOutline({from, to, {middle.x, middle.y + halfSize * firstRatio}});
    case MarkKind::rectangle: return {{from.x, from.y - halfSize / 2}, {to.x, to.y + halfSize / 2}};
    case MarkKind::velocity:
    case MarkKind::text:
    case MarkKind::term: return {middle};
    default: return PointsOfDrag(kind, from, to);
    }
}

void PutPoint(MarkKind kind, PixelPoints& points, std::size_t index, const PixelPoint& to)
{
    if (kind != MarkKind::ellipse) {
        points[index] = to;
        return;
    }
    const PixelPoint third = index == 2 ? to : points[2];
    const double half = OtherHalf(points[0], points[1], third);
    if (index != 2) points[index] = to;
    points[2] = OtherEnd(points[0], points[1], half);
}

std::size_t Grips(const Mark& mark)
{
    const bool isDrawn = mark.kind == MarkKind::trace || mark.kind == MarkKind::flow;
    return isDrawn ? 0 : mark.points.size();
}

std::optional<std::size_t> PointAtPlace(const Mark& mark, int place)
{
    const auto at = static_cast<std::size_t>(place);
    if (place < 0) return {};
    if (at < Grips(mark)) return at;
    const bool isOfTrace = mark.kind == MarkKind::trace && at > 0 && at <= mark.points.size();
    return isOfTrace ? std::optional(at - 1) : std::nullopt;
}

PixelPoints OutlineOf(MarkKind kind, const PixelPoints& points)
{
    switch (kind) {
    case MarkKind::ellipse: return EllipseOutline(points);
    case MarkKind::rectangle: return RectangleOutline(points[0], points[1]);
    case MarkKind::arrow: return ArrowOutline(points[0], points[1]);
    case MarkKind::flow: return CurveOutline(points);
    case MarkKind::velocity:
    case MarkKind::text:
    case MarkKind::term: return {};
    case MarkKind::trace: {
        PixelPoints closed = points;
        closed.push_back(points.front());
        return closed;
    }
    default: return points;
    }
}

double DistanceFrom(const PixelPoints& path, const PixelPoint& place)
{
    const std::size_t line = NearestLine(path, place);
    return line == 0 ? 1e9 : DistanceFromLine(path[line - 1], path[line], place);
}

std::size_t NearestLine(const PixelPoints& path, const PixelPoint& place)
{
    std::size_t nearest = 0;
    double least = 1e9;
    for (std::size_t i = 1; i < path.size(); ++i) {
        const double distance = DistanceFromLine(path[i - 1], path[i], place);
        if (distance >= least) continue;
        least = distance;
        nearest = i;
    }
    return nearest;
}

bool Encloses(const PixelPoints& path, const PixelPoint& place)
{
    bool isInside = false; // changes at each line that is crossed on the way to the right
    for (std::size_t i = 1; i < path.size(); ++i) {
        const PixelPoint& a = path[i - 1];
        const PixelPoint& b = path[i];
        if ((a.y > place.y) == (b.y > place.y)) continue;
        if (place.x < a.x + (b.x - a.x) * (place.y - a.y) / (b.y - a.y)) isInside = !isInside;
    }
    return isInside;
}

} // namespace exam
