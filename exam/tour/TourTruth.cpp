// Station 6, continued: what the exam measures on the simulated patient, against what is true of
// it. docs/phantom.md gives the reasons of the tolerances; a pixel comes to each of them, because
// the mouse points at whole pixels.
#include "tour/TourTruth.h"

#include "image/LiveProbe.h"
#include "tour/TourMouse.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace exam {

namespace {

using simulation::PointMm;

constexpr double soundSpeed = 1540e3; // mm/s

// The frame on display by places in the patient, as a user sees it.
class Sight
{
public:
    Sight(const TourContext& context, const simulation::Phantom& patient)
        : m_view(context.state.View()), m_patient(patient)
    {
    }

    CPoint PixelOf(PointMm place) const
    {
        return exam::PixelAt(m_view.Parameters().PixelOf({place.x * 1000, place.y * 1000}));
    }
    double Millimetres(double pixels) const
    {
        return pixels * m_view.Parameters().micronsPerPixel.x / 1000.0;
    }

    // A place beside the middle of the vessel's axis.
    PointMm BesideAxis(double along, double across) const
    {
        const simulation::Vessel& vessel = m_patient.Settings().vessel;
        const double tilt = vessel.tilt / 180 * std::numbers::pi;
        return {vessel.centre.x + along * std::cos(tilt) - across * std::sin(tilt),
                vessel.centre.y + along * std::sin(tilt) + across * std::cos(tilt)};
    }

    // The mean grey level along the vessel, at a distance from its axis.
    double LevelBesideAxis(double across) const
    {
        constexpr int places = 40;
        double sum = 0;
        for (int i = -places; i <= places; ++i) {
            const double along = i * m_patient.Settings().vessel.diameter / places;
            sum += m_view.Grey(PixelOf(BesideAxis(along, across)));
        }
        return sum / (2 * places + 1);
    }

    // The mean grey level on an ellipse that is so many times as large as the cyst.
    double LevelRoundCyst(double size) const
    {
        const simulation::Cyst& cyst = m_patient.Settings().cyst;
        constexpr int places = 180;
        double sum = 0;
        for (int i = 0; i < places; ++i) {
            const double angle = 2 * std::numbers::pi * i / places;
            sum += m_view.Grey(PixelOf({cyst.centre.x + size * cyst.semiAxisX * std::cos(angle),
                                        cyst.centre.y + size * cyst.semiAxisY * std::sin(angle)}));
        }
        return sum / places;
    }

