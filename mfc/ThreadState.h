#pragma once

#include <afxwin.h>

#include <map>
#include <memory>
#include <typeindex>
#include <unordered_map>

class WindowCreation;

namespace framework {

// The framework's state of one thread. It is made on first use and deleted when the thread ends or
// the DLL is unloaded.
class ThreadState
{
public:
    // The calling thread's state.
    static ThreadState& Current();
    // The calling thread's state; null when it has none yet.
    static ThreadState* Existing() noexcept;
    static void DeleteCurrent() noexcept;
    static void DeleteAll() noexcept;

    ThreadState();
    ~ThreadState();
    ThreadState(const ThreadState&) = delete;
    ThreadState& operator=(const ThreadState&) = delete;

    CWinThread* thread = nullptr;       // set on threads that AfxBeginThread started
    WindowCreation* creation = nullptr; // the creation under way
    const MSG* message = nullptr;       // the message being handled
    int proceduresActive = 0;           // window procedures of the framework on the stack
    CString className;                  // the last result of AfxRegisterWndClass

    // Temporary objects, none of which owns its handle. GDI handles of different kinds may have the
    // same value over time, so the key contains the type.
    std::unordered_map<HWND, std::unique_ptr<CWnd>> windows;
    std::unordered_map<HDC, std::unique_ptr<CDC>> contexts;
    std::map<std::pair<HGDIOBJ, std::type_index>, std::unique_ptr<CGdiObject>> gdiObjects;

    void DeleteTemporaryWindows();
    void DeleteTemporaryContexts();
    void DeleteTemporaryGdiObjects();

private:
    ThreadState* m_next = nullptr; // chain of all states
};

} // namespace framework
