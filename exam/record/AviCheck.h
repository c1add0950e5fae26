#pragma once

#include <string>

namespace exam {

/// Looks at a movie after it was closed: the sizes of its parts, its index, and whether there are
/// at least `frames` frames. The result is empty, or one sentence about "it", the movie, that says
/// what is not whole.
std::wstring FindMovieProblem(const std::wstring& path, int frames);

} // namespace exam
