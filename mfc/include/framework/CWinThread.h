#pragma once

#include <framework/CCmdTarget.h>

class CWnd;

/// The function of a worker thread; its result is the thread's exit code. It must not throw.
using AFX_THREADPROC = UINT(__cdecl*)(LPVOID parameter);

/// A thread: either one that AfxBeginThread started, or the application's first (CWinApp).
class MFC_API CWinThread : public CCmdTarget
{
public:
    CWinThread() = default;
    /// Describes a worker thread; CreateThread starts it.
    CWinThread(AFX_THREADPROC procedure, LPVOID parameter);
    /// Closes the handle but does not end the thread.
    ~CWinThread() override;

    /// The thread's main window; borrowed. When it is destroyed, the thread's message loop ends.
    CWnd* m_pMainWnd = nullptr;
    /// Deletes the object when its thread ends (the default of AfxBeginThread).
    BOOL m_bAutoDelete = TRUE;
    /// The platform's handle, which this object closes, and the number.
    HANDLE m_hThread = nullptr;
    DWORD m_nThreadID = 0;

    /// Starts the thread; FALSE when the platform refuses. `flags` may be CREATE_SUSPENDED.
    BOOL CreateThread(DWORD flags = 0, UINT stackSize = 0,
                      LPSECURITY_ATTRIBUTES security = nullptr);
    /// The platform's functions of these names, for this thread.
    DWORD ResumeThread() { return ::ResumeThread(m_hThread); }
    DWORD SuspendThread() { return ::SuspendThread(m_hThread); }
    int GetThreadPriority() { return ::GetThreadPriority(m_hThread); }
    BOOL SetThreadPriority(int priority) { return ::SetThreadPriority(m_hThread, priority); }

    /// m_pMainWnd by default.
    virtual CWnd* GetMainWnd();
    /// The thread's first work; FALSE, as by default, ends it without a message loop.
    virtual BOOL InitInstance();
    /// Runs the message loop: dispatches until WM_QUIT and calls OnIdle whenever the queue is
    /// empty. Returns ExitInstance().
    virtual int Run();
    /// Returns the exit code; by default that of the WM_QUIT message.
    virtual int ExitInstance();
    /// FALSE when no more idle time is needed. The default deletes the thread's temporary objects
    /// (those that the FromHandle functions make) unless a window procedure of the framework is
    /// active further up the stack.
    virtual BOOL OnIdle(LONG count);
    /// FALSE for messages after which OnIdle need not be called again: a mouse move to the mouse's
    /// own place, painting, the blinking of the caret.
    virtual BOOL IsIdleMessage(MSG* message);
    /// TRUE when the message is handled and must not be dispatched. The default asks the message's
    /// window and its parents (CWnd::PreTranslateMessage).
    virtual BOOL PreTranslateMessage(MSG* message);
    /// Waits for one message and dispatches it; FALSE for WM_QUIT.
    virtual BOOL PumpMessage();

protected:
    /// The message that PumpMessage fetched last.
    MSG m_msgCur = {};

private:
    bool IsRedundantMouseMove(const MSG& message);

    static unsigned __stdcall Entry(void* thread);
    UINT RunProcedure();

    AFX_THREADPROC m_pfnThreadProc = nullptr;
    LPVOID m_pThreadParams = nullptr;
    UINT m_lastMouseMove = 0; // WM_MOUSEMOVE or WM_NCMOUSEMOVE
    POINT m_lastMousePosition = {};
    HWND m_inheritedWindow = nullptr; // the application's main window when the thread was started
};

/// Starts a worker thread; null when the platform refuses. The object deletes itself when the
/// thread ends, so the pointer may be used only while the thread is known to run: start it
/// suspended to keep it (m_bAutoDelete = FALSE, the caller deletes) or to duplicate its handle. The
/// thread's main window is that of the application.
MFC_API CWinThread* AfxBeginThread(AFX_THREADPROC procedure, LPVOID parameter,
                                   int priority = THREAD_PRIORITY_NORMAL, UINT stackSize = 0,
                                   DWORD flags = 0, LPSECURITY_ATTRIBUTES security = nullptr);

/// The calling thread's object; null on a thread that is not the framework's.
MFC_API CWinThread* AfxGetThread();

/// The main window of the calling thread. On the application's first thread it is the application's
/// object. On a thread that AfxBeginThread started, it is the thread's own object for the same
/// window. Null when there is none.
MFC_API CWnd* AfxGetMainWnd();
