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

// The platform's management service (WMI), simulated inside this process. Wine's has no classes of
// network drivers, and no machine loses and regains its adapters on demand.
namespace simulation {

// A property's value: null, a text, a 32-bit number, or a 16-bit one.
using WmiValue = std::variant<std::monostate, std::wstring, std::int32_t, std::int16_t>;

// One object's properties by name. An event names its class in "__CLASS".
using WmiProperties = std::map<std::wstring, WmiValue>;

// The calls of clients.
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

// The treatment of the references to a subscribed sink.
enum class SinkReferences
{
    untilCancelled, // one for each subscription, released by CancelAsyncCall
    untilReleased,  // the same, but kept until ReleaseSinks
    notTaken,
    dropped, // taken during the call only, as by a service that refuses
};

struct WmiState;

// While it lives, CoCreateInstance of WbemLocator creates its locator in process. COM must be
// initialised on the thread that makes it, and all threads that use it must belong to the same
// apartment. Its objects stay in memory when they are released, so that later uses are detected and
// counted.
class WmiServer
{
public:
    // Throws std::runtime_error when the class cannot be registered.
    WmiServer();
    ~WmiServer();
    WmiServer(const WmiServer&) = delete;
    WmiServer& operator=(const WmiServer&) = delete;

    // ---- Its answers. They may be changed at any time, on any thread.

    // Sets the objects that a query returns; the whole text of the query is compared. A query
    // without an answer returns none.
    void SetAnswer(const std::wstring& query, std::vector<WmiProperties> objects);
    // Sets the time that IEnumWbemClassObject::Next takes.
    void SetDelay(std::chrono::milliseconds delay);
    // Makes calls of this kind fail: the `number`-th from now on, or all for 0. With S_OK the call
    // succeeds but stores no object.
    void Fail(WmiCall call, HRESULT result, int number = 0);
    // Makes the `number`-th call of any kind from now on fail.
    void FailCall(int number, HRESULT result);
    // Makes the calls of this kind throw an int.
    void Throw(WmiCall call);
    // Makes all calls succeed again.
    void SucceedAgain();
    // Sets an action that is called inside CancelAsyncCall, before the sink is released.
    void OnCancel(std::function<void()> action);

    // ---- Its events

    void SetSinkReferences(SinkReferences references);
    // Delivers the events as one batch, on the calling thread, to the sinks that are subscribed to
    // the first event's class. Returns the number of sinks.
    int Deliver(const std::vector<WmiProperties>& events);
    // Makes an independent object with one reference.
    IWbemClassObject* MakeObject(const WmiProperties& properties);
    // The sinks that are still referenced, one entry for each subscription.
    std::vector<IWbemObjectSink*> Sinks() const;
    // Releases all sinks that are left. Returns the counts from Release.
    std::vector<ULONG> ReleaseSinks();
    // The results of AddRef, in order.
    std::vector<ULONG> SinkCounts() const;

    // ---- Its records

    // The calls since the last TakeCalls, one line each with its arguments.
    std::vector<std::wstring> TakeCalls();
    // The number of all calls.
    int CallCount() const;
    // The number of its objects that are still referenced.
    int LiveObjects() const;
    // The number of calls of objects that were no longer referenced.
    int Misuses() const;
    // Destroys released objects from now on, for long runs. Misuse is then not detected.
    void ForgetReleased();

private:
    std::unique_ptr<WmiState> m_state;
    DWORD m_registration = 0;
};

} // namespace simulation
