#pragma once

#include "wmi_server/WmiServer.h"

#include <atomic>
#include <memory>
#include <mutex>
#include <optional>

namespace simulation {

// Base of the server's objects, for the list of all of them.
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
    int number; // counts down; 0: every call
    HRESULT result;
};

struct Subscription
{
    std::wstring eventClass;
    IWbemObjectSink* sink;
    bool isCounted;
};

// All that the server and its objects share.
struct WmiState
{
    // Notes a call and answers what it is to answer when it is to fail.
    std::optional<HRESULT> Note(WmiCall call, const std::wstring& line);
    // Notes a call of an object that is not live.
    void NoteMisuse() { ++misuses; }
    void Keep(WmiUnknown* object);
    // An object that was released for the last time.
    void Drop(WmiUnknown* object);

    mutable std::mutex mutex;
    std::map<std::wstring, std::vector<WmiProperties>> answers;
    std::chrono::milliseconds delay{0};
    std::vector<PlannedFailure> failures;
    int failingCall = 0; // counts down; 0: none
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
