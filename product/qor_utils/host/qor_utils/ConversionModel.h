#pragma once

// The geometry of an ultrasound frame, stated once. The forward conversions of this library and the
// inverse ones of qor_imgproc both use it. docs/conversion-model.md has the formulas and a drawing
// of each probe type.

#include <qor_utils/ScanGeometry.h>
#include <qor_utils/ZelProbe.h>

#include <cmath>

namespace qor_utils {

/// Radians in a thousandth of a degree.
inline constexpr double radiansPerMillidegree = 1.7453292519943296e-5;

/// A position in microns relative to the image origin: x to the right, y downwards (away from the
/// probe).
struct MicronPoint
{
    double x = 0; ///< to the right
    double y = 0; ///< away from the probe
};

/// A position on the acquisition grid: line index over the aperture and sample index along the
/// line.
struct ScanPoint
{
    double line = 0;   ///< scan line, may lie between two
    double sample = 0; ///< sample on the line, may lie between two
};

/// Microns between two samples of a line (the echo travels twice), in double precision. A sampling
/// frequency of 0 gives 0.
inline double SampleSize(int samplingFreq, int soundSpeed)
{
    return samplingFreq == 0 ? 0.0 : soundSpeed * 1e6 / (2.0 * samplingFreq);
}

/// The layouts of scan lines that the model knows; `none` when no position can be computed.
enum class ScanShape
{
    none,
    curved,
    linear,
    phased,
    extended ///< phased, diverging from a virtual apex above the face
};

/// The arithmetic of the platform. A faster one with the same members may take its place in
/// ConversionModel::ToScan.
struct PlatformMath
{
    /// The angle of (x, y) from the y axis towards x, -pi to pi.
    static double AngleFromAxis(double x, double y) { return std::atan2(x, y); }
};

/// The sine and the cosine of a steering angle.
struct Steering
{
    double sine = 0;   ///< of the angle
    double cosine = 1; ///< of the angle

    /// Computes both for an angle in thousandths of a degree.
    static Steering Of(int steerAngle)
    {
        const double radians = steerAngle * radiansPerMillidegree;
        return {std::sin(radians), std::cos(radians)};
    }
};

/// Converts positions on the scan lines of one frame to microns, and back. A value that allocates
/// nothing, is cheap to build and may be used on any thread.
class ConversionModel
{
public:
    /// Input without a geometry (no probe, an unknown type, or a value that must be positive and is
    /// not) makes a model of the shape `none`. Fields that concern only the image are ignored.
    explicit ConversionModel(const ScanGeometry& geometry)
        : ConversionModel(geometry, Steering::Of(geometry.steerAngle))
    {
    }

    /// Does the same with a given sine and cosine; `geometry.steerAngle` is ignored.
    ConversionModel(const ScanGeometry& geometry, const Steering& steering)
        : m_shape(ShapeOf(geometry)), m_sin(steering.sine), m_cos(steering.cosine)
    {
        if (!std::isfinite(m_sin) || !std::isfinite(m_cos)) m_shape = ScanShape::none;
        if (m_shape == ScanShape::none) return;
        const ZelProbe& probe = *geometry.probe;
        const int lines = geometry.lines;
        m_centre = (lines - 1.0) / 2 - geometry.lineOffset;
        m_sampleSize = SampleSize(geometry.samplingFreq, geometry.soundSpeed);
        const double aperture = static_cast<double>(probe.elements) * probe.pitch;
        if (m_shape == ScanShape::curved) SetCurved(probe, aperture / lines);
        if (m_shape == ScanShape::linear) SetLinear(aperture / lines);
        if (m_shape == ScanShape::phased) SetPhased(probe, lines, geometry.scanB, aperture);
    }

    /// The layout of the scan lines; `none` when the input had no geometry.
    ScanShape Shape() const { return m_shape; }

    /// The position of (line, sample). A model of the shape `none` gives the origin.
    MicronPoint ToMicrons(const ScanPoint& scan) const
    {
        const double depth = scan.sample * m_sampleSize;
        const double offset = (scan.line - m_centre) * m_lineStep;
        switch (m_shape) {
        case ScanShape::linear: return {offset + depth * m_sin, depth * m_cos};
        case ScanShape::curved:
            return Steer(
                {(m_radius + depth) * std::sin(offset), (m_radius + depth) * std::cos(offset)});
        case ScanShape::phased: return Steer({depth * std::sin(offset), depth * std::cos(offset)});
        case ScanShape::extended:
            return Steer(
                {m_apex * std::tan(offset) + depth * std::sin(offset), depth * std::cos(offset)});
        default: return {};
        }
    }

