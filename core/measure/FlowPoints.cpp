#include "measure/FlowPoints.h"

#include "study/SpectralPoints.h"

#include <algorithm>
#include <cmath>

namespace exam {

namespace {

using Points = std::vector<MarkPoint>;

double Fastest(const Points& envelope)
{
    double fastest = 0;
    for (const MarkPoint& point : envelope)
        fastest = std::max(fastest, std::abs(point.y));
    return fastest;
}

Points Envelope(const SpectralStrip& strip, eTraceType type, double from, double to)
{
    const FlowSpectrum& flow = strip.Flow();
    const auto column = [&](double time) {
        return static_cast<int>(std::lround(time * flow.columnsPerSecond)) - flow.firstColumn;
    };
    Points points =
        TracePoints(strip.Traces(), type, column(from), column(to) + 1, 1 / flow.columnsPerSecond);
    for (MarkPoint& point : points)
        point.x += flow.firstColumn / flow.columnsPerSecond;
    if (points.size() > InfoOf(MarkKind::flow).mostPoints)
        points.resize(InfoOf(MarkKind::flow).mostPoints);
    return points;
}

// The middles of the times at which the envelope is faster than midway between its extremes. What
// is cut by an end of the envelope does not count.
Points Systoles(const Points& envelope)
{
    const auto [least, most] = std::ranges::minmax_element(
        envelope, {}, [](const MarkPoint& point) { return std::abs(point.y); });
    const double midway = (std::abs(least->y) + std::abs(most->y)) / 2;
    Points systoles;
    auto begin = envelope.end();
    bool wasSlow = false;
    for (auto point = envelope.begin(); point != envelope.end(); ++point) {
        const bool isFast = std::abs(point->y) > midway;
        if (isFast && wasSlow) begin = point;
        if (!isFast && begin != envelope.end()) {
            systoles.push_back({(begin->x + (point - 1)->x) / 2, most->y});
            begin = envelope.end();
        }
        wasSlow = !isFast;
    }
    return systoles;
}

} // namespace

std::vector<MarkPoint> FlowPoints(const SpectralStrip& strip, MarkKind kind, double from, double to)
{
    if (to < from) std::swap(from, to);
    const Points forward = Envelope(strip, eTraceEnvelopeForward, from, to);
    const Points reverse = Envelope(strip, eTraceEnvelopeReverse, from, to);
    const Points& envelope = Fastest(forward) >= Fastest(reverse) ? forward : reverse;
    if (envelope.size() < 2) return {{from, 0}, {to, 0}};
    if (kind == MarkKind::flow) return envelope;
    Points systoles = Systoles(envelope);
    return systoles.size() < 2 ? Points{{from, 0}, {to, 0}} : systoles;
}

} // namespace exam
