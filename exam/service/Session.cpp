#include "service/Session.h"

#include <base/FilePath.h>
#include <base/Folders.h>

#include <algorithm>
#include <filesystem>
#include <sstream>

namespace exam {

namespace {

namespace fs = std::filesystem;

constexpr wchar_t fileName[] = L"\\session.running";
constexpr DWORD longestFile = 200'000; // bytes; longer than some paths

std::wstring ReadText(HANDLE file)
{
    std::wstring text(longestFile / sizeof(wchar_t), L'\0');
    DWORD read = 0;
    ReadFile(file, text.data(), longestFile, &read, nullptr);
    text.resize(read / sizeof(wchar_t));
    return text;
}

// The crash handler names it in its settings beside this program.
std::wstring ArchiveOfLastCrash()
{
    const fs::path settings = fs::path(base::ModuleFile(nullptr)).parent_path() / "crashreport.ini";
    std::wstring path(32768, L'\0');
    path.resize(GetPrivateProfileStringW(L"ZipFileName", L"Zip", L"", path.data(),
                                         static_cast<DWORD>(path.size()), settings.c_str()));
    return path;
}

ULONGLONG NumberOf(const FILETIME& time)
{
    return ULONGLONG{time.dwHighDateTime} << 32 | time.dwLowDateTime;
}

// True for a file that was written after a time.
bool IsNewer(const std::wstring& path, ULONGLONG time)
{
    WIN32_FILE_ATTRIBUTE_DATA facts = {};
    return GetFileAttributesExW(path.c_str(), GetFileExInfoStandard, &facts) &&
           NumberOf(facts.ftLastWriteTime) >= time;
}

// The report of the last crash after a time: the archive, or the text that belongs into it.
std::wstring ReportSince(ULONGLONG time)
{
    const std::wstring archive = ArchiveOfLastCrash();
    if (archive.empty()) return {};
    const std::wstring text = fs::path(archive).replace_extension(L".txt").wstring();
    if (!IsNewer(text, time)) return {};
    return IsNewer(archive, time) ? archive : text;
}

// The lines of the file: the time of its begin, the study's folder, and those of recordings.
std::optional<LostSession> ReadSession(const std::wstring& text)
{
    std::wistringstream lines(text);
    std::wstring begin;
    LostSession lost;
    if (!std::getline(lines, begin) || !std::getline(lines, lost.study) || lost.study.empty())
        return {};
    for (std::wstring folder; std::getline(lines, folder);)
        lost.recordings.push_back(folder);
    lost.report = ReportSince(std::wcstoull(begin.c_str(), nullptr, 10));
    return lost;
}

} // namespace

std::optional<LostSession> Session::Begin(const std::wstring& userFolder)
{
    base::MakeFolders(userFolder);
    m_file.reset(CreateFileW((userFolder + fileName).c_str(), GENERIC_READ | GENERIC_WRITE | DELETE,
                             0, nullptr, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
    m_isSecond = !m_file && GetLastError() == ERROR_SHARING_VIOLATION;
    if (!m_file) return {};
    std::optional<LostSession> lost = ReadSession(ReadText(m_file.get()));
    FILETIME now = {};
    GetSystemTimeAsFileTime(&now);
    m_begin = NumberOf(now);
    Write();
    return lost;
}

void Session::AddRecordings(const std::wstring& folder)
{
    if (std::ranges::find(m_recordings, folder) != m_recordings.end()) return;
    m_recordings.push_back(folder);
    Write();
}

void Session::SetStudy(const std::wstring& folder)
{
    m_study = folder;
    Write();
}

void Session::Write()
{
    if (!m_file) return;
    std::wstring text = std::to_wstring(m_begin) + L"\n" + m_study;
    for (const std::wstring& folder : m_recordings)
        text += L"\n" + folder;
    DWORD written = 0;
    SetFilePointer(m_file.get(), 0, nullptr, FILE_BEGIN);
    WriteFile(m_file.get(), text.data(), static_cast<DWORD>(text.size() * sizeof(wchar_t)),
              &written, nullptr);
    SetEndOfFile(m_file.get());
}

void Session::End()
{
    if (!m_file) return;
    FILE_DISPOSITION_INFO removed = {TRUE};
    SetFileInformationByHandle(m_file.get(), FileDispositionInfo, &removed, sizeof removed);
    m_file.reset();
}

} // namespace exam