    // The brightest pixel near a place.
    CPoint Brightest(PointMm place) const
    {
        constexpr int reach = 6;
        const CPoint middle = PixelOf(place);
        CPoint brightest = middle;
        for (int y = -reach; y <= reach; ++y)
            for (int x = -reach; x <= reach; ++x)
                if (const CPoint at = middle + CPoint(x, y);
                    m_view.Grey(at) > m_view.Grey(brightest))
                    brightest = at;
        return brightest;
    }

private:
    const ImageView& m_view;
    const simulation::Phantom& m_patient;
};

// Finds where a profile first reaches a level.
template <class Profile>
double Crossing(const Profile& profile, double level, double from, double to)
{
    constexpr int steps = 500;
    for (int i = 0; i < steps; ++i)
        if (const double at = from + (to - from) * i / steps; profile(at) >= level) return at;
    return to;
}

// The distance from the axis to the edge midway between blood and wall, on one side.
double Edge(const Sight& sight, const simulation::Vessel& vessel, double side)
{
    const auto profile = [&](double across) { return sight.LevelBesideAxis(side * across); };
    const double blood = profile(0);
    const double radius = vessel.diameter / 2;
    double wall = blood;
    for (int i = 0; i <= 50; ++i)
        wall = std::max(wall, profile(radius * (0.8 + 0.008 * i) + vessel.wallThickness));
    return Crossing(profile, (blood + wall) / 2, 0, 2 * radius);
}

void Tell(TourContext& context, const std::wstring& what, double measured, double least,
          double most)
{
    const auto text = [](double value) {
        CString number;
        number.Format(L"%.2f", value);
        return std::wstring(number);
    };
    context.report.Step(measured >= least && measured <= most, what + L": " + text(measured) +
                                                                   L", expected " + text(least) +
                                                                   L" to " + text(most));
}

void Measure(TourContext& context, UINT key, CPoint from, CPoint to)
{
    Mouse mouse(context);
    mouse.Key(key);
    mouse.DragPoint(from, to);
}

// The wall's echoes reach into the lumen by 0.3 to 1.6 wavelengths on each side.
void Diameter(TourContext& context, const simulation::Phantom& patient)
{
    const Sight sight(context, patient);
    const simulation::Vessel& vessel = patient.Settings().vessel;
    const double time = context.state.Frame() / context.state.Source().FramesPerSecond();
    Measure(context, '1', sight.PixelOf(sight.BesideAxis(0, -Edge(sight, vessel, -1))),
            sight.PixelOf(sight.BesideAxis(0, Edge(sight, vessel, 1))));
    const double wave = soundSpeed / patient.Settings().frequency;
    const double truth = patient.VesselDiameter(time);
    const double pixel = sight.Millimetres(1.5);
    Tell(context, L"diameter of the vessel, mm", context.LastValue(), truth - 3.2 * wave - pixel,
         truth - 0.6 * wave + pixel);
}

// The brightest pixel of a wire lies within 0.3 samples of it; the face is exact.
void Depth(TourContext& context, const simulation::Phantom& patient)
{
    const Sight sight(context, patient);
    const PointMm wire = patient.Settings().wires.front();
    const ImagingParameters& image = context.state.View().Parameters();
    const int line = static_cast<int>(std::lround(patient.PositionOf(wire).line));
    Measure(context, '1', image.Pixel(line, 0), sight.Brightest(wire));
    const double truth = patient.DistanceBelowFace(wire);
    const double sample = soundSpeed / (2.0 * patient.Settings().acquisition.samplingFreq);
    const double tolerance = sight.Millimetres(2) + 0.3 * sample;
    Tell(context, L"depth of a wire, mm", context.LastValue(), truth - tolerance,
         truth + tolerance);
}

// Echoes from beside the cyst reach in, so that its axes look 0.88 to 1 of the true ones.
void Area(TourContext& context, const simulation::Phantom& patient)
{
    const Sight sight(context, patient);
    const simulation::Cyst& cyst = patient.Settings().cyst;
    const auto profile = [&](double size) { return sight.LevelRoundCyst(size); };
    const double outside = (profile(1.3) + profile(1.35) + profile(1.4)) / 3;
    const double edge = Crossing(profile, (profile(0.5) + outside) / 2, 0.5, 1.5);
    const CPoint left = sight.PixelOf({cyst.centre.x - edge * cyst.semiAxisX, cyst.centre.y});
    const CPoint right = sight.PixelOf({cyst.centre.x + edge * cyst.semiAxisX, cyst.centre.y});
    const CPoint below = sight.PixelOf({cyst.centre.x, cyst.centre.y + edge * cyst.semiAxisY});
    Measure(context, '4', left, right);
    Mouse mouse(context);
    const int third = static_cast<int>(std::lround(0.3 * (right.x - left.x)));
    mouse.DragPoint(CPoint((left.x + right.x) / 2, left.y + third), below);
    const double truth = patient.CystArea() / 100;
    const double pixel = 2 * sight.Millimetres(1) / std::min(cyst.semiAxisX, cyst.semiAxisY);
    Tell(context, L"area of the cyst, cm2", context.LastValue(1), truth * (0.88 * 0.88 - pixel),
         truth * (1 + pixel));
}

// Drags over the strip from so many seconds before its end to the end.
void MeasureFlow(TourContext& context, UINT key, double seconds)
{
    const SpectralStrip& strip = context.state.Strip();
    const CPoint corner = context.state.Layout().image.TopLeft();
    const CPoint end = CPoint(strip.Plot().right - 1, strip.BaselineRow()) - CSize(corner);
    const int columns = static_cast<int>(std::lround(seconds * strip.Flow().columnsPerSecond));
    Measure(context, key, CPoint(end.x - columns, end.y), end);
}

// Bins and the window widen the peak by up to 4 in 100; the mean of the envelope over whole beats
// is twice the mean over the cross-section, to 5 in 100; the ends of a beat are known to 2 columns.
void Flow(TourContext& context, const simulation::Phantom& patient)
{
    const double beat = 60 / patient.HeartRate();
    const double peak = patient.AxisVelocity(patient.SystoleTime());
    const double mean = 2 * patient.TimeMeanVelocity();
    MeasureFlow(context, '9', 3 * beat);
    Tell(context, L"peak velocity, m/s", context.LastValue(0), 0.96 * peak, 1.04 * peak);
    Tell(context, L"mean of the fastest velocity, m/s", context.LastValue(1), 0.95 * mean,
         1.05 * mean);
    Tell(context, L"peak of the smooth curve, m/s", context.LastValue(2), 0.95 * peak, 1.03 * peak);
    MeasureFlow(context, '8', 3.2 * beat);
    const double slip = 2 / (100 * beat);
    Tell(context, L"heart rate, 1/min", context.LastValue(), patient.HeartRate() * (1 - slip),
         patient.HeartRate() * (1 + slip));
}

} // namespace

void TourTruth(TourContext& context, const std::wstring& name)
{
    const auto& probe = static_cast<const LiveProbe&>(context.state.Source());
    const simulation::Phantom& patient = *probe.Patient();
    const double needed = 3.5 * 60 / patient.HeartRate();
    context.state.ShowStrip(true);
    context.WaitUntil([&] {
        const FlowSpectrum& flow = context.state.Strip().Flow();
        return flow.columns > needed * flow.columnsPerSecond;
    });
    context.state.SetFrozen(true);
    Flow(context, patient);
    context.Picture(L"truth-flow-" + name);
    context.state.ShowStrip(false);
    Diameter(context, patient);
    Depth(context, patient);
    Area(context, patient);
    context.Picture(L"truth-" + name);
}

} // namespace exam
