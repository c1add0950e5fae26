#pragma once

#include <Utils_Statics/export.h>

#include <cstdarg>

/// Raises a notice to the user, from any thread. The notice is formatted printf-style and logged if
/// wanted; the user-interface thread shows it as a balloon.
///
///     BalloonMessageService(__FILE__, __LINE__, true, BalloonMessageService::warning)(
///         L"Recording", L"%s is full.", drive);
///
/// Notices are shown from Create to Destroy; before and after they are only logged. When memory is
/// short, a notice is dropped.
///
/// The first two arguments alone decide which operator a call takes. A text is read as a title
/// before it is read as an argument of a format:
///
///     (time, text, text, ...)   time, title, format
///     (time, text)              time, format
///     (time, text, number, ...) time, format, argument
///     (text, text, ...)         title, format
///     (text)                    format
///     (text, number, ...)       format, argument
///
/// So a format whose first argument is a text needs a title before it; the title may be empty.
/// Times are unsigned: write 0u, because a plain 0 could be a null text and does not compile.
///
/// Formats are the platform's wide ones: %s takes a wide text. A null text among the arguments
/// prints as an empty one, and so does an argument that is no text and cannot be read as one. A
/// formatted text may be up to 8191 characters longer than its format. A longer one is not shown;
/// that is logged.
class UTILS_STATICS_API BalloonMessageService
{
public:
    /// The urgency of a notice: the icon of its balloon and its level in the log.
    enum MsgType : int
    {
        information = 0, ///< every other value counts as this one
        warning = 1,     ///< asks for attention
        error = 2,       ///< something failed
    };

    /// `file` and `line` name the place that raises the notice, for the log. `file` has to be a
    /// literal, because only the pointer is kept.
    BalloonMessageService(const char* file, int line, bool log, MsgType type) noexcept;

    /// The time is in milliseconds and 4000 by default. Without a title, or with an empty one, the
    /// balloon shows the product's name as its title.
    void operator()(unsigned int timeMs, const wchar_t* title, const wchar_t* format, ...) const;
    void operator()(const wchar_t* title, const wchar_t* format, ...) const;
    void operator()(unsigned int timeMs, const wchar_t* format, ...) const;
    void operator()(const wchar_t* format, ...) const;

    /// Starts the service on the calling thread, the user-interface thread, which shows the
    /// balloons from then on and has to dispatch messages. Replaces a service that exists already.
    static void Create();
    /// Ends the service; called on the thread that created it. Drops notices that were not shown
    /// yet.
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
