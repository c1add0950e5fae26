#pragma once

#include <string>

namespace exam {

/// One sentence that says why a file cannot hold the settings; empty when it can. A missing file is
/// created to find out, and removed again. A file that is not text is refused, because writing
/// settings would destroy it.
std::wstring FindProfileProblem(const std::wstring& path);

} // namespace exam
