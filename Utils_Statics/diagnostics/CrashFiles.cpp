#include "diagnostics/CrashFiles.h"

#include <base/Handles.h>

namespace utils_statics {

namespace {

// The present in local time, as the names of a crash's files have it: "06302024_090506", in steps
// of two seconds.
FixedText<64> DosTimeStamp() noexcept
{
    FILETIME now = {};
    FILETIME local = {};
    WORD date = 0;
    WORD time = 0;
    GetSystemTimeAsFileTime(&now);
    FileTimeToLocalFileTime(&now, &local);
    FileTimeToDosDateTime(&local, &date, &time);
    FixedText<64> text;
    wsprintfW(text.data(), L"%02d%02d%04d_%02d%02d%02d", date >> 5 & 0xF, date & 0x1F,
              (date >> 9) + 1980, time >> 11, time >> 5 & 0x3F, (time & 0x1F) * 2);
    text.Measure();
    return text;
}

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

void SetPath(CrashPath& path, const CrashFiles& files, const wchar_t* extension) noexcept
{
    path = files.folder.View();
    path += files.baseName.View();
    path += extension;
}

// Reads a value of one type into `out`; `size` becomes its size in bytes.
bool ReadValue(const wchar_t* section, const wchar_t* name, DWORD wantedType, void* out,
               DWORD& size) noexcept
{
    FixedText<256> path;
    path = L"Software\\Kestrow\\Exam\\";
    path += section;
    base::RegistryKey key;
    RegOpenKeyExW(HKEY_CURRENT_USER, path.Text(), 0, KEY_QUERY_VALUE, key.put());
    DWORD type = REG_NONE;
    return key &&
           RegQueryValueExW(key.get(), name, nullptr, &type, static_cast<BYTE*>(out), &size) ==
               ERROR_SUCCESS &&
           type == wantedType;
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

int CrashSettingNumber(const wchar_t* section, const wchar_t* name, int defaultValue) noexcept
{
    int number = 0;
    DWORD size = sizeof number;
    const bool isRead = ReadValue(section, name, REG_DWORD, &number, size);
    return isRead && size == sizeof number ? number : defaultValue;
}

void CrashSettingText(const wchar_t* section, const wchar_t* name, const wchar_t* defaultValue,
                      SettingText& out) noexcept
{
    DWORD size = (SettingText::capacity + 1) * sizeof(wchar_t);
    if (!ReadValue(section, name, REG_SZ, out.data(), size)) {
        out = defaultValue;
        return;
    }
    const DWORD length = size / sizeof(wchar_t);
    if (length <= SettingText::capacity) out.data()[length] = L'\0'; // which may be missing
    out.Measure();
}

} // namespace utils_statics
