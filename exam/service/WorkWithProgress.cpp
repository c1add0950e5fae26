#include "service/WorkWithProgress.h"

#include "service/ServiceWindows.h"

#include <chrono>
#include <future>
#include <mutex>
#include <optional>
#include <string>

namespace exam {

namespace {

// The thread says here how far the work is, and the window reads it.
class SharedProgress
{
public:
    bool Tell(std::size_t done, std::size_t all, const std::wstring& name)
    {
        const std::scoped_lock lock(m_lock);
        m_told = {done, all, name};
        return !m_isCancelled;
    }
    void Show(ProgressWindow& window)
    {
        const std::scoped_lock lock(m_lock);
        m_isCancelled = window.IsCancelled();
        if (m_told) window.Step(m_told->done, m_told->all, m_told->name);
        m_told.reset();
    }

private:
    struct Step
    {
        std::size_t done;
        std::size_t all;
        std::wstring name;
    };
    std::mutex m_lock;
    std::optional<Step> m_told; // since it was last shown
    bool m_isCancelled = false;
};

// Handles the messages of this thread; those of the keyboard work the window.
void HandleMessages(HWND window)
{
    for (MSG message; PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE);) {
        if (message.message == WM_QUIT) { // ends the program when the work is done
            PostMessageW(window, WM_CLOSE, 0, 0);
            PostQuitMessage(static_cast<int>(message.wParam));
            return;
        }
        if (window && IsDialogMessageW(window, &message)) continue;
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}

} // namespace

ArchiveResult WorkWithProgress(CWnd& owner, const CString& title,
                               const std::function<ArchiveResult(const ArchiveProgress&)>& work)
{
    constexpr DWORD interval = 20; // milliseconds
    SharedProgress progress;
    auto result = std::async(std::launch::async, [&] {
        return work([&](std::size_t done, std::size_t all, const std::wstring& name) {
            return progress.Tell(done, all, name);
        });
    });
    ProgressWindow window;
    window.Open(owner, title, true);
    const bool wasEnabled = owner.GetSafeHwnd() && !::EnableWindow(owner.GetSafeHwnd(), FALSE);
    while (result.wait_for(std::chrono::milliseconds(0)) != std::future_status::ready) {
        progress.Show(window);
        HandleMessages(window.GetSafeHwnd());
        MsgWaitForMultipleObjects(0, nullptr, FALSE, interval, QS_ALLINPUT);
    }
    progress.Show(window); // work may end before the window was asked for it
    if (wasEnabled) ::EnableWindow(owner.GetSafeHwnd(), TRUE);
    return result.get();
}

} // namespace exam
