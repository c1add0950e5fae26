#pragma once

// Turns a message's two parameters into the arguments of a handler. Only the macros of afxmsg_.h
// use this.

#include <framework/CCmdTarget.h>
#include <framework/FromHandle.h>

#include <atltypes.h>

#include <type_traits>

/// The notification code of a command that does not come from a control.
inline constexpr int CN_COMMAND = 0;

namespace framework {

template <class Method>
struct OwnerOf;
template <class Result, class Owner, class... Arguments>
struct OwnerOf<Result (Owner::*)(Arguments...)>
{
    using type = Owner;
};

/// Calls the method with the arguments; a method without a result gives 0.
template <auto Method, class... Arguments>
LRESULT Call(CCmdTarget* target, Arguments... arguments)
{
    using Owner = typename OwnerOf<decltype(Method)>::type;
    auto* const object = static_cast<Owner*>(target);
    if constexpr (std::is_void_v<decltype((object->*Method)(arguments...))>)
        return (object->*Method)(arguments...), 0;
    else
        return static_cast<LRESULT>((object->*Method)(arguments...));
}

inline UINT LowUnsigned(LPARAM value)
{
    return LOWORD(value);
}

inline UINT HighUnsigned(LPARAM value)
{
    return HIWORD(value);
}

template <auto Method>
LRESULT OnMessage(CCmdTarget* target, WPARAM wParam, LPARAM lParam)
{
    return Call<Method>(target, wParam, lParam);
}

template <auto Method>
LRESULT OnNothing(CCmdTarget* target, WPARAM, LPARAM)
{
    return Call<Method>(target);
}

template <auto Method>
LRESULT OnCreateStruct(CCmdTarget* target, WPARAM, LPARAM lParam)
{
    return Call<Method>(target, reinterpret_cast<LPCREATESTRUCT>(lParam));
}

template <auto Method>
LRESULT OnDeviceContext(CCmdTarget* target, WPARAM wParam, LPARAM)
{
    return Call<Method>(target, DeviceContextFromHandle(reinterpret_cast<HDC>(wParam)));
}

template <auto Method>
LRESULT OnSizes(CCmdTarget* target, WPARAM wParam, LPARAM lParam)
{
    return Call<Method>(target, static_cast<UINT>(wParam), static_cast<int>(LowUnsigned(lParam)),
                        static_cast<int>(HighUnsigned(lParam)));
}

template <auto Method>
LRESULT OnPosition(CCmdTarget* target, WPARAM, LPARAM lParam)
{
    const CPoint at(lParam);
    return Call<Method>(target, static_cast<int>(at.x), static_cast<int>(at.y));
}

template <auto Method>
LRESULT OnIdentifier(CCmdTarget* target, WPARAM wParam, LPARAM)
{
    return Call<Method>(target, static_cast<UINT_PTR>(wParam));
}

template <auto Method>
LRESULT OnFlag(CCmdTarget* target, WPARAM wParam, LPARAM)
{
    return Call<Method>(target, static_cast<BOOL>(wParam));
}

template <auto Method>
LRESULT OnFlagAndState(CCmdTarget* target, WPARAM wParam, LPARAM lParam)
{
    return Call<Method>(target, static_cast<BOOL>(wParam), static_cast<UINT>(lParam));
}

template <auto Method>
LRESULT OnOtherWindow(CCmdTarget* target, WPARAM wParam, LPARAM)
{
    return Call<Method>(target, WindowFromHandle(reinterpret_cast<HWND>(wParam)));
}

template <auto Method>
LRESULT OnOtherWindowInLParam(CCmdTarget* target, WPARAM, LPARAM lParam)
{
    return Call<Method>(target, WindowFromHandle(reinterpret_cast<HWND>(lParam)));
}

template <auto Method>
LRESULT OnHit(CCmdTarget* target, WPARAM wParam, LPARAM lParam)
{
    // The hit-test code is the low word unchanged: HTERROR arrives as 0xFFFE.
    return Call<Method>(target, WindowFromHandle(reinterpret_cast<HWND>(wParam)),
                        LowUnsigned(lParam), HighUnsigned(lParam));
}

template <auto Method>
LRESULT OnKey(CCmdTarget* target, WPARAM wParam, LPARAM lParam)
{
    return Call<Method>(target, static_cast<UINT>(wParam), LowUnsigned(lParam),
                        HighUnsigned(lParam));
}

template <auto Method>
LRESULT OnMouse(CCmdTarget* target, WPARAM wParam, LPARAM lParam)
{
    return Call<Method>(target, static_cast<UINT>(wParam), CPoint(lParam));
}

template <auto Method>
LRESULT OnWheel(CCmdTarget* target, WPARAM wParam, LPARAM lParam)
{
    return Call<Method>(target, static_cast<UINT>(LOWORD(wParam)),
                        static_cast<short>(HIWORD(wParam)), CPoint(lParam));
}

} // namespace framework
