#pragma once

#include "study/StudyContent.h"

#include <vector>

namespace exam {

/// One value of a measurement.
struct MarkValue
{
    const char* nameKey; ///< of "length" and its like in the string table
    const char* unitKey; ///< of its unit there
    double value;
    int decimals; ///< how many of them a reader is shown
};

/// The values of a mark, most important first, in millimetres, square centimetres, degrees, metres
/// per second, seconds and beats per minute:
///
/// - distance: the length of the straight line
/// - angle: 0 to 180 degrees, none while points coincide
/// - ellipse: circumference and area
/// - trace: circumference and area of the closed outline; one that crosses itself has no true area
/// - rectangle: width, height and area
/// - velocity; time; heart rate: beats between the first and the last point in a minute
/// - flow: the velocity that is farthest from 0, the mean over the time from the first to the last
///   point, and the velocity of the smooth curve that is farthest from 0
///
/// Annotations have none, nor has a mark on a frame without a geometry, and neither have times of
/// no length.
std::vector<MarkValue> ValuesOf(const Mark& mark, const Acquisition& acquisition);

/// The same for a mark of a study, by the recording that it belongs to.
std::vector<MarkValue> ValuesOf(const Mark& mark, const StudyContent& study);

} // namespace exam
