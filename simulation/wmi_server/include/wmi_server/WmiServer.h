#pragma once

#include <windows.h>

#include <wbemidl.h>

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <variant>
#include <vector>

// The platform's management service (WMI), played inside this process. Wine's has no classes of
// network drivers, and no machine loses and finds its adapters on demand.
namespace simulation {

// A property's value: null, a text, a 32-bit number, or a 16-bit one.
using WmiValue = std::variant<std::monostate, std::wstring, std::int32_t, std::int16_t>;

// One object's properties by name. An event names its class in "__CLASS".
using WmiProperties = std::map<std::wstring, WmiValue>;

// What clients call.
enum class WmiCall
{
    createLocator,
    connectServer,
    setBlanket,
    execQuery,
    next,
    get,
    subscribe, // ExecNotificationQueryAsync
    cancel,    // CancelAsyncCall
};

// What happens to the references to a subscribed sink.
enum class SinkReferences
{
    untilCancelled, // one for each subscription, released by CancelAsyncCall
    untilReleased,  // the same, but kept until ReleaseSinks
    notTaken,
    dropped, // taken for the call only, as by a service that refuses
};

struct WmiState;

// While it lives, CoCreateInstance of WbemLocator hands out its locator in process. COM is
// initialised on the thread that makes it; all threads that use it belong to the same apartment.
// Its objects stay in memory when they are released, so that a later use is found out and counted.
class WmiServer
{
public:
    // Throws std::runtime_error when the class cannot be registered.
    WmiServer();
    ~WmiServer();
    WmiServer(const WmiServer&) = delete;
    WmiServer& operator=(const WmiServer&) = delete;

    // ---- What it answers. May be changed at any time, on any thread.

    // The objects that a query gives, compared by its whole text; without an answer none.
    void SetAnswer(const std::wstring& query, std::vector<WmiProperties> objects);
    // How long IEnumWbemClassObject::Next takes.
    void SetDelay(std::chrono::milliseconds delay);
    // The calls of this kind fail: the `number`-th from now on, or all for 0. With S_OK it succeeds
    // but stores no object.
    void Fail(WmiCall call, HRESULT result, int number = 0);
    // The `number`-th call of any kind from now on fails.
    void FailCall(int number, HRESULT result);
    // The calls of this kind throw an int.
    void Throw(WmiCall call);
    // No call fails or throws any more.
    void SucceedAgain();
    // Called inside CancelAsyncCall, before the sink is released.
    void OnCancel(std::function<void()> action);

    // ---- Its events

    void SetSinkReferences(SinkReferences references);
    // Hands the events, as one batch, to the sinks that are subscribed to the class of the first,
    // on the calling thread. The number of sinks.
    int Deliver(const std::vector<WmiProperties>& events);
    // An object of its own, with one reference.
    IWbemClassObject* MakeObject(const WmiProperties& properties);
    // The sinks that are referred to, one entry for each subscription.
    std::vector<IWbemObjectSink*> Sinks() const;
    // Releases all that are left; the counts that Release answered.
    std::vector<ULONG> ReleaseSinks();
    // What AddRef has answered, in order.
    std::vector<ULONG> SinkCounts() const;

    // ---- What it has seen

    // The calls with their arguments, a line each, since the last time.
    std::vector<std::wstring> TakeCalls();
    // How many calls there were in all.
    int CallCount() const;
    // Its objects to which somebody refers.
    int LiveObjects() const;
    // Calls of objects that nobody referred to any more.
    int Misuses() const;
    // From now on released objects are destroyed, for long runs. Misuse is not found out then.
    void ForgetReleased();

private:
    std::unique_ptr<WmiState> m_state;
    DWORD m_registration = 0;
};

} // namespace simulation
