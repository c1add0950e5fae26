#include "study/SpectralPoints.h"

#include <Utils_Statics/CDopplerScaling.h>
#include <Utils_Statics/MatrixRoutines.h>

#include <algorithm>
#include <cmath>
#include <set>

namespace exam {

namespace {

constexpr int highestDegree = 8;

double Baseline()
{
    return CDopplerScaling::GetPixelBaseline(static_cast<int>(CDopplerScaling::GetPWFFT() / 2));
}

// The powers of the abscissa, which is scaled to -1..1 because the normal equations have half of
// the digits.
std::vector<double> PowersOf(const std::vector<MarkPoint>& points, int degree)
{
    const auto [low, high] = std::ranges::minmax_element(points, {}, &MarkPoint::x);
    const double middle = (low->x + high->x) / 2;
    const double half = (high->x - low->x) / 2;
    std::vector<double> powers;
    for (const MarkPoint& point : points) {
        double power = 1;
        for (int i = 0; i <= degree; ++i) {
            powers.push_back(power);
            power *= half > 0 ? (point.x - middle) / half : 0;
        }
    }
    return powers;
}

std::size_t DistinctAbscissas(const std::vector<MarkPoint>& points)
{
    std::set<double> abscissas;
    for (const MarkPoint& point : points)
        abscissas.insert(point.x);
    return abscissas.size();
}

} // namespace

double VelocityAt(double pixel)
{
    return (pixel - Baseline()) * CDopplerScaling::GetVelPerPixel();
}

double PixelOf(double velocity)
{
    const double perPixel = CDopplerScaling::GetVelPerPixel();
    return Baseline() + (perPixel == 0 ? 0 : velocity / perPixel);
}

std::vector<MarkPoint> TracePoints(const spectralTraceData& traces, eTraceType type, int first,
                                   int last, double secondsPerColumn)
{
    const unsigned char* const bins = traces.getDataSet(type);
    std::vector<MarkPoint> points;
    if (!bins) return points;
    for (int column = std::max(first, 0); column < std::min(last, traces.getSetSize()); ++column)
        points.push_back({column * secondsPerColumn,
                          VelocityAt(CDopplerScaling::GetPixelBaseline(bins[column]))});
    return points;
}

std::vector<MarkPoint> CurveThrough(const std::vector<MarkPoint>& trace, int degree)
{
    const int terms = std::clamp(degree, 1, highestDegree) + 1;
    const int count = static_cast<int>(trace.size());
    if (DistinctAbscissas(trace) < static_cast<std::size_t>(terms)) return trace;
    const std::vector<double> powers = PowersOf(trace, terms - 1);
    std::vector<double> heights(trace.size());
    std::ranges::transform(trace, heights.begin(), &MarkPoint::y);
    std::vector<double> coefficients(static_cast<std::size_t>(terms));
    MAT_LeastSquares(powers.data(), count, terms, heights.data(), coefficients.data());
    MAT_MatrixVectorProduct(powers.data(), count, terms, coefficients.data(), terms,
                            heights.data());
    if (!std::ranges::all_of(heights, [](double height) { return std::isfinite(height); }))
        return trace;
    std::vector<MarkPoint> curve = trace;
    for (std::size_t i = 0; i < curve.size(); ++i)
        curve[i].y = heights[i];
    return curve;
}

std::vector<MarkPoint> SmoothTrace(const std::vector<MarkPoint>& trace)
{
    constexpr std::size_t degree = 3;
    constexpr std::size_t reach = 5; // points on each side of those that one curve places
    constexpr std::size_t placed = 3;
    std::vector<MarkPoint> smooth;
    while (smooth.size() < trace.size()) {
        const std::size_t at = smooth.size();
        const std::size_t first = at < reach ? 0 : at - reach;
        const std::size_t last = std::min(trace.size(), at + placed + reach);
        const auto begin = trace.begin();
        const std::vector<MarkPoint> part(begin + static_cast<std::ptrdiff_t>(first),
                                          begin + static_cast<std::ptrdiff_t>(last));
        const std::vector<MarkPoint> curve = CurveThrough(part, degree);
        for (std::size_t i = at; i < std::min(trace.size(), at + placed); ++i)
            smooth.push_back(curve[i - first]);
    }
    return smooth;
}

} // namespace exam
