#pragma once

#include <qor_utils/LogOutput.h>
#include <qor_utils/zelLogger.h>
#include <test_support/LogCapture.h>
#include <test_support/TemporaryFolder.h>

#include <cstddef>
#include <string>
#include <vector>

// A temporary folder that holds the log while it lives.
class LogFolder
{
public:
    LogFolder() { qor_utils::SetLogDirectory(m_folder.Path()); }
    ~LogFolder() { qor_utils::SetLogDirectory(L""); }
    LogFolder(const LogFolder&) = delete;
    LogFolder& operator=(const LogFolder&) = delete;

    const std::wstring& Path() const { return m_folder.Path(); }
    std::wstring File(const std::wstring& ending = L".log") const
    {
        return m_folder / (L"qor_utils_logger_test" + ending);
    }

private:
    test_support::TemporaryFolder m_folder;
};

// Logs from a source, a line and a level that do not matter.
template <typename... Arguments>
void Log(const wchar_t* format, Arguments... arguments)
{
    zelLogger::zelLogHelper("Utils_Statics/Test", 123, 4)(format, arguments...);
}

// Counts how often a part occurs in a text.
inline std::size_t Count(const std::string& text, const std::string& part)
{
    std::size_t found = 0;
    for (auto at = text.find(part); at != std::string::npos; at = text.find(part, at + part.size()))
        ++found;
    return found;
}

inline std::wstring LastText(const test_support::LogCapture& capture)
{
    const std::vector<test_support::LoggedMessage> messages = capture.Messages();
    return messages.empty() ? L"(no message)" : messages.back().text;
}
