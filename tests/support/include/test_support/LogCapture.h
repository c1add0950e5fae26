#pragma once

#include <gtest/gtest.h>
#include <qor_utils/LogOutput.h>
#include <qor_utils/zelLogger.h>

#include <mutex>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

namespace test_support {

struct LoggedMessage
{
    std::string source;
    int line;
    int level;
    std::wstring text;

    friend bool operator==(const LoggedMessage&, const LoggedMessage&) = default;
    friend std::ostream& operator<<(std::ostream& out, const LoggedMessage& message)
    {
        out << message.source << '(' << message.line << ") level " << message.level << ": ";
        for (const wchar_t character : message.text)
            out << static_cast<char>(character < 0x7f ? character : L'?');
        return out;
    }
};

// Collects the log while it lives. One object at a time, because it takes the logger's only hook.
class LogCapture
{
public:
    LogCapture() { qor_utils::SetLogHook(&LogCapture::Record, this); }
    ~LogCapture() { qor_utils::SetLogHook(nullptr, nullptr); }
    LogCapture(const LogCapture&) = delete;
    LogCapture& operator=(const LogCapture&) = delete;

    // The messages since the last call.
    std::vector<LoggedMessage> Take()
    {
        const std::lock_guard lock(m_mutex);
        return std::exchange(m_messages, {});
    }

    // Expects one message since the last call of either, from this source, and takes it.
    void ExpectOne(const std::string& source, int level, const std::wstring& text)
    {
        const std::vector<LoggedMessage> messages = Take();
        ASSERT_EQ(messages.size(), 1u);
        EXPECT_EQ(messages[0], (LoggedMessage{source, messages[0].line, level, text}));
    }

    // The messages since the last Take(), which stay in the capture.
    std::vector<LoggedMessage> Messages() const
    {
        const std::lock_guard lock(m_mutex);
        return m_messages;
    }

private:
    static void Record(const qor_utils::LogMessage& message, void* userData)
    {
        auto* const self = static_cast<LogCapture*>(userData);
        const std::lock_guard lock(self->m_mutex);
        self->m_messages.push_back({message.source, message.line, message.level, message.text});
    }

    mutable std::mutex m_mutex;
    std::vector<LoggedMessage> m_messages;
};

} // namespace test_support
