// Only this source includes spdlog, because its headers take long to compile.
#include "LogTargets.h"
#include "qor_utils/CriticalSection.h"
#include "qor_utils/zelLogger.h"

#include <base/Encoding.h>
#include <base/FilePath.h>

#include <windows.h>

#define SPDLOG_WCHAR_FILENAMES // a user's folder may have any characters
#include <spdlog/pattern_formatter.h>
#include <spdlog/sinks/base_sink.h>
#include <spdlog/sinks/rotating_file_sink.h>

#include <memory>

namespace qor_utils {
namespace {

constexpr std::size_t largestFile = 5 * 1024 * 1024;
constexpr std::size_t oldFiles = 5;
constexpr ULONGLONG retryAfter = 10'000; // milliseconds; spdlog needs 50 to fail at opening a file

// spdlog's own sink for the debugger passes UTF-8 to a function that expects the system's code
// page.
class DebuggerSink final : public spdlog::sinks::base_sink<spdlog::details::null_mutex>
{
    void sink_it_(const spdlog::details::log_msg& message) override
    {
        spdlog::memory_buf_t line;
        formatter_->format(message, line);
        OutputDebugStringW(base::WideFromUtf8({line.data(), line.size()}).c_str());
    }
    void flush_() override {}
};

std::unique_ptr<spdlog::formatter> LineFormatter()
{
    return std::make_unique<spdlog::pattern_formatter>("%Y-%m-%d %H:%M:%S.%e [%t] [%l] %v");
}

std::wstring LogFileName()
{
    const std::wstring program = base::ModuleFile(nullptr);
    const std::wstring name = program.substr(program.find_last_of(L'\\') + 1);
    return name.substr(0, name.find_last_of(L'.')) + L".log";
}

class LogFile
{
public:
    void Write(const std::wstring& directory, const spdlog::details::log_msg& message)
    {
        if (!Open(directory)) return;
        try {
            m_sink->log(message);
            m_sink->flush();
        } catch (...) {
            Fail(); // spdlog's sink cannot be used after an error
        }
    }

    void Close()
    {
        m_sink.reset();
        m_directory.clear();
    }

private:
    bool Open(const std::wstring& directory)
    {
        if (directory == m_directory) {
            if (m_sink) return true;
            if (GetTickCount64() < m_retryAt) return false;
        }
        m_sink.reset();
        m_directory = directory;
        try {
            m_sink = std::make_unique<spdlog::sinks::rotating_file_sink_st>(
                directory + LogFileName(), largestFile, oldFiles);
            m_sink->set_formatter(LineFormatter());
        } catch (...) {
            Fail();
        }
        return m_sink != nullptr;
    }

    void Fail()
    {
        m_sink.reset();
        m_retryAt = GetTickCount64() + retryAfter;
    }

    std::wstring m_directory; // the sink's folder, also when the sink failed
    std::unique_ptr<spdlog::sinks::rotating_file_sink_st> m_sink;
    ULONGLONG m_retryAt = 0;
};

// The state for writing a log, and its lock. The lock is a critical section, not a slim lock: a
// crash handler may log on a thread that crashed while logging, and must not wait for itself.
struct Log
{
    CriticalSection section;
    bool busy = false;
    LogFile file;
};

Log& TheLog()
{
    static Log object;
    return object;
}

spdlog::level::level_enum SpdlogLevel(int level)
{
    switch (level) {
    case errorLevel: return spdlog::level::err;
    case warningLevel: return spdlog::level::warn;
    case noticeLevel:
    case informationLevel: return spdlog::level::info;
    default: return spdlog::level::debug;
    }
}

void WriteToFile(const std::wstring& directory, const spdlog::details::log_msg& message)
{
    const CriticalSectionLock guard(TheLog().section);
    if (TheLog().busy) return;
    TheLog().busy = true;
    TheLog().file.Write(directory, message);
    TheLog().busy = false;
}

} // namespace

void WriteToLog(const std::wstring& directory, const LogMessage& message) noexcept
try {
    // The place is part of the text, because spdlog omits a place with line 0.
    const std::string place =
        std::string(message.source) + "(" + std::to_string(message.line) + "): ";
    const std::string text = place + base::Utf8FromWide(message.text);
    const spdlog::details::log_msg entry(spdlog::string_view_t(), SpdlogLevel(message.level), text);
    DebuggerSink debugger;
    debugger.set_formatter(LineFormatter());
    debugger.log(entry);
    WriteToFile(directory, entry);
} catch (...) {
}

void CloseLogFile() noexcept
{
    const CriticalSectionLock guard(TheLog().section);
    if (!TheLog().busy) TheLog().file.Close();
}

} // namespace qor_utils
