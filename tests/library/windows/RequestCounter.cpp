#include "RequestCounter.h"

#include <windows.h>

#include <atomic>
#include <mutex>
#include <set>

namespace {

constexpr UINT showBalloon = 0x83E8;

std::mutex s_mutex;
std::set<const void*> s_alive;
int s_posted = 0;
std::atomic<bool> s_refusing = false;
BOOL WINAPI CountingPostMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message != showBalloon) return PostMessageW(window, message, wParam, lParam);
    const auto* const request = reinterpret_cast<const void*>(wParam);
    {
        const std::lock_guard lock(s_mutex);
        ++s_posted;
        s_alive.insert(request);
    }
    return !s_refusing && PostMessageW(window, message, wParam, lParam);
}

void CountingDelete(void* block, std::size_t size)
{
    {
        const std::lock_guard lock(s_mutex);
        s_alive.erase(block);
    }
    ::operator delete(block, size);
}

// The compiler's name for the sized operator delete.
#ifdef _WIN64
constexpr const char* sizedDelete = "_ZdlPvy";
#else
constexpr const char* sizedDelete = "_ZdlPvj";
#endif

} // namespace

// The hooks see the library's calls only, not this program's own.
RequestCounter::RequestCounter()
    : m_post(L"Utils_Statics.dll", "PostMessageW", reinterpret_cast<void*>(&CountingPostMessage)),
      m_delete(L"Utils_Statics.dll", sizedDelete, reinterpret_cast<void*>(&CountingDelete))
{
    const std::lock_guard lock(s_mutex);
    s_alive.clear();
    s_posted = 0;
    s_refusing = false;
}

RequestCounter::~RequestCounter() = default;

int RequestCounter::Posted() const
{
    const std::lock_guard lock(s_mutex);
    return s_posted;
}

int RequestCounter::Alive() const
{
    const std::lock_guard lock(s_mutex);
    return static_cast<int>(s_alive.size());
}

void RequestCounter::Refuse()
{
    s_refusing = true;
}
