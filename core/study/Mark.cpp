#include "study/Mark.h"

#include <algorithm>
#include <cmath>

namespace exam {

namespace {

constexpr std::size_t manyPoints = 1000;
constexpr auto onFrame = MarkPlace::frame;
constexpr auto onStrip = MarkPlace::strip;

// The order is that of MarkKind.
constexpr MarkKindInfo kinds[] = {
    {MarkKind::distance, L"distance", "study.kind.distance", onFrame, true, 2, 2},
    {MarkKind::angle, L"angle", "study.kind.angle", onFrame, true, 3, 3},
    {MarkKind::ellipse, L"ellipse", "study.kind.ellipse", onFrame, true, 3, 3},
    {MarkKind::trace, L"trace", "study.kind.trace", onFrame, true, 3, manyPoints},
    {MarkKind::rectangle, L"rectangle", "study.kind.rectangle", onFrame, true, 2, 2},
    {MarkKind::velocity, L"velocity", "study.kind.velocity", onStrip, true, 1, 1},
    {MarkKind::time, L"time", "study.kind.time", onStrip, true, 2, 2},
    {MarkKind::heartRate, L"heartRate", "study.kind.heartRate", onStrip, true, 2, manyPoints},
    {MarkKind::flow, L"flow", "study.kind.flow", onStrip, true, 2, manyPoints},
    {MarkKind::text, L"text", "study.kind.text", onFrame, false, 1, 1},
    {MarkKind::arrow, L"arrow", "study.kind.arrow", onFrame, false, 2, 2},
    {MarkKind::term, L"term", "study.kind.term", onFrame, false, 1, 1},
};

bool IsFinite(const MarkPoint& point)
{
    return std::isfinite(point.x) && std::isfinite(point.y);
}

} // namespace

const MarkKindInfo& InfoOf(MarkKind kind)
{
    return kinds[static_cast<std::size_t>(kind)];
}

std::optional<MarkKind> KindNamed(const std::wstring& name)
{
    for (const MarkKindInfo& info : kinds)
        if (name == info.name) return info.kind;
    return std::nullopt;
}

bool IsSound(const Mark& mark)
{
    const MarkKindInfo& info = InfoOf(mark.kind);
    const std::size_t count = mark.points.size();
    return count >= info.fewestPoints && count <= info.mostPoints && mark.frame >= 0 &&
           std::ranges::all_of(mark.points, IsFinite);
}

} // namespace exam
