#include "ThreadState.h"

#include <base/SlimLock.h>

#include <mutex>

namespace framework {

namespace {

constinit base::SlimLock s_chainMutex;
constinit ThreadState* s_chain = nullptr;

// A slot of thread-local storage. thread_local objects with destructors would keep the DLL loaded
// until the thread ends.
DWORD Slot()
{
    static const DWORD slot = TlsAlloc();
    return slot;
}

} // namespace

ThreadState& ThreadState::Current()
{
    if (ThreadState* const existing = Existing()) return *existing;
    auto* const created = new ThreadState; // released by DeleteCurrent or DeleteAll
    TlsSetValue(Slot(), created);
    return *created;
}

ThreadState* ThreadState::Existing() noexcept
{
    return static_cast<ThreadState*>(TlsGetValue(Slot()));
}

void ThreadState::DeleteCurrent() noexcept
{
    delete Existing();
    TlsSetValue(Slot(), nullptr);
}

void ThreadState::DeleteAll() noexcept
{
    while (s_chain)
        delete s_chain;
    TlsFree(Slot());
}

ThreadState::ThreadState()
{
    const std::lock_guard lock(s_chainMutex);
    m_next = s_chain;
    s_chain = this;
}

ThreadState::~ThreadState()
{
    DeleteTemporaryWindows();
    DeleteTemporaryContexts();
    DeleteTemporaryGdiObjects();
    const std::lock_guard lock(s_chainMutex);
    ThreadState** link = &s_chain;
    while (*link != this)
        link = &(*link)->m_next;
    *link = m_next;
}

// Temporary objects do not own their handles. The handles are removed first, so that no destructor
// destroys or deletes them.
void ThreadState::DeleteTemporaryWindows()
{
    for (auto& [handle, window] : windows)
        window->m_hWnd = nullptr;
    windows.clear();
}

void ThreadState::DeleteTemporaryContexts()
{
    for (auto& [handle, context] : contexts)
        context->m_hDC = context->m_hAttribDC = nullptr;
    contexts.clear();
}

void ThreadState::DeleteTemporaryGdiObjects()
{
    for (auto& [handle, object] : gdiObjects)
        object->m_hObject = nullptr;
    gdiObjects.clear();
}

} // namespace framework
