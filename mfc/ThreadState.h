#pragma once

#include <afxwin.h>

#include <map>
#include <memory>
#include <typeindex>
#include <unordered_map>

class WindowCreation;

namespace framework {

// What the framework keeps for one thread. Made on first use, deleted when the thread ends or the
// DLL is unloaded.
class ThreadState
{
public:
    // The calling thread's.
    static ThreadState& Current();
    // The calling thread's, null when it has none yet.
    static ThreadState* Existing() noexcept;
    static void DeleteCurrent() noexcept;
    static void DeleteAll() noexcept;

    ThreadState();
    ~ThreadState();
    ThreadState(const ThreadState&) = delete;
    ThreadState& operator=(const ThreadState&) = delete;

    CWinThread* thread = nullptr;       // set on threads that AfxBeginThread started
    WindowCreation* creation = nullptr; // of the window that is being created
    const MSG* message = nullptr;       // being handled
    int proceduresActive = 0;           // window procedures of the framework on the stack
    CString className;                  // of AfxRegisterWndClass

    // Temporary objects, none of which owns its handle. GDI handles of different kinds may share a
    // value over time, hence the type in the key.
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
