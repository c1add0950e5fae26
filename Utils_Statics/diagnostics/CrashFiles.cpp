#include "diagnostics/CrashFiles.h"

#include "diagnostics/ReportTime.h"

#include <base/Handles.h>

namespace utils_statics {

namespace {

void FindProgram(CrashFiles& files) noexcept
{
    constexpr auto room = static_cast<DWORD>(decltype(files.program)::capacity);
    const DWORD length = GetModuleFileNameW(nullptr, files.program.data(), room);
    if (length == 0) files.program = L"Unknown";
    files.program.Measure();
    const std::wstring_view name = FileNamePart(files.program.View());
    files.processName = name.substr(0, name.rfind(L'.'));
}

// Finds the folder's XML file that was created last; among equals the one found first.
void FindActionLog(CrashFiles& files) noexcept
{
    files.actionLog = files.folder.View();
    files.actionLog += L"\\*.xml";
    files.hasActionLog = false;
    WIN32_FIND_DATAW found = {};
    FILETIME newest = {};
    const base::Find find(FindFirstFileW(files.actionLog.Text(), &found));
    if (!find) return;
    do {
        if (files.hasActionLog && CompareFileTime(&found.ftCreationTime, &newest) <= 0) continue;
        newest = found.ftCreationTime;
        files.hasActionLog = true;
        files.actionLog = files.folder.View();
        files.actionLog += L"\\";
        files.actionLog += found.cFileName;
    } while (FindNextFileW(find.get(), &found));
}

template <std::size_t Size>
void SetPath(FixedText<Size>& path, const CrashFiles& files, const wchar_t* extension) noexcept
{
    path = files.folder.View();
    path += files.baseName.View();
    path += extension;
}

} // namespace

void FindCrashFiles(CrashFiles& files, std::wstring_view logFolder) noexcept
{
    FindProgram(files);
    files.baseName = files.processName.View();
    files.baseName += L"_";
    files.baseName += DosTimeStamp().View();
    files.folder = logFolder;
    SetPath(files.dump, files, L".dmp");
    SetPath(files.archive, files, L".zip");
    SetPath(files.report, files, L".txt");
    FindActionLog(files);
}

} // namespace utils_statics
