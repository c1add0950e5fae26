#pragma once

#include <windows.h>
#include <wbemidl.h>

// The interfaces of the management service, reduced to what the library calls.
namespace simulation {

// Declares a method that the clients here never call.
#define REFUSED(method)                                                                            \
    STDMETHODIMP method override                                                                   \
    {                                                                                              \
        return E_NOTIMPL;                                                                          \
    }

// An IWbemClassObject that refuses every method which its clients here never call.
class ReducedClassObject : public IWbemClassObject
{
public:
    using Interface = IWbemClassObject;

    REFUSED(GetQualifierSet(IWbemQualifierSet**));
    REFUSED(Put(LPCWSTR, LONG, VARIANT*, CIMTYPE));
    REFUSED(Delete(LPCWSTR));
    REFUSED(GetNames(LPCWSTR, LONG, VARIANT*, SAFEARRAY**));
    REFUSED(BeginEnumeration(LONG));
    REFUSED(Next(LONG, BSTR*, VARIANT*, CIMTYPE*, LONG*));
    REFUSED(EndEnumeration());
    REFUSED(GetPropertyQualifierSet(LPCWSTR, IWbemQualifierSet**));
    REFUSED(Clone(IWbemClassObject**));
    REFUSED(GetObjectText(LONG, BSTR*));
    REFUSED(SpawnDerivedClass(LONG, IWbemClassObject**));
    REFUSED(SpawnInstance(LONG, IWbemClassObject**));
    REFUSED(CompareTo(LONG, IWbemClassObject*));
    REFUSED(GetPropertyOrigin(LPCWSTR, BSTR*));
    REFUSED(InheritsFrom(LPCWSTR));
    REFUSED(GetMethod(LPCWSTR, LONG, IWbemClassObject**, IWbemClassObject**));
    REFUSED(PutMethod(LPCWSTR, LONG, IWbemClassObject*, IWbemClassObject*));
    REFUSED(DeleteMethod(LPCWSTR));
    REFUSED(BeginMethodEnumeration(LONG));
    REFUSED(NextMethod(LONG, BSTR*, IWbemClassObject**, IWbemClassObject**));
    REFUSED(EndMethodEnumeration());
    REFUSED(GetMethodQualifierSet(LPCWSTR, IWbemQualifierSet**));
    REFUSED(GetMethodOrigin(LPCWSTR, BSTR*));
};

// An IEnumWbemClassObject that refuses every method which its clients here never call.
class ReducedEnumerator : public IEnumWbemClassObject
{
public:
    using Interface = IEnumWbemClassObject;

    REFUSED(Reset());
    REFUSED(NextAsync(ULONG, IWbemObjectSink*));
    REFUSED(Clone(IEnumWbemClassObject**));
    REFUSED(Skip(LONG, ULONG));
};

// An IWbemServices that refuses every method which its clients here never call.
class ReducedServices : public IWbemServices
{
public:
    using Interface = IWbemServices;

    REFUSED(OpenNamespace(const BSTR, LONG, IWbemContext*, IWbemServices**, IWbemCallResult**));
    REFUSED(QueryObjectSink(LONG, IWbemObjectSink**));
    REFUSED(GetObject(const BSTR, LONG, IWbemContext*, IWbemClassObject**, IWbemCallResult**));
    REFUSED(GetObjectAsync(const BSTR, LONG, IWbemContext*, IWbemObjectSink*));
    REFUSED(PutClass(IWbemClassObject*, LONG, IWbemContext*, IWbemCallResult**));
    REFUSED(PutClassAsync(IWbemClassObject*, LONG, IWbemContext*, IWbemObjectSink*));
    REFUSED(DeleteClass(const BSTR, LONG, IWbemContext*, IWbemCallResult**));
    REFUSED(DeleteClassAsync(const BSTR, LONG, IWbemContext*, IWbemObjectSink*));
    REFUSED(CreateClassEnum(const BSTR, LONG, IWbemContext*, IEnumWbemClassObject**));
    REFUSED(CreateClassEnumAsync(const BSTR, LONG, IWbemContext*, IWbemObjectSink*));
    REFUSED(PutInstance(IWbemClassObject*, LONG, IWbemContext*, IWbemCallResult**));
    REFUSED(PutInstanceAsync(IWbemClassObject*, LONG, IWbemContext*, IWbemObjectSink*));
    REFUSED(DeleteInstance(const BSTR, LONG, IWbemContext*, IWbemCallResult**));
    REFUSED(DeleteInstanceAsync(const BSTR, LONG, IWbemContext*, IWbemObjectSink*));
    REFUSED(CreateInstanceEnum(const BSTR, LONG, IWbemContext*, IEnumWbemClassObject**));
    REFUSED(CreateInstanceEnumAsync(const BSTR, LONG, IWbemContext*, IWbemObjectSink*));
    REFUSED(ExecQueryAsync(const BSTR, const BSTR, LONG, IWbemContext*, IWbemObjectSink*));
    REFUSED(ExecNotificationQuery(const BSTR, const BSTR, LONG, IWbemContext*,
                                  IEnumWbemClassObject**));
    REFUSED(ExecMethod(const BSTR, const BSTR, LONG, IWbemContext*, IWbemClassObject*,
                       IWbemClassObject**, IWbemCallResult**));
    REFUSED(ExecMethodAsync(const BSTR, const BSTR, LONG, IWbemContext*, IWbemClassObject*,
                            IWbemObjectSink*));
};

#undef REFUSED

} // namespace simulation
