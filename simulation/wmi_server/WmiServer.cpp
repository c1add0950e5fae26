#include "wmi_server/WmiServer.h"

#include "WmiObjects.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace simulation {

namespace {

// Makes locators. COM owns it; the server outlives its registration.
class LocatorFactory final : public IClassFactory
{
public:
    explicit LocatorFactory(WmiState& state) : m_state(state) {}

    STDMETHODIMP QueryInterface(REFIID iid, void** object) override
    {
        *object = iid == IID_IUnknown || iid == IID_IClassFactory ? this : nullptr;
        if (!*object) return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return static_cast<ULONG>(++m_references); }
    ULONG STDMETHODCALLTYPE Release() override
    {
        const LONG references = --m_references;
        if (references == 0) delete this;
        return static_cast<ULONG>(references);
    }
    STDMETHODIMP CreateInstance(IUnknown*, REFIID iid, void** object) override
    {
        *object = nullptr;
        if (const auto failure = m_state.Note(WmiCall::createLocator, L"CreateLocator"))
            return *failure;
        auto* const locator = new WmiLocator(m_state);
        const HRESULT result = locator->QueryInterface(iid, object);
        locator->Release();
        return result;
    }
    STDMETHODIMP LockServer(BOOL) override { return S_OK; }

private:
    ~LocatorFactory() = default;

    WmiState& m_state;
    std::atomic<LONG> m_references = 1;
};

} // namespace

std::optional<HRESULT> WmiState::Note(WmiCall call, const std::wstring& line)
{
    const std::lock_guard lock(mutex);
    if (keepsReleased) calls.push_back(line);
    ++callCount;
    if (std::ranges::find(throwing, call) != throwing.end()) throw 1;
    return PlannedResult(call);
}

std::optional<HRESULT> WmiState::PlannedResult(WmiCall call)
{
    if (failingCall > 0 && --failingCall == 0) return failingResult;
    for (PlannedFailure& failure : failures) {
        if (failure.call != call) continue;
        if (failure.number == 0) return failure.result;
        if (failure.number > 0 && --failure.number == 0) {
            failure.number = -1; // this failure has happened
            return failure.result;
        }
    }
    return std::nullopt;
}

void WmiState::Keep(WmiUnknown* object)
{
    const std::lock_guard lock(mutex);
    objects.emplace_back(object);
}

void WmiState::Drop(WmiUnknown* object)
{
    const std::lock_guard lock(mutex);
    if (keepsReleased) return;
    std::erase_if(objects, [&](const auto& kept) { return kept.get() == object; });
}

WmiServer::WmiServer() : m_state(std::make_unique<WmiState>())
{
    auto* const factory = new LocatorFactory(*m_state);
    const HRESULT result = CoRegisterClassObject(CLSID_WbemLocator, factory, CLSCTX_INPROC_SERVER,
                                                 REGCLS_MULTIPLEUSE, &m_registration);
    factory->Release();
    if (FAILED(result)) throw std::runtime_error("cannot register the management service");
}

WmiServer::~WmiServer()
{
    CoRevokeClassObject(m_registration);
}

void WmiServer::SetAnswer(const std::wstring& query, std::vector<WmiProperties> objects)
{
    const std::lock_guard lock(m_state->mutex);
    m_state->answers[query] = std::move(objects);
}

void WmiServer::SetDelay(std::chrono::milliseconds delay)
{
    m_state->delay = delay;
}

void WmiServer::Fail(WmiCall call, HRESULT result, int number)
{
    const std::lock_guard lock(m_state->mutex);
    m_state->failures.push_back({call, number, result});
}

void WmiServer::FailCall(int number, HRESULT result)
{
    const std::lock_guard lock(m_state->mutex);
    m_state->failingCall = number;
    m_state->failingResult = result;
}

void WmiServer::Throw(WmiCall call)
{
    const std::lock_guard lock(m_state->mutex);
    m_state->throwing.push_back(call);
}

void WmiServer::SucceedAgain()
{
    const std::lock_guard lock(m_state->mutex);
    m_state->failures.clear();
    m_state->failingCall = 0;
    m_state->throwing.clear();
}

void WmiServer::OnCancel(std::function<void()> action)
{
    m_state->onCancel = std::move(action);
}

void WmiServer::SetSinkReferences(SinkReferences references)
{
    m_state->sinkReferences = references;
}

std::vector<IWbemObjectSink*> WmiServer::Sinks() const
{
    const std::lock_guard lock(m_state->mutex);
    std::vector<IWbemObjectSink*> sinks;
    for (const Subscription& subscription : m_state->subscriptions)
        sinks.push_back(subscription.sink);
    return sinks;
}

IWbemClassObject* WmiServer::MakeObject(const WmiProperties& properties)
{
    return new WmiClassObject(*m_state, properties);
}

int WmiServer::Deliver(const std::vector<WmiProperties>& events)
{
    std::vector<IWbemObjectSink*> sinks;
    {
        const std::lock_guard lock(m_state->mutex);
        for (const Subscription& subscription : m_state->subscriptions)
            if (events.front().at(L"__CLASS") == WmiValue(subscription.eventClass)) {
                subscription.sink->AddRef();
                sinks.push_back(subscription.sink);
            }
    }
    for (IWbemObjectSink* const sink : sinks) {
        std::vector<IWbemClassObject*> batch;
        for (const WmiProperties& event : events)
            batch.push_back(MakeObject(event));
        sink->Indicate(static_cast<LONG>(batch.size()), batch.data());
        for (IWbemClassObject* const object : batch)
            object->Release();
        sink->Release();
    }
    return static_cast<int>(sinks.size());
}

std::vector<ULONG> WmiServer::ReleaseSinks()
{
    std::vector<Subscription> left;
    {
        const std::lock_guard lock(m_state->mutex);
        left = std::exchange(m_state->subscriptions, {});
    }
    std::vector<ULONG> counts;
    for (const Subscription& subscription : left)
        if (subscription.isCounted) counts.push_back(subscription.sink->Release());
    return counts;
}

std::vector<ULONG> WmiServer::SinkCounts() const
{
    const std::lock_guard lock(m_state->mutex);
    return m_state->sinkCounts;
}

std::vector<std::wstring> WmiServer::TakeCalls()
{
    const std::lock_guard lock(m_state->mutex);
    return std::exchange(m_state->calls, {});
}

int WmiServer::CallCount() const
{
    const std::lock_guard lock(m_state->mutex);
    return m_state->callCount;
}

int WmiServer::LiveObjects() const
{
    const std::lock_guard lock(m_state->mutex);
    return static_cast<int>(std::ranges::count_if(
        m_state->objects, [](const auto& object) { return object->IsLive(); }));
}

int WmiServer::Misuses() const
{
    return m_state->misuses;
}

void WmiServer::ForgetReleased()
{
    const std::lock_guard lock(m_state->mutex);
    m_state->keepsReleased = false;
}

} // namespace simulation
