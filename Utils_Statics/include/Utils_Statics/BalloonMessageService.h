#pragma once

#include <Utils_Statics/export.h>

#include <cstdarg>

/// Raises a notice to the user, from any thread: formatted printf-style, logged if wanted, and
/// shown as a balloon by the user-interface thread.
///
///     BalloonMessageService(__FILE__, __LINE__, true, BalloonMessageService::warning)(
///         L"Recording", L"%s is full.", drive);
///
/// Notices are shown from Create to Destroy; outside they are only logged. When memory is short, a
/// notice is dropped.
///
/// Which operator a call takes is decided by its first two arguments alone. Texts are read as
/// titles before they are read as arguments of a format:
///
///     (time, text, text, ...)   time, title, format
///     (time, text)              time, format
///     (time, text, number, ...) time, format, argument
///     (text, text, ...)         title, format
///     (text)                    format
///     (text, number, ...)       format, argument
///
/// So a format whose first argument is a text needs a title before it, which may be empty. Times
/// are unsigned: write 0u, because a plain 0 could be a null text and does not compile.
///
/// Formats are the platform's wide ones: %s takes a wide text. A null text among the arguments
/// prints as an empty one, and so does one that cannot be read because the argument is none. A
/// formatted text may be 8191 characters longer than its format; a longer one is not shown, which
/// is logged.
class UTILS_STATICS_API BalloonMessageService
{
public:
    enum MsgType : int
    {
        information = 0, // as is every other value
        warning = 1,
        error = 2,
    };

    /// `file` and `line` are the place that raises the notice, for the log; `file` is kept as a
    /// pointer, for a literal.
    BalloonMessageService(const char* file, int line, bool log, MsgType type) noexcept;

    /// Time in milliseconds; without one, 4000. Without a title, or with an empty one, the balloon
    /// has the product's name.
    void operator()(unsigned int timeMs, const wchar_t* title, const wchar_t* format, ...) const;
    void operator()(const wchar_t* title, const wchar_t* format, ...) const;
    void operator()(unsigned int timeMs, const wchar_t* format, ...) const;
    void operator()(const wchar_t* format, ...) const;

    /// Called on the user-interface thread, which shows the balloons from then on and has to
    /// dispatch messages. A service that exists already is replaced.
    static void Create();
    /// Called on the same thread. Notices that were not shown yet are dropped.
    static void Destroy();

private:
    void HandleMessage(unsigned int timeMs, const wchar_t* title, const wchar_t* format,
                       va_list arguments) const;
    void Log(const wchar_t* title, const wchar_t* text) const;

    const char* m_file;
    int m_line;
    bool m_log;
    MsgType m_type;
};
