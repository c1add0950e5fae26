#include "ThreadState.h"

#include <base/Handles.h>

#include <process.h>

namespace {

// Gives a worker thread an object of its own for the application's main window, because the
// application's object belongs to another thread.
class InheritedMainWindow
{
public:
    InheritedMainWindow(CWinThread& thread, HWND window) : m_thread(thread)
    {
        if (thread.m_pMainWnd || !window) return;
        m_window.m_hWnd = window;
        thread.m_pMainWnd = &m_window;
    }
    ~InheritedMainWindow()
    {
        m_window.m_hWnd = nullptr; // this object must not destroy it
        if (m_thread.m_pMainWnd == &m_window) m_thread.m_pMainWnd = nullptr;
    }
    InheritedMainWindow(const InheritedMainWindow&) = delete;
    InheritedMainWindow& operator=(const InheritedMainWindow&) = delete;

private:
    CWinThread& m_thread;
    CWnd m_window;
};

HWND ApplicationsMainWindow()
{
    const CWinApp* const application = AfxGetApp();
    return application && application->m_pMainWnd ? application->m_pMainWnd->m_hWnd : nullptr;
}

} // namespace

CWinThread::CWinThread(AFX_THREADPROC procedure, LPVOID parameter)
    : m_pfnThreadProc(procedure), m_pThreadParams(parameter)
{
}

CWinThread::~CWinThread()
{
    base::Thread(m_hThread).reset();
}

BOOL CWinThread::CreateThread(DWORD flags, UINT stackSize, LPSECURITY_ATTRIBUTES security)
{
    if (m_hThread || !m_pfnThreadProc) return FALSE;
    m_inheritedWindow = ApplicationsMainWindow(); // read here, before the new thread runs
    // The thread starts suspended, so that it finds the members below set.
    unsigned id = 0;
    const uintptr_t handle =
        _beginthreadex(security, stackSize, &Entry, this, CREATE_SUSPENDED, &id);
    if (handle == 0) return FALSE;
    m_hThread = reinterpret_cast<HANDLE>(handle);
    m_nThreadID = id;
    // The object may be gone from here on, because the thread deletes it.
    if (!(flags & CREATE_SUSPENDED)) ::ResumeThread(reinterpret_cast<HANDLE>(handle));
    return TRUE;
}

unsigned __stdcall CWinThread::Entry(void* thread)
{
    auto* const self = static_cast<CWinThread*>(thread);
    const UINT code = self->RunProcedure();
    if (self->m_bAutoDelete) delete self;
    return code;
}

UINT CWinThread::RunProcedure()
{
    framework::ThreadState::Current().thread = this;
    UINT code;
    {
        const InheritedMainWindow window(*this, m_inheritedWindow);
        code = m_pfnThreadProc(m_pThreadParams);
    }
    framework::ThreadState::Current().thread = nullptr;
    return code;
}

CWnd* CWinThread::GetMainWnd()
{
    return m_pMainWnd;
}

BOOL CWinThread::InitInstance()
{
    return FALSE;
}

int CWinThread::Run()
{
    bool idle = true;
    LONG idleCount = 0;
    for (;;) {
        while (idle && !PeekMessageW(&m_msgCur, nullptr, 0, 0, PM_NOREMOVE))
            idle = OnIdle(idleCount++) != FALSE;
        if (!PumpMessage()) return ExitInstance();
        if (!IsIdleMessage(&m_msgCur)) continue;
        idle = true;
        idleCount = 0;
    }
}

int CWinThread::ExitInstance()
{
    return static_cast<int>(m_msgCur.wParam);
}

BOOL CWinThread::OnIdle(LONG)
{
    auto& state = framework::ThreadState::Current();
    if (state.proceduresActive == 0) {
        CWnd::DeleteTempMap();
        CDC::DeleteTempMap();
        CGdiObject::DeleteTempMap();
    }
    return FALSE;
}

BOOL CWinThread::IsIdleMessage(MSG* message)
{
    constexpr UINT caretBlinks = 0x0118;
    if (message->message == WM_MOUSEMOVE || message->message == WM_NCMOUSEMOVE)
        return !IsRedundantMouseMove(*message);
    return message->message != WM_PAINT && message->message != caretBlinks;
}

// True when the mouse is where the last move of the same kind left it.
bool CWinThread::IsRedundantMouseMove(const MSG& message)
{
    const bool stays = message.message == m_lastMouseMove &&
                       message.pt.x == m_lastMousePosition.x &&
                       message.pt.y == m_lastMousePosition.y;
    m_lastMouseMove = message.message;
    m_lastMousePosition = message.pt;
    return stays;
}

BOOL CWinThread::PreTranslateMessage(MSG* message)
{
    const HWND main = m_pMainWnd ? m_pMainWnd->m_hWnd : nullptr;
    for (HWND window = message->hwnd; window; window = GetParent(window)) {
        CWnd* const object = CWnd::FromHandlePermanent(window);
        if (object && object->PreTranslateMessage(message)) return TRUE;
        if (window == main) break;
    }
    return FALSE;
}

BOOL CWinThread::PumpMessage()
{
    // -1 reports an error, so waiting again would not help.
    if (GetMessageW(&m_msgCur, nullptr, 0, 0) <= 0) return FALSE;
    MSG message = m_msgCur; // a nested loop overwrites the member
    if (!PreTranslateMessage(&message)) {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
    return TRUE;
}

CWinThread* AfxBeginThread(AFX_THREADPROC procedure, LPVOID parameter, int priority, UINT stackSize,
                           DWORD flags, LPSECURITY_ATTRIBUTES security)
{
    auto thread = std::make_unique<CWinThread>(procedure, parameter);
    if (!thread->CreateThread(flags | CREATE_SUSPENDED, stackSize, security)) return nullptr;
    CWinThread* const started = thread.release(); // the object deletes itself when the thread ends
    if (priority != THREAD_PRIORITY_NORMAL) started->SetThreadPriority(priority);
    if (!(flags & CREATE_SUSPENDED)) started->ResumeThread();
    return started;
}

CWinThread* AfxGetThread()
{
    const auto* const state = framework::ThreadState::Existing();
    if (state && state->thread) return state->thread;
    CWinApp* const application = AfxGetApp();
    return application && application->m_nThreadID == GetCurrentThreadId() ? application : nullptr;
}

CWnd* AfxGetMainWnd()
{
    CWinThread* const thread = AfxGetThread();
    return thread ? thread->GetMainWnd() : nullptr;
}
