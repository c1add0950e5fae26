#include "Utils_Statics/QuerySink.h"

#include "network/NetworkDrivers.h"

#include <Utils_Statics/CStatusNetwork.h>
#include <Utils_Statics/CStatusWireless.h>

using namespace utils_statics;

namespace {

// The number of changes that events of all sinks are making now. After it has gone down, nothing of
// the sink is touched, so the sink may be destroyed then.
constinit std::atomic<int> s_changesUnderWay = 0;

class ChangeUnderWay
{
public:
    ChangeUnderWay() noexcept { ++s_changesUnderWay; }
    ~ChangeUnderWay()
    {
        if (--s_changesUnderWay == 0) s_changesUnderWay.notify_all();
    }
    ChangeUnderWay(const ChangeUnderWay&) = delete;
    ChangeUnderWay& operator=(const ChangeUnderWay&) = delete;
};

} // namespace

QuerySink::~QuerySink() = default;

HRESULT QuerySink::QueryInterface(REFIID iid, void** object)
{
    if (!object) return E_POINTER;
    *object = nullptr;
    if (iid != IID_IUnknown && iid != IID_IWbemObjectSink) return E_NOINTERFACE;
    *object = static_cast<IWbemObjectSink*>(this);
    AddRef();
    return S_OK;
}

// A count below zero is the platform's mistake; AddRef and Release then leave the holds as they
// are.
ULONG QuerySink::AddRef()
{
    const LONG references = InterlockedIncrement(&m_references);
    if (references > 0) Hold();
    return static_cast<ULONG>(references);
}

ULONG QuerySink::Release()
{
    const LONG references = InterlockedDecrement(&m_references);
    if (references >= 0) LetGo();
    return static_cast<ULONG>(references);
}

HRESULT QuerySink::Indicate(LONG count, IWbemClassObject** events)
{
    try {
        for (LONG i = 0; events && i < count; ++i)
            if (events[i] && HandleEvent(*events[i]) == Outcome::stop) break;
    } catch (...) { // the platform's thread must not see an exception
    }
    return WBEM_S_NO_ERROR;
}

HRESULT QuerySink::SetStatus(LONG, HRESULT, BSTR, IWbemClassObject*)
{
    return WBEM_S_NO_ERROR;
}

void QuerySink::Hold() noexcept
{
    InterlockedIncrement(&m_holds);
}

void QuerySink::LetGo() noexcept
{
    if (InterlockedDecrement(&m_holds) == 0) delete this;
}

void QuerySink::Close() noexcept
{
    m_isClosed = true;
    for (int count = s_changesUnderWay; count != 0; count = s_changesUnderWay)
        s_changesUnderWay.wait(count);
}

template <class Change>
QuerySink::Outcome QuerySink::Apply(const Change& change)
{
    const ChangeUnderWay underWay; // made before the flag is read, so that Close can wait for it
    if (!m_isClosed) change();
    return Outcome::stop;
}

QuerySink::Outcome QuerySink::HandleEvent(IWbemClassObject& event)
{
    const TextProperty type(event, L"__CLASS");
    if (!type) return Outcome::stop;
    const std::wstring_view name = type.View();
    if (name == L"MSNdis_StatusMediaConnect") return ShowConnection(event, true);
    if (name == L"MSNdis_StatusMediaDisconnect") return ShowConnection(event, false);
    if (name == L"MSNdis_StatusLinkSpeedChange") return Apply([] { CStatusWireless::update(); });
    if (name == L"MSNdis_NotifyAdapterRemoval") return ShowAvailability(event, false);
    if (name == L"MSNdis_NotifyAdapterArrival") return ShowAvailability(event, true);
    return Outcome::goOn;
}

QuerySink::Outcome QuerySink::ShowConnection(IWbemClassObject& event, bool connected)
{
    const TextProperty name = InstanceName(event);
    if (IsWirelessName(name)) return Apply([&] { CStatusWireless::setConnected(connected); });
    if (IsWiredName(name)) return Apply([&] { CStatusNetwork::setState(connected); });
    return Outcome::goOn;
}

QuerySink::Outcome QuerySink::ShowAvailability(IWbemClassObject& event, bool available)
{
    if (!IsWirelessName(InstanceName(event))) return Outcome::goOn;
    return Apply([&] { CStatusWireless::setAvailable(available); });
}
