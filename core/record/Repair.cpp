#include "record/Repair.h"

#include "base/Console.h"
#include "base/FileReader.h"
#include "base/UnusedPath.h"
#include "image/CineFile.h"
#include "record/MovieFile.h"
#include "record/MovieNote.h"
#include "record/MovieRepair.h"

#include <base/FileReplacement.h>
#include <Utils_Statics/CineHeader.h>

#include <algorithm>
#include <cstddef>
#include <filesystem>

namespace exam {

namespace {

namespace fs = std::filesystem;

bool IsMovie(const std::wstring& path)
{
    return _wcsicmp(fs::path(path).extension().c_str(), L".avi") == 0;
}

// True while a program has the file open to write it.
bool IsBeingWritten(const std::wstring& path)
{
    const base::File file(CreateFileW(path.c_str(), GENERIC_READ,
                                      FILE_SHARE_READ | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING,
                                      FILE_ATTRIBUTE_NORMAL, nullptr));
    return !file && GetLastError() == ERROR_SHARING_VIOLATION;
}

// The whole frames behind a header; none when it is no header of frames.
std::int64_t FramesOf(const RawCine& cine)
{
    if (!FindHeaderProblem(cine.Description()).empty()) return 0;
    return cine.PayloadSize() / cine.Description().FrameSize().value_or(INT64_MAX);
}

// Sets the count of a raw cine, and cuts off what is behind its last whole frame.
bool FinishCine(const std::wstring& path, std::int32_t count, std::int64_t size)
{
    const base::File file(CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING,
                                      FILE_ATTRIBUTE_NORMAL, nullptr));
    LARGE_INTEGER place{};
    place.QuadPart = size;
    if (!file || !SetFilePointerEx(file.get(), place, nullptr, FILE_BEGIN) ||
        !SetEndOfFile(file.get()))
        return false;
    place.QuadPart = offsetof(CineHeader, frameCount);
    DWORD written = 0;
    return SetFilePointerEx(file.get(), place, nullptr, FILE_BEGIN) &&
           WriteFile(file.get(), &count, sizeof count, &written, nullptr) &&
           written == sizeof count;
}

std::wstring RebuildCine(const std::wstring& damaged, const std::wstring& rebuilt, int& frames)
{
    RawCine cine;
    if (std::wstring problem = OpenToShow(cine, damaged); !problem.empty()) return problem;
    const std::int64_t held = std::min<std::int64_t>(FramesOf(cine), INT32_MAX);
    if (held == 0) return L"it holds no whole frame";
    const std::int64_t size =
        std::int64_t{sizeof(CineHeader)} + held * cine.Description().FrameSize().value_or(0);
    if (!CopyFileW(damaged.c_str(), rebuilt.c_str(), FALSE) ||
        !FinishCine(rebuilt, static_cast<std::int32_t>(held), size))
        return L"the repaired recording cannot be written; is the disk full?";
    frames = static_cast<int>(held);
    return L"";
}

std::wstring FindCineProblem(const std::wstring& path)
{
    RawCine cine;
    std::wstring problem = OpenToShow(cine, path);
    return problem.empty() ? FindSizeProblem(cine) : problem;
}

std::wstring FindProblem(const std::wstring& path)
{
    return IsMovie(path) ? FindMovieProblem(path, 1) : FindCineProblem(path);
}

// True for a recording that was cut off after its first frame.
bool IsCutOff(const std::wstring& path)
{
    if (IsMovie(path)) return ReadNote(path).has_value() && HoldsFrame(path);
    RawCine cine;
    return fs::path(path).extension() == L".cine" && cine.Open(path).empty() &&
           cine.Description().count == 0 && FramesOf(cine) > 0;
}

// Rebuilds a recording beside the damaged one and puts it into its place. The result says what
// cannot be done.
std::wstring Rebuild(const std::wstring& path, int& frames)
{
    const std::wstring rebuilt = UnusedPath(path + L".repaired-", L"");
    std::wstring problem =
        IsMovie(path) ? RebuildMovie(path, rebuilt, frames) : RebuildCine(path, rebuilt, frames);
    if (problem.empty() &&
        !(IsMovie(path) ? FindMovieProblem(rebuilt, frames) : FindCineProblem(rebuilt)).empty())
        problem = L"the repaired recording is not whole; is the disk full?";
    if (problem.empty() && !base::MoveOver(rebuilt.c_str(), path.c_str()))
        problem = L"the repaired recording cannot take its place";
    if (!problem.empty()) DeleteFileW(rebuilt.c_str());
    return problem;
}

} // namespace

Repaired RepairRecording(const std::wstring& path)
{
    if (std::wstring problem = FindFileProblem(path); !problem.empty()) return {path, 0, problem};
    if (IsBeingWritten(path)) return {path, 0, L"another program is writing it"};
    Repaired repaired{path, 0, L""};
    if (!FindProblem(path).empty()) repaired.problem = Rebuild(path, repaired.frames);
    if (repaired.problem.empty()) RemoveNote(path);
    return repaired;
}

std::vector<Repaired> RepairFolder(const std::wstring& folder)
{
    std::vector<std::wstring> cutOff;
    std::error_code error; // a folder that cannot be read has nothing to repair
    for (fs::directory_iterator entry(folder, error); !error && entry != fs::directory_iterator();
         entry.increment(error)) {
        const std::wstring path = entry->path().wstring();
        if (IsCutOff(path) && !IsBeingWritten(path)) cutOff.push_back(path);
    }
    std::vector<Repaired> repaired(cutOff.size());
    std::ranges::transform(cutOff, repaired.begin(), RepairRecording);
    // A movie may have been finished just before its note could be removed.
    std::erase_if(repaired,
                  [](const Repaired& each) { return each.frames == 0 && each.problem.empty(); });
    return repaired;
}

bool RepairCommand(const std::wstring& path)
{
    const Repaired repaired = RepairRecording(path);
    if (!repaired.problem.empty()) return Fail(path + L": " + repaired.problem);
    WriteOut(path +
             (repaired.frames == 0
                  ? L": there is nothing to repair"
                  : L": repaired, " + std::to_wstring(repaired.frames) + L" frames") +
             L"\n");
    return true;
}

} // namespace exam
