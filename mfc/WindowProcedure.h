#pragma once

#include "PermanentMap.h"

#include <afxwin.h>

// The way between the platform's windows and the objects: the map of attached windows, the hook
// that attaches an object to the window it creates, and the window procedure that routes messages
// to the object.
class WindowProcedure
{
public:
    static framework::PermanentMap<HWND, CWnd>& Windows();
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam,
                                      LPARAM lParam) noexcept;
    // Puts the procedure in front of the window's own.
    static void Install(CWnd& object);
    // Takes it away, if it is still the foremost one.
    static void Remove(CWnd& object);

    // Calls the object's PostNcDestroy.
    static void TellGone(CWnd& object) { object.PostNcDestroy(); }

private:
    static LRESULT Route(CWnd& object, const MSG& message);
};
