#include "Utils_Statics/CDopplerScaling.h"

#include <cmath>

namespace {

constexpr double speedOfSound = 1540.0; // metres per second, soft tissue
constexpr double radiansPerDegree = 0.017453292519943295;

} // namespace

constinit long CDopplerScaling::m_pw_prp = 0;
constinit long CDopplerScaling::m_pw_freq = 0;
constinit long CDopplerScaling::m_pw_nfft = 0;
constinit long CDopplerScaling::m_pw_vesselangle = 0;
constinit long CDopplerScaling::m_pw_displayheight = 0;
constinit long CDopplerScaling::m_pw_lrp = 0;
constinit double CDopplerScaling::m_pw_baselinestartpos = 0.0;
constinit double CDopplerScaling::m_scalefactor = 1.0;

void CDopplerScaling::SetPWPRP(long prp) noexcept
{
    m_pw_prp = prp;
}

void CDopplerScaling::SetPWFreq(long freq) noexcept
{
    m_pw_freq = freq;
}

void CDopplerScaling::SetPWFFT(long nfft) noexcept
{
    m_pw_nfft = nfft;
}

void CDopplerScaling::SetPWVesselAngle(long vesselAngle) noexcept
{
    m_pw_vesselangle = vesselAngle;
}

void CDopplerScaling::SetPWDisplayHeight(long height) noexcept
{
    m_pw_displayheight = height;
}

void CDopplerScaling::SetPWLRP(long lrp) noexcept
{
    m_pw_lrp = lrp;
}

void CDopplerScaling::SetVecDopScaleFactor(double factor) noexcept
{
    m_scalefactor = factor;
}

void CDopplerScaling::SetBaselineStartPos(double position) noexcept
{
    m_pw_baselinestartpos = position;
}

long CDopplerScaling::GetPWPRP() noexcept
{
    return m_pw_prp;
}

long CDopplerScaling::GetPWFreq() noexcept
{
    return m_pw_freq;
}

long CDopplerScaling::GetPWFFT() noexcept
{
    return m_pw_nfft;
}

long CDopplerScaling::GetPWVesselAngle() noexcept
{
    return m_pw_vesselangle;
}

long CDopplerScaling::GetPWDisplayHeight() noexcept
{
    return m_pw_displayheight;
}

long CDopplerScaling::GetPWLRP() noexcept
{
    return m_pw_lrp;
}

double CDopplerScaling::GetVecDopScaleFactor() noexcept
{
    return m_scalefactor;
}

double CDopplerScaling::GetBaselineStartPos() noexcept
{
    return m_pw_baselinestartpos;
}

// Velocity span of the spectrum: PRF x c / (2 f), see C. Kasai et al., IEEE Trans. Sonics Ultrason.
// SU-32 (1985) 458. The order of the operations is part of the contract: measurements are compared
// bit by bit with stored ones.
double CDopplerScaling::GetVelPerPixel(double prp, double freq, double displayHeight,
                                       double vesselAngle, double scaleFactor) noexcept
{
    if (prp == 0.0 || freq == 0.0 || displayHeight == 0.0 || scaleFactor == 0.0) return 0.0;
    const double range = (1000000.0 / prp) * speedOfSound / (2.0 * freq);
    return range / displayHeight / std::cos(vesselAngle * 0.001 * radiansPerDegree) / scaleFactor;
}

double CDopplerScaling::GetVelPerPixel() noexcept
{
    return GetVelPerPixel(m_pw_prp, m_pw_freq, m_pw_displayheight, m_pw_vesselangle, m_scalefactor);
}

double CDopplerScaling::GetPixelBaseline(int pixel) noexcept
{
    const double height = GetPWDisplayHeight();
    const double bins = GetPWFFT();
    if (bins == 0.0) return 0.0;
    return GetBaselineStartPos() + (pixel * height) / bins;
}

double CDopplerScaling::GetVecAnglePerPixel() noexcept
{
    return 360.0 / m_pw_displayheight;
}
