#include <base/Encoding.h>
#include <test_support/Imports.h>
#include <test_support/LockOrder.h>

#include <pthread.h>

#include <algorithm>
#include <cstdio>
#include <mutex>
#include <set>
#include <string_view>
#include <utility>

namespace test_support {

namespace {

using Pair = std::pair<const void*, const void*>; // a lock that is held, and one that is taken then

std::mutex s_mutex;
std::set<Pair> s_pairs;
std::string s_circles; // describes those among the pairs

// The locks that this thread holds. Nothing is destroyed at its end, when locks are still taken.
struct Held
{
    const void* locks[64];
    std::size_t count;
};
thread_local constinit Held s_held = {};

void WINAPI AcquireExclusive(SRWLOCK* lock)
{
    LockOrder::WaitsFor(lock, __builtin_return_address(0));
    AcquireSRWLockExclusive(lock);
}

void WINAPI AcquireShared(SRWLOCK* lock)
{
    LockOrder::WaitsFor(lock, __builtin_return_address(0));
    AcquireSRWLockShared(lock);
}

BOOLEAN WINAPI TryAcquireExclusive(SRWLOCK* lock)
{
    const BOOLEAN isTaken = TryAcquireSRWLockExclusive(lock);
    if (isTaken) LockOrder::Has(lock);
    return isTaken;
}

void WINAPI ReleaseExclusive(SRWLOCK* lock)
{
    LockOrder::Releases(lock);
    ReleaseSRWLockExclusive(lock);
}

void WINAPI ReleaseShared(SRWLOCK* lock)
{
    LockOrder::Releases(lock);
    ReleaseSRWLockShared(lock);
}

BOOL WINAPI SleepOnCondition(CONDITION_VARIABLE* condition, SRWLOCK* lock, DWORD milliseconds,
                             ULONG flags)
{
    LockOrder::Releases(lock);
    const BOOL isWoken = SleepConditionVariableSRW(condition, lock, milliseconds, flags);
    LockOrder::WaitsFor(lock, __builtin_return_address(0));
    return isWoken;
}

// A thread may enter a section again, which it does not wait for then.
void WINAPI Enter(CRITICAL_SECTION* section)
{
    const auto* const end = s_held.locks + s_held.count;
    if (std::find<const void* const*>(s_held.locks, end, section) != end)
        LockOrder::Has(section);
    else
        LockOrder::WaitsFor(section, __builtin_return_address(0));
    EnterCriticalSection(section);
}

void WINAPI Leave(CRITICAL_SECTION* section)
{
    LockOrder::Releases(section);
    LeaveCriticalSection(section);
}

int LockMutex(pthread_mutex_t* mutex)
{
    LockOrder::WaitsFor(mutex, __builtin_return_address(0));
    return pthread_mutex_lock(mutex);
}

int UnlockMutex(pthread_mutex_t* mutex)
{
    LockOrder::Releases(mutex);
    return pthread_mutex_unlock(mutex);
}

struct Hook
{
    std::string_view function;
    void* replacement;
};

template <class Function>
Hook MakeHook(std::string_view function, Function* replacement)
{
    return {function, reinterpret_cast<void*>(replacement)};
}

const Hook hooks[] = {
    MakeHook("AcquireSRWLockExclusive", AcquireExclusive),
    MakeHook("AcquireSRWLockShared", AcquireShared),
    MakeHook("TryAcquireSRWLockExclusive", TryAcquireExclusive),
    MakeHook("ReleaseSRWLockExclusive", ReleaseExclusive),
    MakeHook("ReleaseSRWLockShared", ReleaseShared),
    MakeHook("SleepConditionVariableSRW", SleepOnCondition),
    MakeHook("EnterCriticalSection", Enter),
    MakeHook("LeaveCriticalSection", Leave),
    MakeHook("pthread_mutex_lock", LockMutex),
    MakeHook("pthread_mutex_unlock", UnlockMutex),
};

// The module of an address and the offset there; in a form that `addr2line` can do with.
std::string NameOf(const void* address)
{
    HMODULE module = nullptr;
    wchar_t path[MAX_PATH] = {};
    if (GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS |
                               GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                           static_cast<LPCWSTR>(address), &module))
        GetModuleFileNameW(module, path, MAX_PATH);
    const std::string name = base::Utf8FromWide(path);
    char offset[32];
    std::snprintf(offset, sizeof offset, "+%tx",
                  static_cast<const char*>(address) - reinterpret_cast<const char*>(module));
    return name.substr(name.rfind('\\') + 1) + offset;
}

// True when the first lock is held, by way of others, while the second one is taken.
bool LeadsTo(const void* from, const void* to, std::set<const void*>& seen)
{
    if (from == to) return true;
    if (!seen.insert(from).second) return false;
    return std::ranges::any_of(s_pairs, [&](const Pair& pair) {
        return pair.first == from && LeadsTo(pair.second, to, seen);
    });
}

// Tells of a circle at once, because threads may be about to wait for each other.
void Add(const Pair& pair, const void* place)
{
    const std::lock_guard guard(s_mutex);
    std::set<const void*> seen;
    if (!s_pairs.insert(pair).second || !LeadsTo(pair.second, pair.first, seen)) return;
    const std::string circle = NameOf(pair.first) + " is held where " + NameOf(pair.second) +
                               " is taken, before " + NameOf(place) + '\n';
    std::fputs(circle.c_str(), stderr);
    std::fflush(stderr);
    s_circles += circle;
}

} // namespace

LockOrder::LockOrder()
{
    s_pairs.clear();
    s_circles.clear();
    for (const wchar_t* const module : libraryModules)
        AnyImport(GetModuleHandleW(module), [&](const char*, const char* function, void** slot) {
            const auto* const hook = std::ranges::find(hooks, function, &Hook::function);
            if (hook == std::end(hooks)) return false;
            m_originals.emplace(slot, *slot);
            SetImport(slot, hook->replacement);
            return false;
        });
}

LockOrder::~LockOrder()
{
    for (const auto& [slot, original] : m_originals)
        SetImport(slot, original);
}

void LockOrder::WaitsFor(const void* lock, const void* place)
{
    for (std::size_t i = 0; i < s_held.count; ++i)
        Add({s_held.locks[i], lock}, place);
    Has(lock);
}

void LockOrder::Has(const void* lock)
{
    if (s_held.count < std::size(s_held.locks)) s_held.locks[s_held.count++] = lock;
}

void LockOrder::Releases(const void* lock)
{
    auto** const end = s_held.locks + s_held.count;
    auto** const place = std::find(s_held.locks, end, lock);
    if (place == end) return; // it was taken before the hooks
    std::copy(place + 1, end, place);
    --s_held.count;
}

std::size_t LockOrder::Pairs()
{
    const std::lock_guard guard(s_mutex);
    return s_pairs.size();
}

std::string LockOrder::Circles()
{
    const std::lock_guard guard(s_mutex);
    return s_circles;
}

} // namespace test_support
