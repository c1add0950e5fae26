#include "Arithmetic.h"
#include "Receiver.h"

#include <phantom/Phantom.h>

namespace simulation {

Phantom::Phantom(const PhantomSettings& settings) : m_settings(settings)
{
    if (!simulation::IsValid(settings)) return;
    m_patient = std::make_unique<const Patient>(settings);
    m_receiver = std::make_unique<const Receiver>(settings, *m_patient);
}

Phantom::~Phantom() = default;
Phantom::Phantom(Phantom&&) noexcept = default;
Phantom& Phantom::operator=(Phantom&&) noexcept = default;

bool Phantom::IsTime(double time)
{
    return time >= -1e6 && time <= 1e6;
}

std::vector<unsigned char> Phantom::Frame(double time) const
{
    if (!m_patient || !IsTime(time)) return {};
    EchoField field = m_receiver->RestingField();
    for (const Echo& echo : m_patient->MovingEchoes(time))
        field.Add(echo, m_patient->Spread());
    return m_receiver->Develop(field, time);
}

double Phantom::VesselDiameter(double time) const
{
    return m_patient && IsTime(time) ? 2 * m_patient->Motion().Radius(time) : 0;
}

double Phantom::VesselArea(double time) const
{
    const double diameter = VesselDiameter(time);
    return std::numbers::pi / 4 * diameter * diameter;
}

double Phantom::AxisVelocity(double time) const
{
    return m_patient && IsTime(time) ? m_patient->Motion().Velocity(time) : 0;
}

// The mean of a paraboloid is half of its height.
double Phantom::MeanVelocity(double time) const
{
    return AxisVelocity(time) / 2;
}

double Phantom::TimeMeanVelocity() const
{
    return m_patient ? m_patient->Motion().MeanVelocity() / 2 : 0;
}

double Phantom::HeartRate() const
{
    return m_patient ? m_settings.heartRate : 0;
}

double Phantom::SystoleTime() const
{
    return m_patient ? VesselMotion::systole * 60 / m_settings.heartRate : 0;
}

double Phantom::DistanceBelowFace(PointMm point) const
{
    return m_patient ? m_patient->Grid().ToScan(point).sample * m_patient->Grid().SampleSize() : 0;
}

// The circumference has no closed form. Ramanujan's second approximation (1914) is exact to a
// hundred-thousandth for axes up to 4 to 1.
double Phantom::CystCircumference() const
{
    if (!m_patient) return 0;
    const double a = m_settings.cyst.semiAxisX;
    const double b = m_settings.cyst.semiAxisY;
    if (a <= 0 || b <= 0) return 0;
    const double h = 3 * (a - b) * (a - b) / ((a + b) * (a + b));
    return std::numbers::pi * (a + b) * (1 + h / (10 + std::sqrt(4 - h)));
}

double Phantom::CystArea() const
{
    return m_patient ? std::numbers::pi * m_settings.cyst.semiAxisX * m_settings.cyst.semiAxisY : 0;
}

ScanPosition Phantom::PositionOf(PointMm point) const
{
    return m_patient ? m_patient->Grid().ToScan(point) : ScanPosition{};
}

} // namespace simulation
