#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace exam {

/// The kinds of marks, in the order of the lists that users choose from.
enum class MarkKind
{
    distance,
    angle,     ///< the angle at the second of three points
    ellipse,   ///< the ends of one axis, and a point at the height of the other one
    trace,     ///< a closed outline
    rectangle, ///< two opposite corners, with sides along and across the image
    velocity,
    time,
    heartRate, ///< the same instant of two or more successive beats
    flow,      ///< the envelope of the velocities: its peak and its mean over time
    text,
    arrow, ///< from the first point to the second, which is the tip
    term   ///< a text from the list of terms
};

/// A mark lies on one of these, which says what the coordinates of its points are.
enum class MarkPlace
{
    frame, ///< scan line (x) and sample (y) of one frame
    strip  ///< seconds (x) and metres per second (y) on the spectral strip
};

/// One position in the coordinates of its place. Both are real numbers, so a step may be as small
/// as the user likes. No setting of the display changes them.
struct MarkPoint
{
    double x = 0;
    double y = 0;

    friend bool operator==(const MarkPoint&, const MarkPoint&) = default;
};

/// A measurement or an annotation on a recording.
struct Mark
{
    MarkKind kind = MarkKind::distance;
    int number = 0;      ///< unique in its study, and never used again there; 0: not yet given
    std::wstring object; ///< the recording that it belongs to
    int frame = 0;       ///< counts from 0; 0 on the strip
    std::wstring text;   ///< name of a measurement, content of an annotation
    std::vector<MarkPoint> points;

    friend bool operator==(const Mark&, const Mark&) = default;
};

/// The facts about a kind of marks.
struct MarkKindInfo
{
    MarkKind kind;
    const wchar_t* name; ///< in files
    const char* key;     ///< of its name in the string table
    MarkPlace place;
    bool isMeasurement;
    std::size_t fewestPoints;
    std::size_t mostPoints;
};

const MarkKindInfo& InfoOf(MarkKind kind);

/// The kind with this name in files; none for an unknown name.
std::optional<MarkKind> KindNamed(const std::wstring& name);

/// True when the number of points is right for the kind, and all numbers are finite and possible.
bool IsSound(const Mark& mark);

} // namespace exam
