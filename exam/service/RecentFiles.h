#pragma once

#include <string>
#include <vector>

namespace exam {

/// The files that were opened last, the latest first. The profile keeps them.
std::vector<std::wstring> RecentFiles();
void AddRecentFile(const std::wstring& path);

} // namespace exam
