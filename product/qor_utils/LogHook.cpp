#include "LogTargets.h"

#include <base/SlimLock.h>

#include <memory>
#include <mutex>

namespace qor_utils {
namespace {

struct Entry
{
    LogHook hook;
    void* userData;
    int running = 0; // calls in progress
};

constinit base::SlimLock s_lock; // guards the entry in force and the running count of every entry
constinit CONDITION_VARIABLE s_callEnded = CONDITION_VARIABLE_INIT;
constinit thread_local bool s_insideHook = false;

std::shared_ptr<Entry>& EntryInForce()
{
    static std::shared_ptr<Entry> entry;
    return entry;
}

// One call of the hook. It is counted, so that SetLogHook can wait for it, and marks its thread as
// inside the hook.
class Call
{
public:
    Call()
    {
        const std::scoped_lock guard(s_lock);
        m_entry = EntryInForce();
        if (m_entry) ++m_entry->running;
        s_insideHook = true;
    }
    ~Call()
    {
        s_insideHook = false;
        if (!m_entry) return;
        const std::scoped_lock guard(s_lock);
        --m_entry->running;
        WakeAllConditionVariable(&s_callEnded);
    }
    Call(const Call&) = delete;
    Call& operator=(const Call&) = delete;

    void operator()(const LogMessage& message) const
    {
        if (m_entry) m_entry->hook(message, m_entry->userData);
    }

private:
    std::shared_ptr<Entry> m_entry;
};

} // namespace

void SetLogHook(LogHook hook, void* userData)
{
    auto entry = hook ? std::make_shared<Entry>(Entry{hook, userData}) : nullptr;
    const std::scoped_lock guard(s_lock);
    EntryInForce().swap(entry);
    while (entry && entry->running > 0 && !s_insideHook)
        SleepConditionVariableSRW(&s_callEnded, s_lock.Native(), INFINITE, 0);
}

void CallLogHook(const LogMessage& message) noexcept
{
    if (s_insideHook) return;
    try {
        const Call call;
        call(message);
    } catch (...) { // a hook's failure must not reach the code that logs
    }
}

} // namespace qor_utils
