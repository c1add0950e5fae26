#pragma once

#include "Figures.h"

#include <base/Handles.h>

#include <windows.h>

#include <optional>
#include <string>
#include <vector>

namespace soak {

/// The application as another process: its windows, and what can be known of it from outside.
class DrivenExam
{
public:
    /// Starts the program with all its files in a folder, and waits for its window.
    DrivenExam(const std::wstring& program, const std::wstring& folder);
    /// Ends it if it still runs.
    ~DrivenExam();
    DrivenExam(const DrivenExam&) = delete;
    DrivenExam& operator=(const DrivenExam&) = delete;

    /// False when there is no window, or no hook in it.
    bool IsReady() const { return m_window && m_hook; }
    bool IsRunning(DWORD milliseconds = 0) const;
    /// True when the window handles a message in twenty seconds. One that once did not is not asked
    /// again.
    bool Answers() { return Ask(WM_NULL); }
    /// The figures; nothing when the window does not answer.
    std::optional<Reading> Read();
    /// Tells how much memory is its own, in MiB.
    unsigned Megabytes() const;
    /// Its exit code; MAXDWORD when it does not end in a minute.
    DWORD ExitCode() const;

    HWND Window() const { return m_window; }
    /// The visible windows that stand on the screen for themselves, the uppermost first.
    std::vector<HWND> Windows() const;
    /// The uppermost of them of a class; null when there is none.
    HWND FindShown(const wchar_t* windowClass) const;
    bool Owns(HWND window) const;

private:
    bool Ask(UINT message);
    void FindWindow();
    void PutHook();
    unsigned Threads() const;

    base::Process m_process;
    DWORD m_id = 0;
    HWND m_window = nullptr;
    bool m_hangs = false;
    base::Module m_probe; // outlives the hook
    base::Hook m_hook;
};

} // namespace soak
