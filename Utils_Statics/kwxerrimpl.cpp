#include "text/TextView.h"
#include "windows/CMainThreadWnd.h"
#include "windows/NoticeText.h"

#include <base/SlimLock.h>
#include <qor_utils/zelLogger.h>
#include <Utils_Statics/BalloonMessageService.h>
#include <Utils_Statics/utilsExam.h>

#include <cwchar>
#include <memory>
#include <mutex>
#include <new>
#include <shared_mutex>
#include <utility>

using utils_statics::BalloonRequest;
using utils_statics::NoticeText;
using utils_statics::OrEmpty;

namespace {

// Source and lines of this file's own messages. Whoever searches logs relies on them.
constexpr const char* source = "Utils_Statics/kwxerrimpl";
constexpr int formatFailedLine = 241;
constexpr int noFormatLine = 248;

constexpr unsigned int usualTime = 4000; // milliseconds

// The service's window, null while there is none. A thread that posts to it holds the lock shared.
constinit base::SlimLock s_lock;
constinit CMainThreadWnd* s_window = nullptr;

bool HasService()
{
    const std::shared_lock lock(s_lock);
    return s_window != nullptr;
}

void Post(std::unique_ptr<BalloonRequest> request)
{
    const std::shared_lock lock(s_lock);
    if (s_window) s_window->Post(std::move(request));
}

// The main window of the calling thread, or the desktop.
HWND WindowAround()
{
    const CWnd* const main = AfxGetMainWnd();
    return main && IsWindow(main->m_hWnd) ? main->m_hWnd : GetDesktopWindow();
}

// The bottom right corner of a 1024 x 768 area in the middle of the window. On the one console
// whose image has a place of its own, it is a point of the image.
CPoint BalloonPlace()
{
    if (utilsExam::m_consoleType == eConsoleTavren)
        return utilsExam::CalculateSystemOrigin(CSize(-1, -1)) + CSize(68, 50);
    CRect client;
    GetClientRect(WindowAround(), &client);
    return CPoint((client.Width() + 1024) / 2, (client.Height() + 768) / 2);
}

CToolTipProvider::IconType IconOf(BalloonMessageService::MsgType type)
{
    switch (type) {
    case BalloonMessageService::warning: return CToolTipProvider::iconWarning;
    case BalloonMessageService::error: return CToolTipProvider::iconError;
    default: return CToolTipProvider::iconInformation;
    }
}

int LogLevelOf(BalloonMessageService::MsgType type)
{
    switch (type) {
    case BalloonMessageService::warning: return qor_utils::warningLevel;
    case BalloonMessageService::error: return qor_utils::errorLevel;
    default: return qor_utils::noticeLevel;
    }
}

void CreateBalloon(const wchar_t* title, const wchar_t* text, unsigned int timeMs,
                   BalloonMessageService::MsgType type)
{
    if (!HasService()) return;
    const CPoint place = BalloonPlace();
    const CString shownTitle = *OrEmpty(title) ? CString(title) : utilsExam::GetProductName();
    Post(std::make_unique<BalloonRequest>(
        BalloonRequest{CString(text), shownTitle, place, IconOf(type), timeMs}));
}

} // namespace

BalloonMessageService::BalloonMessageService(const char* file, int line, bool log,
                                             MsgType type) noexcept
    : m_file(file), m_line(line), m_log(log), m_type(type)
{
}

void BalloonMessageService::operator()(unsigned int timeMs, const wchar_t* title,
                                       const wchar_t* format, ...) const
{
    va_list arguments;
    va_start(arguments, format);
    HandleMessage(timeMs, title, format, arguments);
    va_end(arguments);
}

void BalloonMessageService::operator()(const wchar_t* title, const wchar_t* format, ...) const
{
    va_list arguments;
    va_start(arguments, format);
    HandleMessage(usualTime, title, format, arguments);
    va_end(arguments);
}

void BalloonMessageService::operator()(unsigned int timeMs, const wchar_t* format, ...) const
{
    va_list arguments;
    va_start(arguments, format);
    HandleMessage(timeMs, nullptr, format, arguments);
    va_end(arguments);
}

void BalloonMessageService::operator()(const wchar_t* format, ...) const
{
    va_list arguments;
    va_start(arguments, format);
    HandleMessage(usualTime, nullptr, format, arguments);
    va_end(arguments);
}

void BalloonMessageService::HandleMessage(unsigned int timeMs, const wchar_t* title,
                                          const wchar_t* format, va_list arguments) const
{
    if (!format) {
        zelLogger::zelLogHelper(source, noFormatLine, qor_utils::warningLevel)(
            L"Skipping CreateBalloon since a NULL msg was provided.");
        return;
    }
    try {
        const NoticeText notice = utils_statics::FormatNotice(format, arguments);
        if (!notice.text) {
            zelLogger::zelLogHelper(source, formatFailedLine, qor_utils::warningLevel)(
                L"Unable to Create Balloon message: StringCchVPrintfEx() returned %#x",
                notice.result);
            return;
        }
        if (m_log) Log(title, notice.text.get());
        CreateBalloon(title, notice.text.get(), timeMs, m_type);
    } catch (const std::bad_alloc&) {
        // The notice is dropped: it must not end the work that raised it.
    }
}

void BalloonMessageService::Log(const wchar_t* title, const wchar_t* text) const
{
    const CString prefix = *OrEmpty(title) ? CString(title) + L" - " : CString();
    zelLogger::zelLogHelper(m_file, m_line, LogLevelOf(m_type))(L"%s%s", prefix.GetString(), text);
}

void BalloonMessageService::Create()
try {
    Destroy();
    auto window = std::make_unique<CMainThreadWnd>();
    if (!window->CreateMessageOnly()) return;
    const std::unique_lock lock(s_lock);
    s_window = window.release();
} catch (const std::bad_alloc&) { // there is then no service
}

void BalloonMessageService::Destroy()
{
    std::unique_ptr<CMainThreadWnd> window;
    {
        const std::unique_lock lock(s_lock);
        window.reset(std::exchange(s_window, nullptr));
    }
    if (window) window->DestroyWindow();
}
