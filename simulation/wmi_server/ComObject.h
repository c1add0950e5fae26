#pragma once

#include "WmiState.h"

namespace simulation {

// The platform's interface that a class implements: the one that it names, or itself.
template <class T>
struct Offered
{
    using Type = T;
};
template <class T>
requires requires
{
    typename T::Interface;
}
struct Offered<T>
{
    using Type = typename T::Interface;
};

// An object of the server with these interfaces. It is made with `new` and has one reference.
template <class First, class... Others>
class ComObject : public First, public Others..., public WmiUnknown
{
public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override
    {
        CheckLive();
        *object = nullptr;
        if (iid == __uuidof(IUnknown)) *object = static_cast<First*>(this);
        OfferAs<First>(iid, object);
        (OfferAs<Others>(iid, object), ...);
        if (!*object) return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override
    {
        CheckLive();
        return static_cast<ULONG>(++m_references);
    }
    ULONG STDMETHODCALLTYPE Release() override
    {
        CheckLive();
        const LONG references = --m_references;
        if (references == 0) m_state.Drop(this);
        return static_cast<ULONG>(references);
    }

protected:
    explicit ComObject(WmiState& state) : m_state(state) { state.Keep(this); }

    std::optional<HRESULT> Note(WmiCall call, const std::wstring& line) const
    {
        CheckLive();
        return m_state.Note(call, line);
    }
    void CheckLive() const
    {
        if (!IsLive()) m_state.NoteMisuse();
    }

    WmiState& m_state;

private:
    template <class Interface>
    void OfferAs(REFIID iid, void** object)
    {
        if (iid == __uuidof(typename Offered<Interface>::Type))
            *object = static_cast<Interface*>(this);
    }
};

} // namespace simulation
