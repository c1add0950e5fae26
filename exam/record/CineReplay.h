#pragma once

#include <string>

namespace exam {

/// Replays a raw cine file into a movie of its scan-converted frames, and shows the progress on
/// standard output. False, with a sentence on standard error, when not all frames are in the movie.
bool ReplayCine(const std::wstring& path, const std::wstring& movie);

} // namespace exam
