#pragma once

#include "ScanGrid.h"

#include <vector>

namespace simulation {

// One scatterer on the grid. Its complex amplitude holds the phase of its depth.
struct Echo
{
    double line;
    double sample;
    float real;
    float imaginary;
};

// The point spread of the scanner: a Gaussian pulse in depth, and a Gaussian beam across the lines
// that is as wide as the aperture can focus it. Each has the energy 1. A position is rounded to a
// thirty-second of a sample and of a line for the shape; its phase is not rounded.
class PointSpread
{
public:
    PointSpread(const PhantomSettings& settings, const ScanGrid& grid);

    // Full widths at half of the amplitude, mm.
    double PulseLength() const { return m_pulseLength; }
    double BeamWidth(double depth) const;

    static constexpr int pulseTaps = 16; // samples of a pulse

    // The weights of neighbouring samples or lines, and which of them is the first.
    struct Taps
    {
        int first;
        int count;
        const float* weights;
    };
    Taps Pulse(double sample) const;
    Taps Beam(double line, double sample) const;

private:
    static constexpr int places = 32; // of a sample or line that have weights of their own
    static constexpr int zones = 64;  // of depth, each with a beam of one width

    void AddTaps(std::vector<float>& to, double width, int count) const;

    double m_wavelength;
    double m_aperture;
    double m_pulseLength;
    double m_zonesPerSample;
    std::vector<float> m_pulse;
    struct Zone
    {
        int taps;
        std::size_t begin;
    };
    std::vector<Zone> m_zones;
    std::vector<float> m_beams;
};

// The sum of all echoes on the lines and samples of a frame, in complex amplitudes.
class EchoField
{
public:
    EchoField(int lines, int samples);

    // Adds a scatterer. One that lies too far outside of the frame to be seen adds nothing.
    void Add(const Echo& echo, const PointSpread& spread);

    // The samples of a line, real and imaginary parts in turn.
    const float* Line(int line) const;

private:
    static constexpr int margin = PointSpread::pulseTaps; // samples at both ends of a line

    int m_lines;
    int m_samples;
    std::size_t m_stride; // numbers from line to line
    std::vector<float> m_values;
};

} // namespace simulation
