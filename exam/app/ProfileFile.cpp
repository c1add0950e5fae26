#include "app/ProfileFile.h"

#include "base/FileReader.h"

#include <algorithm>
#include <vector>

namespace exam {

namespace {

// True when the beginning of a file is text: narrow without a null, or UTF-16 with its mark.
bool IsText(const FileReader& file)
{
    constexpr std::int64_t enough = 4096;
    std::vector<unsigned char> begin(static_cast<std::size_t>(std::min(file.Size(), enough)));
    if (!file.Read(0, begin.data(), begin.size())) return false;
    if (begin.size() >= 2 && begin[0] == 0xFF && begin[1] == 0xFE) return true;
    return std::find(begin.begin(), begin.end(), 0) == begin.end();
}

} // namespace

std::wstring FindProfileProblem(const std::wstring& path)
{
    if (KindOfFile(path) == FileKind::missing) {
        const base::File created(CreateFileW(path.c_str(), GENERIC_WRITE | DELETE, 0, nullptr,
                                             CREATE_NEW, FILE_FLAG_DELETE_ON_CLOSE, nullptr));
        return created ? L"" : L"it cannot be created";
    }
    if (std::wstring problem = FindFileProblem(path); !problem.empty()) return problem;
    FileReader file;
    if (!file.Open(path)) return L"it cannot be read";
    return IsText(file) ? L"" : L"this is no file of settings";
}

} // namespace exam
