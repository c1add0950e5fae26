#pragma once

#include <string>

namespace exam {

/// True when a movie holds a whole frame, whatever else it lacks.
bool HoldsFrame(const std::wstring& movie);

/// Writes the whole frames of a movie that was cut off into a new movie, with a header and an index
/// of its own, and counts them. Size, rate and codec come from the movie's note; without one, from
/// the frames. The result is empty, or one sentence about "it", the movie, that says why that
/// cannot be done.
std::wstring RebuildMovie(const std::wstring& damaged, const std::wstring& rebuilt, int& frames);

} // namespace exam
