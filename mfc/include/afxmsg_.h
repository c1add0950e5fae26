#pragma once

// Message maps. In a class:                DECLARE_MESSAGE_MAP()
// In one source of it:                     BEGIN_MESSAGE_MAP(CView, CWnd)
//                                              ON_WM_PAINT()
//                                              ON_MESSAGE(WM_APP + 1, OnRefresh)
//                                          END_MESSAGE_MAP()
// A map is constant data; the handlers' types are checked when it is compiled.

#include <framework/CCmdTarget.h>
#include <framework/MessageHandlers.h>

/// Marks a handler for the reader; it stands for nothing.
#define afx_msg

/// Declares the map in a class. Members that follow are protected or as they are declared.
#define DECLARE_MESSAGE_MAP()                                                                      \
protected:                                                                                         \
    static const AFX_MSGMAP* GetThisMessageMap();                                                  \
    const AFX_MSGMAP* GetMessageMap() const override;

/// Begins the map in one source of the class; entries follow.
#define BEGIN_MESSAGE_MAP(theClass, baseClass)                                                     \
    const AFX_MSGMAP* theClass::GetMessageMap() const                                              \
    {                                                                                              \
        return GetThisMessageMap();                                                                \
    }                                                                                              \
    const AFX_MSGMAP* theClass::GetThisMessageMap()                                                \
    {                                                                                              \
        using ThisClass [[maybe_unused]] = theClass;                                               \
        using BaseClass = baseClass;                                                               \
        static constexpr AFX_MSGMAP_ENTRY entries[] = {

/// Ends the map.
#define END_MESSAGE_MAP()                                                                          \
    {                                                                                              \
        0, 0, 0, 0, nullptr                                                                        \
    }                                                                                              \
    }                                                                                              \
    ;                                                                                              \
    static constexpr AFX_MSGMAP map = {[] { return BaseClass::GetThisMessageMap(); }, entries};    \
    return &map;                                                                                   \
    }

/// LRESULT member(WPARAM, LPARAM), for any message
#define ON_MESSAGE(message, member) {message, 0, 0, 0, &framework::OnMessage<&ThisClass::member>},
/// void member()
#define ON_COMMAND(id, member)                                                                     \
    {WM_COMMAND, CN_COMMAND, id, id, &framework::OnNothing<&ThisClass::member>},
/// void member(), for a notification of a control
#define ON_CONTROL(code, id, member)                                                               \
    {WM_COMMAND, code, id, id, &framework::OnNothing<&ThisClass::member>},
#define ON_BN_CLICKED(id, member) ON_CONTROL(BN_CLICKED, id, member)
#define ON_CBN_SELCHANGE(id, member) ON_CONTROL(CBN_SELCHANGE, id, member)

/// The handler of each of these has a fixed name, that of the member function of CWnd which is the
/// default.
#define FRAMEWORK_ON_WM(message, kind, member)                                                     \
    {message, 0, 0, 0, &framework::kind<&ThisClass::member>},
#define ON_WM_CREATE() FRAMEWORK_ON_WM(WM_CREATE, OnCreateStruct, OnCreate)
#define ON_WM_DESTROY() FRAMEWORK_ON_WM(WM_DESTROY, OnNothing, OnDestroy)
#define ON_WM_NCDESTROY() FRAMEWORK_ON_WM(WM_NCDESTROY, OnNothing, OnNcDestroy)
#define ON_WM_CLOSE() FRAMEWORK_ON_WM(WM_CLOSE, OnNothing, OnClose)
#define ON_WM_PAINT() FRAMEWORK_ON_WM(WM_PAINT, OnNothing, OnPaint)
#define ON_WM_ERASEBKGND() FRAMEWORK_ON_WM(WM_ERASEBKGND, OnDeviceContext, OnEraseBkgnd)
#define ON_WM_SIZE() FRAMEWORK_ON_WM(WM_SIZE, OnSizes, OnSize)
#define ON_WM_MOVE() FRAMEWORK_ON_WM(WM_MOVE, OnPosition, OnMove)
#define ON_WM_TIMER() FRAMEWORK_ON_WM(WM_TIMER, OnIdentifier, OnTimer)
#define ON_WM_SHOWWINDOW() FRAMEWORK_ON_WM(WM_SHOWWINDOW, OnFlagAndState, OnShowWindow)
#define ON_WM_ENABLE() FRAMEWORK_ON_WM(WM_ENABLE, OnFlag, OnEnable)
#define ON_WM_SETFOCUS() FRAMEWORK_ON_WM(WM_SETFOCUS, OnOtherWindow, OnSetFocus)
#define ON_WM_KILLFOCUS() FRAMEWORK_ON_WM(WM_KILLFOCUS, OnOtherWindow, OnKillFocus)
#define ON_WM_SETCURSOR() FRAMEWORK_ON_WM(WM_SETCURSOR, OnHit, OnSetCursor)
#define ON_WM_CAPTURECHANGED()                                                                     \
    FRAMEWORK_ON_WM(WM_CAPTURECHANGED, OnOtherWindowInLParam, OnCaptureChanged)
#define ON_WM_KEYDOWN() FRAMEWORK_ON_WM(WM_KEYDOWN, OnKey, OnKeyDown)
#define ON_WM_KEYUP() FRAMEWORK_ON_WM(WM_KEYUP, OnKey, OnKeyUp)
#define ON_WM_CHAR() FRAMEWORK_ON_WM(WM_CHAR, OnKey, OnChar)
#define ON_WM_MOUSEMOVE() FRAMEWORK_ON_WM(WM_MOUSEMOVE, OnMouse, OnMouseMove)
#define ON_WM_MOUSEWHEEL() FRAMEWORK_ON_WM(WM_MOUSEWHEEL, OnWheel, OnMouseWheel)
#define ON_WM_LBUTTONDOWN() FRAMEWORK_ON_WM(WM_LBUTTONDOWN, OnMouse, OnLButtonDown)
#define ON_WM_LBUTTONUP() FRAMEWORK_ON_WM(WM_LBUTTONUP, OnMouse, OnLButtonUp)
#define ON_WM_LBUTTONDBLCLK() FRAMEWORK_ON_WM(WM_LBUTTONDBLCLK, OnMouse, OnLButtonDblClk)
#define ON_WM_RBUTTONDOWN() FRAMEWORK_ON_WM(WM_RBUTTONDOWN, OnMouse, OnRButtonDown)
#define ON_WM_RBUTTONUP() FRAMEWORK_ON_WM(WM_RBUTTONUP, OnMouse, OnRButtonUp)
#define ON_WM_MBUTTONDOWN() FRAMEWORK_ON_WM(WM_MBUTTONDOWN, OnMouse, OnMButtonDown)
#define ON_WM_MBUTTONUP() FRAMEWORK_ON_WM(WM_MBUTTONUP, OnMouse, OnMButtonUp)
