#pragma once

#include "wmi_server/WmiServer.h"

#include <atomic>
#include <memory>
#include <mutex>
#include <optional>

namespace simulation {

// The base of the server's objects, which allows a list of all of them.
class WmiUnknown
{
public:
    virtual ~WmiUnknown() = default;
    bool IsLive() const { return m_references > 0; }

protected:
    std::atomic<LONG> m_references = 1;
};

struct PlannedFailure
{
    WmiCall call;
    int number; // counts down; 0 means every call
    HRESULT result;
};

struct Subscription
{
    std::wstring eventClass;
    IWbemObjectSink* sink;
    bool isCounted;
};

// The state that the server and its objects share.
struct WmiState
{
    // Records a call. The result is the one to return when the call is to fail, else nothing.
    std::optional<HRESULT> Note(WmiCall call, const std::wstring& line);
    // Records a call of an object that is not live.
    void NoteMisuse() { ++misuses; }
    void Keep(WmiUnknown* object);
    // Takes back an object whose last reference was released.
    void Drop(WmiUnknown* object);

    mutable std::mutex mutex;
    std::map<std::wstring, std::vector<WmiProperties>> answers;
    std::chrono::milliseconds delay{0};
    std::vector<PlannedFailure> failures;
    int failingCall = 0; // counts down; 0 means none
    HRESULT failingResult = S_OK;
    std::vector<WmiCall> throwing;
    std::function<void()> onCancel;
    SinkReferences sinkReferences = SinkReferences::untilCancelled;
    std::vector<Subscription> subscriptions;
    std::vector<ULONG> sinkCounts;
    std::vector<std::wstring> calls;
    int callCount = 0;
    std::atomic<int> misuses = 0;
    bool keepsReleased = true;
    std::vector<std::unique_ptr<WmiUnknown>> objects;

private:
    std::optional<HRESULT> PlannedResult(WmiCall call);
};

} // namespace simulation
