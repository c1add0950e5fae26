#pragma once

#include "ComObject.h"
#include "ReducedInterfaces.h"

namespace simulation {

// An instance or an event.
class WmiClassObject final : public ComObject<ReducedClassObject>
{
public:
    WmiClassObject(WmiState& state, WmiProperties properties);

    HRESULT STDMETHODCALLTYPE Get(LPCWSTR name, LONG flags, VARIANT* value, CIMTYPE* type,
                                  LONG* flavor) override;

private:
    WmiProperties m_properties;
};

// The objects that a query returns, one after the other.
class WmiEnumerator final : public ComObject<ReducedEnumerator>
{
public:
    WmiEnumerator(WmiState& state, std::vector<WmiProperties> objects);

    HRESULT STDMETHODCALLTYPE Next(LONG timeout, ULONG count, IWbemClassObject** objects,
                                   ULONG* returned) override;

private:
    std::vector<WmiProperties> m_objects;
    std::size_t m_next = 0;
};

} // namespace simulation
