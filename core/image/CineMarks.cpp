#include "image/CineMarks.h"

#include <base/FileContents.h>

#include <windows.h>

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace exam {

namespace {

constexpr std::size_t largestFile = 1'000'000; // bytes

} // namespace

std::wstring MarksPath(const std::wstring& recording)
{
    return recording + L".marks";
}

std::vector<int> ReadMarks(const std::wstring& recording)
{
    std::istringstream text(
        base::ReadFileWhole(MarksPath(recording).c_str(), largestFile).value_or(std::string()));
    std::vector<int> marks;
    for (std::string line; std::getline(text, line);) {
        int place = 0;
        std::from_chars(line.data(), line.data() + line.size(), place);
        if (place > 0) marks.push_back(place - 1);
    }
    std::ranges::sort(marks);
    marks.erase(std::unique(marks.begin(), marks.end()), marks.end());
    return marks;
}

bool AddMark(const std::wstring& recording, int frame)
{
    std::ofstream file(std::filesystem::path(MarksPath(recording)), std::ios::app);
    file << frame + 1 << '\n';
    file.close();
    return !file.fail();
}

void RemoveMarks(const std::wstring& recording)
{
    DeleteFileW(MarksPath(recording).c_str());
}

} // namespace exam
