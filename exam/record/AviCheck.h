#pragma once

#include <string>

namespace exam {

/// Checks a closed movie: the sizes of its parts, its index, and that there are at least `frames`
/// frames. The result is empty, or one sentence about "it", the movie, that says what is not whole.
std::wstring FindMovieProblem(const std::wstring& path, int frames);

} // namespace exam
