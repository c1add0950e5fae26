#pragma once

#include <phantom/PhantomSettings.h>

#include <memory>
#include <vector>

namespace simulation {

class Patient;
class Receiver;

/// A position on the acquisition grid.
struct ScanPosition
{
    double line = 0;
    double sample = 0;
};

/// A sample volume of pulsed-wave Doppler, and how its spectrum is taken.
struct DopplerGate
{
    PointMm place;           ///< the middle of the sample volume
    double beamAngle = 0;    ///< degrees of the beam from the y axis towards x
    double length = 0;       ///< mm along the beam, up to 200
    int pulsePeriod = 200;   ///< microseconds, 20 to 5000
    int frequency = 5000000; ///< transmitted, Hz, 1 MHz to 20 MHz
    int bins = 256;          ///< 64, 128 or 256; half as many pulses make a spectrum
};

/// Spectra at regular times. Bin `bins / 2` is velocity 0, and higher bins are flow towards the
/// probe. Flow beyond the span folds to the other end, as it does in a scanner.
struct Spectrum
{
    int columns = 0;
    int bins = 0;
    double velocityPerBin = 0;         ///< along the beam, m/s
    std::vector<float> power;          ///< bins x columns, column by column; noise has about 1
    std::vector<unsigned char> levels; ///< the same in grey levels, 40 dB from 0 to 255
    /// Four traces of `columns` bins back to back: the envelope forward and reverse, the mean
    /// forward and reverse. A direction without flow lies on bin `bins / 2`.
    std::vector<unsigned char> traces;
};

/// A patient whose anatomy, motion and flow are known, and the echoes that a scanner receives from
/// it. docs/phantom.md states the model, the truth and the tolerances.
///
/// Frames are made by the convolution model of speckle: J. C. Bamber, R. J. Dickinson, "Ultrasonic
/// B-scanning: a computer simulation", Physics in Medicine and Biology 25 (1980) 463-479. The flow
/// is parabolic at every moment.
///
/// Times are in seconds, may be asked for in any order, and lie within a million seconds of 0.
/// Equal settings and times give equal bytes on every processor, because the arithmetic uses only
/// the operations that IEEE 754 rounds exactly. An object does not change after construction and
/// may be used on several threads.
class Phantom
{
public:
    /// Settings that are not valid make a phantom without frames, spectra and truth.
    explicit Phantom(const PhantomSettings& settings);
    ~Phantom();
    Phantom(Phantom&&) noexcept;
    Phantom& operator=(Phantom&&) noexcept;

    bool IsValid() const { return m_patient != nullptr; }
    const PhantomSettings& Settings() const { return m_settings; }

    /// The frame at a time: lines x samples grey levels, line by line. Empty when the phantom or
    /// the time is not valid.
    std::vector<unsigned char> Frame(double time) const;

    /// Spectra at `start`, `start + 1 / columnsPerSecond` and so on; each looks at the time round
    /// its own. Empty for a phantom, gate, time or count that is not valid. At most 100,000
    /// columns.
    Spectrum Doppler(const DopplerGate& gate, double start, int columns,
                     double columnsPerSecond) const;

    /// A sample volume on the vessel's centre that takes in the whole lumen and shows all
    /// velocities without folding, as far as a pulse period of 50 microseconds or more can. A
    /// linear probe's beam is steered by 20 degrees, away from the normal of the vessel.
    DopplerGate DefaultGate() const;

    // ---- The truth. A phantom that is not valid answers 0.

    double VesselDiameter(double time) const; ///< of the lumen, mm
    double VesselArea(double time) const;     ///< of the lumen's circular cross-section, mm^2
    double AxisVelocity(double time) const;   ///< the fastest, m/s
    double MeanVelocity(double time) const;   ///< over the cross-section: half of the fastest, m/s
    double TimeMeanVelocity() const;          ///< MeanVelocity over whole beats, m/s
    double HeartRate() const;                 ///< beats a minute
    double SystoleTime() const;               ///< the first time of the peak velocity from 0 on, s
    double DistanceBelowFace(PointMm point) const; ///< depth of a point along its line, mm
    double CystCircumference() const;              ///< mm
    double CystArea() const;                       ///< mm^2

    /// The cosine of the angle between the beam and the flow. It is positive when blood that flows
    /// to the right comes towards the probe.
    double CosineOfBeam(const DopplerGate& gate) const;

    /// The line and sample of a point.
    ScanPosition PositionOf(PointMm point) const;

private:
    static bool IsTime(double time);

    PhantomSettings m_settings;
    std::unique_ptr<const Patient> m_patient;
    std::unique_ptr<const Receiver> m_receiver;
};

} // namespace simulation
