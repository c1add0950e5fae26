#pragma once

#include <string>

namespace exam {

// Why a file cannot hold the settings: one sentence; empty when it can. A file that is missing has
// to be one that can be created; none is left behind. A file that is no text is refused, because
// writing settings would destroy it.
std::wstring FindProfileProblem(const std::wstring& path);

} // namespace exam
