#include "qor_utils/zelLogger.h"

#include "LogTargets.h"
#include "qor_utils/zelPath.h"

#include <base/FilePath.h>
#include <base/Folders.h>
#include <base/SlimLock.h>
#include <qor_utils/LogOutput.h>
#include <qor_utils/StoreNumbers.h>

#include <atomic>
#include <cstdarg>
#include <cstdio>
#include <cwchar>
#include <mutex>
#include <set>

namespace {

constexpr std::size_t longestText = 65536;
constexpr wchar_t longPathPrefix[] = L"\\\\?\\";
constexpr std::size_t longPathPrefixLength = 4;

// Null until the host sets one. A crash report asks for it while any thread may hold a lock, so it
// is read without one.
constinit std::atomic<const std::wstring*> s_directoryOfHost = nullptr;

// A folder that was set is never freed, because a thread may still be reading it.
const std::wstring* Keep(std::wstring&& directory)
{
    static base::SlimLock lock;
    static std::set<std::wstring> kept;
    const std::scoped_lock guard(lock);
    return &*kept.insert(std::move(directory)).first;
}

// A failure shows later, when a file is opened in the folder.
void MakeMissing(const std::wstring& folder)
{
    if (GetFileAttributesW(folder.c_str()) == INVALID_FILE_ATTRIBUTES) base::MakeFolders(folder);
}

std::wstring LogDirectory()
{
    const std::wstring* const directory = s_directoryOfHost;
    return directory ? *directory : zelPath::getPath(qor_utils::logStore, L"");
}

// Formats into text, which has at most longestText characters.
void Format(std::wstring& text, const wchar_t* pattern, va_list arguments)
{
    for (std::size_t size = 512;; size *= 4) {
        text.assign(size < longestText ? size : longestText, L'\0');
        va_list copy;
        va_copy(copy, arguments);
        const int length = _vsnwprintf(text.data(), text.size(), pattern, copy);
        va_end(copy);
        if (length >= 0) return text.resize(static_cast<std::size_t>(length));
        if (size >= longestText) return text.resize(wcsnlen(text.data(), text.size()));
    }
}

bool IsLetter(wchar_t c)
{
    return (c >= L'A' && c <= L'Z') || (c >= L'a' && c <= L'z');
}

bool IsForbidden(wchar_t c)
{
    return c < L' ' || std::wcschr(L"<>\"|?*", c) != nullptr;
}

// The reason why the file system cannot have a path, as a sentence without its subject ("is
// empty"); null for a possible path.
const wchar_t* PathFault(const wchar_t* path) noexcept
{
    if (!path || !*path) return L"is empty";
    if (std::wcsncmp(path, longPathPrefix, longPathPrefixLength) == 0)
        path += longPathPrefixLength;
    else if (wcsnlen(path, MAX_PATH) >= MAX_PATH)
        return L"is too long";
    if (IsLetter(path[0]) && path[1] == L':') path += 2;
    for (; *path; ++path) {
        if (IsForbidden(*path) || *path == L':') return L"holds a character that no file name can";
    }
    return nullptr;
}

void Write(const qor_utils::LogMessage& message)
{
    const std::wstring directory = LogDirectory();
    MakeMissing(directory);
    qor_utils::WriteToLog(directory, message);
    qor_utils::CallLogHook(message);
}

} // namespace

void qor_utils::SetLogDirectory(const std::wstring& directory)
{
    std::wstring text = base::WithTrailingBackslash(base::FullPath(directory.c_str()));
    s_directoryOfHost = text.empty() ? nullptr : Keep(std::move(text));
    CloseLogFile();
}

std::wstring zelLogger::getCurrentDirectory()
{
    std::wstring directory = LogDirectory();
    MakeMissing(directory);
    return directory;
}

bool zelLogger::checkPath(const char* source, int line, const wchar_t* path)
{
    const wchar_t* const fault = PathFault(path);
    if (!fault) return true;
    zelLogHelper(source, line, qor_utils::warningLevel)(L"The path '%s' %s.", path ? path : L"",
                                                        fault);
    return false;
}

zelLogger::zelLogHelper::zelLogHelper(const char* source, int line, int level) noexcept
    : m_source(source ? source : ""), m_line(line), m_level(level)
{
}

void zelLogger::zelLogHelper::operator()(const wchar_t* format, ...) const noexcept
{
    va_list arguments;
    va_start(arguments, format);
    try {
        std::wstring text;
        Format(text, format ? format : L"", arguments);
        Write({m_source, m_line, m_level, text.c_str()});
    } catch (...) { // out of memory: there is nobody to tell
    }
    va_end(arguments);
}
