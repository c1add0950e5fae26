#include "Patient.h"

#include "Arithmetic.h"

#include <algorithm>

namespace simulation {

namespace {

// Mean echoes relative to tissue, dB.
constexpr double bloodLevel = -24;
constexpr double intimaLevel = 6;
constexpr double mediaLevel = -8;
constexpr double adventitiaLevel = 12;
constexpr double wireLevel = 42;

constexpr double cellsPerSpread = 8; // moving scatterers in a pulse length times a beam width
constexpr double mostCells = 60000;  // so that a frame takes no longer than it may
constexpr int tissueMargin = 16;     // lines and samples of tissue beside the frame

// The layers of a wall of unit thickness from the lumen outwards, and the tissue outside.
double WallLevel(double beyond)
{
    if (beyond < 0.3) return intimaLevel;
    if (beyond < 0.65) return mediaLevel;
    return beyond < 1 ? adventitiaLevel : 0;
}

} // namespace

Patient::Patient(const PhantomSettings& settings)
    : m_settings(settings), m_grid(settings.acquisition), m_spread(settings, m_grid),
      m_motion(settings), m_axis{OfDegrees(settings.vessel.tilt).cosine,
                                 OfDegrees(settings.vessel.tilt).sine}
{
    const double depth = m_grid.ToScan(settings.vessel.centre).sample * m_grid.SampleSize();
    m_halfLength = VisibleHalfLength();
    m_density =
        std::min(cellsPerSpread / (m_spread.PulseLength() * m_spread.BeamWidth(depth)),
                 mostCells / (4 * m_halfLength * (m_motion.SmallestRadius() + MovingLayer())));
    Random random(settings.seed);
    MakeBlood(random);
    MakeWall(random);
}

PointMm Patient::Place(double along, double across) const
{
    const PointMm centre = m_settings.vessel.centre;
    return {centre.x + along * m_axis.x - across * m_axis.y,
            centre.y + along * m_axis.y + across * m_axis.x};
}

bool Patient::IsInCyst(PointMm point) const
{
    const Cyst& cyst = m_settings.cyst;
    if (cyst.semiAxisX <= 0 || cyst.semiAxisY <= 0) return false;
    const double x = (point.x - cyst.centre.x) / cyst.semiAxisX;
    const double y = (point.y - cyst.centre.y) / cyst.semiAxisY;
    return x * x + y * y < 1;
}

double Patient::DistanceFromAxis(PointMm point) const
{
    const PointMm centre = m_settings.vessel.centre;
    return std::abs((point.y - centre.y) * m_axis.x - (point.x - centre.x) * m_axis.y);
}

bool Patient::IsFluid(PointMm point) const
{
    return IsInCyst(point) || DistanceFromAxis(point) < m_motion.SmallestRadius();
}

// The thickness of what moves with the wall. It is compressed by a quarter at most.
double Patient::MovingLayer() const
{
    return m_settings.vessel.wallThickness +
           4 * (m_motion.LargestRadius() - m_motion.SmallestRadius());
}

// Says how far the vessel goes on both sides of its centre until it has left the frame.
double Patient::VisibleHalfLength() const
{
    const Acquisition& a = m_settings.acquisition;
    double length = 0;
    for (int line = 0; line < a.lines; ++line)
        for (const int sample : {0, a.samples}) {
            const PointMm end = m_grid.ToPoint({1.0 * line, 1.0 * sample});
            length = std::max(length, std::abs((end.x - m_settings.vessel.centre.x) * m_axis.x +
                                               (end.y - m_settings.vessel.centre.y) * m_axis.y));
        }
    return length + m_motion.LargestRadius();
}

// The blood fills the round vessel, and the slice of the image takes in all of it.
void Patient::MakeBlood(Random& random)
{
    const double area = 4 * m_motion.SmallestRadius() * m_halfLength;
    const auto count = static_cast<std::size_t>(area * m_density);
    while (m_blood.size() < count) {
        const double across = random.Between(-1, 1);
        const double aside = random.Between(-1, 1);
        const double velocity = 1 - across * across - aside * aside;
        if (velocity <= 0) continue;
        m_blood.push_back({random.Between(-m_halfLength, m_halfLength), across, velocity});
    }
}

void Patient::MakeWall(Random& random)
{
    const double layer = MovingLayer();
    const auto count = static_cast<std::size_t>(4 * layer * m_halfLength * m_density);
    while (m_wall.size() < count) {
        const double along = random.Between(-m_halfLength, m_halfLength);
        const double beyond = random.Between(0, layer);
        const double side = random.Between(-1, 1) < 0 ? -1 : 1;
        const double level = WallLevel(beyond / m_settings.vessel.wallThickness);
        m_wall.push_back({along, beyond, side, static_cast<float>(AmplitudeOf(level))});
    }
}

// The carrier turns once when the way there and back grows by a wavelength.
Echo Patient::EchoAt(PointMm place, double amplitude) const
{
    const ScanPosition position = m_grid.ToScan(place);
    const double depth = position.sample * m_grid.SampleSize();
    const double turns = -2e-3 * depth * m_settings.frequency / m_settings.acquisition.soundSpeed;
    const SineCosine phase = OfTurns(turns);
    return {position.line, position.sample, static_cast<float>(amplitude * phase.cosine),
            static_cast<float>(amplitude * phase.sine)};
}

// Tissue has one scatterer for each line and sample on average, so that its echoes have the mean
// power 1. The numbers it takes do not depend on what is left out.
std::vector<Echo> Patient::RestingEchoes() const
{
    const Acquisition& a = m_settings.acquisition;
    Random random(~m_settings.seed);
    const int count = (a.lines + 2 * tissueMargin) * (a.samples + 2 * tissueMargin);
    const double untilRest = m_motion.SmallestRadius() + MovingLayer();
    std::vector<Echo> echoes;
    for (int i = 0; i < count; ++i) {
        const double line = random.Between(-tissueMargin, a.lines + tissueMargin);
        const double sample = random.Between(-tissueMargin, a.samples + tissueMargin);
        const PointMm place = m_grid.ToPoint({line, sample});
        if (!IsInCyst(place) && DistanceFromAxis(place) >= untilRest)
            echoes.push_back(EchoAt(place, 1));
    }
    for (const PointMm wire : m_settings.wires)
        echoes.push_back(EchoAt(wire, AmplitudeOf(wireLevel)));
    return echoes;
}

double Patient::AlongAt(const BloodCell& cell, double travel) const
{
    const double length = 2 * m_halfLength;
    const double along = cell.along + cell.velocity * travel;
    return along - length * RoundToWhole(along / length);
}

// A scatterer stands for the tissue round it. Where lines lie closer together, that is more of
// them.
std::vector<Echo> Patient::MovingEchoes(double time) const
{
    std::vector<Echo> echoes;
    echoes.reserve(m_wall.size() + m_blood.size());
    const auto add = [&](PointMm place, double amplitude) {
        Echo echo = EchoAt(place, amplitude);
        const double depth = echo.sample * m_grid.SampleSize();
        const double cells = m_density * m_grid.SampleSize() * m_grid.LineSpacing(depth);
        const auto strength = static_cast<float>(1 / std::sqrt(cells));
        echo.real *= strength;
        echo.imaginary *= strength;
        echoes.push_back(echo);
    };
    const double radius = m_motion.Radius(time);
    const double growth = radius - m_motion.SmallestRadius();
    for (const WallCell& cell : m_wall) {
        const double across = radius + cell.beyond - growth * cell.beyond / MovingLayer();
        add(Place(cell.along, cell.side * across), cell.amplitude);
    }
    const double travel = m_motion.Travel(time);
    const double bloodAmplitude = AmplitudeOf(bloodLevel);
    for (const BloodCell& cell : m_blood)
        add(Place(AlongAt(cell, travel), cell.across * radius), bloodAmplitude);
    return echoes;
}

} // namespace simulation