    /// The inverse of ToMicrons. A model of the shape `none` gives line and sample -1.
    ScanPoint ToScan(const MicronPoint& point) const
    {
        switch (m_shape) {
        case ScanShape::linear: return ToScan<ScanShape::linear, PlatformMath>(point);
        case ScanShape::curved: return ToScan<ScanShape::curved, PlatformMath>(point);
        case ScanShape::phased: return ToScan<ScanShape::phased, PlatformMath>(point);
        case ScanShape::extended: return ToScan<ScanShape::extended, PlatformMath>(point);
        default: return {-1, -1};
        }
    }

    /// ToScan for a shape known in advance, which must be the model's own, and with a chosen
    /// arithmetic.
    template <ScanShape shape, class Math>
    ScanPoint ToScan(const MicronPoint& point) const
    {
        if constexpr (shape == ScanShape::linear) {
            const double depth = point.y * m_perCos;
            return {(point.x - depth * m_sin) * m_linesPerUnit + m_centre,
                    depth * m_samplesPerMicron};
        } else {
            const MicronPoint fan = Unsteer(point);
            // A concave face looks at its centre from above. Above that centre the lines come from
            // the other side.
            const double side = m_radius < 0 && fan.y < 0 ? -1.0 : 1.0;
            const double fromApex = fan.y + m_apex;
            const double range = Length(fan.x, fromApex);
            const double angle = Math::AngleFromAxis(side * fan.x, side * fromApex);
            return {angle * m_linesPerUnit + m_centre,
                    Depth<shape>(fan, fromApex, side * range) * m_samplesPerMicron};
        }
    }

private:
    static constexpr double quarterTurn = 1.5707963267948966;

    static double Length(double x, double y) { return std::sqrt(x * x + y * y); }

    static ScanShape ShapeOf(const ScanGeometry& g)
    {
        const ZelProbe* const probe = g.probe;
        if (!probe || g.lines <= 0 || g.samplingFreq <= 0 || g.soundSpeed <= 0 ||
            probe->elements <= 0)
            return ScanShape::none;
        if (probe->type == curvedProbe && probe->pitch > 0 && probe->radius != 0)
            return ScanShape::curved;
        if (probe->type == linearProbe && probe->pitch > 0) return ScanShape::linear;
        return probe->type == phasedProbe ? ScanShape::phased : ScanShape::none;
    }

    void SetCurved(const ZelProbe& probe, double linePitch)
    {
        m_radius = probe.radius;
        SetSteps(linePitch / probe.radius);
    }

    void SetLinear(double linePitch)
    {
        SetSteps(linePitch);
        if (m_cos > 0)
            m_perCos = 1 / m_cos;
        else
            m_shape = ScanShape::none; // steered along the face or into the probe
    }

    void SetPhased(const ZelProbe& probe, int lines, int scanB, double aperture)
    {
        const double sector =
            (static_cast<double>(probe.sectorAngle) + scanB) * radiansPerMillidegree;
        if (!(sector > 0)) {
            m_shape = ScanShape::none;
            return;
        }
        // The edge lines of an extended sector leave the face at the ends of the aperture.
        if (scanB != 0 && sector / 2 < quarterTurn && aperture > 0) {
            m_shape = ScanShape::extended;
            m_apex = aperture / 2 / std::tan(sector / 2);
        }
        SetSteps(sector / lines);
    }

    void SetSteps(double lineStep)
    {
        m_lineStep = lineStep;
        m_linesPerUnit = 1 / lineStep;
        m_samplesPerMicron = 1 / m_sampleSize;
    }

    MicronPoint Steer(const MicronPoint& p) const
    {
        return {p.x * m_cos + p.y * m_sin, p.y * m_cos - p.x * m_sin};
    }
    MicronPoint Unsteer(const MicronPoint& p) const
    {
        return {p.x * m_cos - p.y * m_sin, p.y * m_cos + p.x * m_sin};
    }

    template <ScanShape shape>
    double Depth(const MicronPoint& fan, double fromApex, double range) const
    {
        if constexpr (shape == ScanShape::curved)
            return range - m_radius;
        else if constexpr (shape == ScanShape::phased)
            return range;
        else
            return fromApex > 0 ? fan.y * range / fromApex
                                : -range; // nothing is imaged behind the apex
    }

    ScanShape m_shape;
    double m_sin;
    double m_cos;
    double m_perCos = 1;
    double m_centre = 0;   // the line in the middle of the aperture
    double m_lineStep = 0; // radians between lines; microns for the linear shape
    double m_linesPerUnit = 0;
    double m_sampleSize = 0;
    double m_samplesPerMicron = 0;
    double m_radius = 0; // signed radius of a curved face
    double m_apex = 0;   // microns from the apex of an extended sector down to the face
};

} // namespace qor_utils
