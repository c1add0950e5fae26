#include "LogHook.h"

#include "qor_utils/SlimLock.h"

#include <memory>
#include <mutex>

namespace qor_utils {
namespace {

struct Entry
{
    zelLogger::Hook hook;
    void* userData;
    int running = 0; // calls under way
};

constinit SlimLock lock; // guards the entry in force and the running count of every entry
constinit CONDITION_VARIABLE callEnded = CONDITION_VARIABLE_INIT;
constinit thread_local bool insideHook = false;

std::shared_ptr<Entry>& entryInForce()
{
    static std::shared_ptr<Entry> entry;
    return entry;
}

// One call of the hook under way: counted, so that the hook can be waited for, and marked for its
// thread.
class Call
{
public:
    Call()
    {
        const std::scoped_lock guard(lock);
        m_entry = entryInForce();
        if (m_entry) ++m_entry->running;
        insideHook = true;
    }
    ~Call()
    {
        insideHook = false;
        if (!m_entry) return;
        const std::scoped_lock guard(lock);
        --m_entry->running;
        WakeAllConditionVariable(&callEnded);
    }
    Call(const Call&) = delete;
    Call& operator=(const Call&) = delete;

    void operator()(const zelLogger::Message& message) const
    {
        if (m_entry) m_entry->hook(message, m_entry->userData);
    }

private:
    std::shared_ptr<Entry> m_entry;
};

} // namespace

void exchangeLogHook(zelLogger::Hook hook, void* userData)
{
    auto entry = hook ? std::make_shared<Entry>(hook, userData) : nullptr;
    const std::scoped_lock guard(lock);
    entryInForce().swap(entry);
    while (entry && entry->running > 0 && !insideHook)
        SleepConditionVariableSRW(&callEnded, lock.native(), INFINITE, 0);
}

void callLogHook(const zelLogger::Message& message) noexcept
{
    if (insideHook) return;
    try {
        const Call call;
        call(message);
    } catch (...) { // a hook must not bring down the code that only wanted to log
    }
}

} // namespace qor_utils
