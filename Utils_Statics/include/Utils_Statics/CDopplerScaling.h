#pragma once

#include <Utils_Statics/export.h>

/// The scale of the process's spectral (pulsed-wave) Doppler display. The imaging side sets the
/// acquisition and display parameters whenever they change. Measurement and drawing read the scales
/// that follow from them. The setters check nothing. User-interface thread only.
class UTILS_STATICS_API CDopplerScaling
{
public:
    CDopplerScaling() = delete;

    static void SetPWPRP(long prp) noexcept;   ///< pulse repetition period, microseconds
    static void SetPWFreq(long freq) noexcept; ///< transmit frequency, Hz
    static void SetPWFFT(long nfft) noexcept;  ///< FFT length, spectral bins per line
    /// Angle correction, thousandths of a degree.
    static void SetPWVesselAngle(long vesselAngle) noexcept;
    /// Height of the spectral display, pixels.
    static void SetPWDisplayHeight(long height) noexcept;
    static void SetPWLRP(long lrp) noexcept; ///< kept for callers; nothing here uses it
    static void SetVecDopScaleFactor(double factor) noexcept; ///< divides the velocity per pixel
    /// GetPixelBaseline adds this position, in pixels.
    static void SetBaselineStartPos(double position) noexcept;

    /// The value set last; at first 0, and 1.0 for the scale factor.
    static long GetPWPRP() noexcept;
    static long GetPWFreq() noexcept;
    static long GetPWFFT() noexcept;
    static long GetPWVesselAngle() noexcept;
    static long GetPWDisplayHeight() noexcept;
    static long GetPWLRP() noexcept;
    static double GetVecDopScaleFactor() noexcept;
    static double GetBaselineStartPos() noexcept;

    /// Velocity per pixel in metres per second, by the Doppler equation with 1540 m/s for the speed
    /// of sound. The units are those of the setters. 0.0 when prp, freq, displayHeight or
    /// scaleFactor is 0.0. At a vessel angle of 90 degrees the result is as large as the rounded
    /// cosine makes it; it is not limited.
    static double GetVelPerPixel(double prp, double freq, double displayHeight, double vesselAngle,
                                 double scaleFactor) noexcept;

    /// Velocity per pixel from the parameters that were set; the FFT length is not used.
    static double GetVelPerPixel() noexcept;

    /// The display position, in pixels, of a position in FFT bins, offset by the baseline start;
    /// 0.0 when the FFT length is 0.
    static double GetPixelBaseline(int pixel) noexcept;

    /// Degrees per pixel of the vector-Doppler angle display; infinite when the display height is
    /// 0.
    static double GetVecAnglePerPixel() noexcept;

private:
    static long m_pw_prp;
    static long m_pw_freq;
    static long m_pw_nfft;
    static long m_pw_vesselangle;
    static long m_pw_displayheight;
    static long m_pw_lrp;
    static double m_pw_baselinestartpos;
    static double m_scalefactor;
};
