#include "WmiObjects.h"

#include <algorithm>
#include <utility>

namespace simulation {

namespace {

void Store(std::monostate, VARIANT& value)
{
    value.vt = VT_NULL;
}

void Store(const std::wstring& text, VARIANT& value)
{
    value.vt = VT_BSTR;
    value.bstrVal = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
}

void Store(std::int32_t number, VARIANT& value)
{
    value.vt = VT_I4;
    value.lVal = number;
}

void Store(std::int16_t number, VARIANT& value)
{
    value.vt = VT_I2;
    value.iVal = number;
}

std::wstring Quoted(const wchar_t* text)
{
    return text ? L"\"" + std::wstring(text) + L"\"" : L"null";
}

std::wstring Shown(const void* pointer)
{
    return pointer ? L"given" : L"null";
}

std::wstring Shown(DWORD number)
{
    return std::to_wstring(number);
}

template <class... Parts>
std::wstring Line(const wchar_t* name, const Parts&... parts)
{
    std::wstring line = name;
    ((line += L" " + parts), ...);
    return line;
}

// The class of a notification query, which is the query's last word.
std::wstring EventClass(const std::wstring& query)
{
    return query.substr(query.find_last_of(L' ') + 1);
}

} // namespace

WmiClassObject::WmiClassObject(WmiState& state, WmiProperties properties)
    : ComObject(state), m_properties(std::move(properties))
{
}

HRESULT WmiClassObject::Get(LPCWSTR name, LONG, VARIANT* value, CIMTYPE*, LONG*)
{
    if (const auto failure = Note(WmiCall::get, std::wstring(L"Get ") + name)) return *failure;
    const auto found = m_properties.find(name);
    if (found == m_properties.end()) return static_cast<HRESULT>(WBEM_E_NOT_FOUND);
    std::visit([&](const auto& property) { Store(property, *value); }, found->second);
    return WBEM_S_NO_ERROR;
}

WmiEnumerator::WmiEnumerator(WmiState& state, std::vector<WmiProperties> objects)
    : ComObject(state), m_objects(std::move(objects))
{
}

HRESULT WmiEnumerator::Next(LONG timeout, ULONG count, IWbemClassObject** objects, ULONG* returned)
{
    const auto failure =
        Note(WmiCall::next, L"Next " + std::to_wstring(timeout) + L" " + std::to_wstring(count));
    if (m_state.delay.count() > 0) Sleep(static_cast<DWORD>(m_state.delay.count()));
    *returned = 0;
    *objects = nullptr;
    if (failure) return *failure;
    if (m_next == m_objects.size()) return WBEM_S_FALSE;
    *objects = new WmiClassObject(m_state, m_objects[m_next++]);
    *returned = 1;
    return WBEM_S_NO_ERROR;
}

HRESULT WmiLocator::ConnectServer(const BSTR name, const BSTR user, const BSTR password,
                                  const BSTR locale, LONG flags, const BSTR authority,
                                  IWbemContext* context, IWbemServices** services)
{
    *services = nullptr;
    if (const auto failure = Note(
            WmiCall::connectServer,
            Line(L"ConnectServer", Quoted(name), Quoted(user), Quoted(password), Quoted(locale),
                 Shown(static_cast<DWORD>(flags)), Quoted(authority), Shown(context))))
        return *failure;
    *services = new WmiServices(m_state);
    return WBEM_S_NO_ERROR;
}

HRESULT WmiServices::SetBlanket(IUnknown*, DWORD authentication, DWORD authorisation, OLECHAR* name,
                                DWORD level, DWORD impersonation, void* identity,
                                DWORD capabilities)
{
    return Note(WmiCall::setBlanket,
                Line(L"SetBlanket", Shown(authentication), Shown(authorisation), Quoted(name),
                     Shown(level), Shown(impersonation), Shown(identity), Shown(capabilities)))
        .value_or(S_OK);
}

HRESULT WmiServices::ExecQuery(const BSTR language, const BSTR query, LONG flags,
                               IWbemContext* context, IEnumWbemClassObject** objects)
{
    *objects = nullptr;
    if (const auto failure =
            Note(WmiCall::execQuery, Line(L"ExecQuery", Quoted(language), Quoted(query),
                                          Shown(static_cast<DWORD>(flags)), Shown(context))))
        return *failure;
    std::vector<WmiProperties> answer;
    {
        const std::lock_guard lock(m_state.mutex);
        const auto found = m_state.answers.find(query);
        if (found != m_state.answers.end()) answer = found->second;
    }
    *objects = new WmiEnumerator(m_state, answer);
    return WBEM_S_NO_ERROR;
}

HRESULT WmiServices::ExecNotificationQueryAsync(const BSTR language, const BSTR query, LONG flags,
                                                IWbemContext* context, IWbemObjectSink* sink)
{
    const auto failure =
        Note(WmiCall::subscribe, Line(L"Subscribe", Quoted(language), Quoted(query),
                                      Shown(static_cast<DWORD>(flags)), Shown(context)));
    TouchSink(sink);
    if (failure) return *failure;
    Subscribe(query, sink);
    return WBEM_S_NO_ERROR;
}

// Even a service that refuses takes a reference during the call.
void WmiServices::TouchSink(IWbemObjectSink* sink)
{
    if (m_state.sinkReferences != SinkReferences::dropped) return;
    sink->AddRef();
    sink->Release();
}

void WmiServices::Subscribe(const std::wstring& query, IWbemObjectSink* sink)
{
    const bool isCounted = m_state.sinkReferences == SinkReferences::untilCancelled ||
                           m_state.sinkReferences == SinkReferences::untilReleased;
    const ULONG references = isCounted ? sink->AddRef() : 0;
    const std::lock_guard lock(m_state.mutex);
    if (isCounted) m_state.sinkCounts.push_back(references);
    m_state.subscriptions.push_back({EventClass(query), sink, isCounted});
}

HRESULT WmiServices::CancelAsyncCall(IWbemObjectSink* sink)
{
    const auto failure = Note(WmiCall::cancel, Line(L"CancelAsyncCall", Shown(sink)));
    if (failure) return *failure;
    if (m_state.onCancel) m_state.onCancel();
    if (m_state.sinkReferences == SinkReferences::untilReleased) return WBEM_S_NO_ERROR;
    std::vector<Subscription> cancelled;
    {
        const std::lock_guard lock(m_state.mutex);
        const auto ended = std::ranges::stable_partition(
            m_state.subscriptions, [&](const Subscription& s) { return s.sink != sink; });
        cancelled.assign(ended.begin(), ended.end());
        m_state.subscriptions.erase(ended.begin(), ended.end());
    }
    for (const Subscription& subscription : cancelled)
        if (subscription.isCounted) sink->Release();
    return WBEM_S_NO_ERROR;
}

} // namespace simulation
