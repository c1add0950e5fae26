#pragma once

#include "PermanentMap.h"

#include <afxwin.h>

// Connects the platform's windows with the objects: by the map of attached windows, the hook that
// attaches an object to the window it creates, and the window procedure that routes messages to the
// object.
class WindowProcedure
{
public:
    static framework::PermanentMap<HWND, CWnd>& Windows();
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam,
                                      LPARAM lParam) noexcept;
    // Installs the procedure in front of the window's own.
    static void Install(CWnd& object);
    // Removes the procedure if it is still the first one.
    static void Remove(CWnd& object);

    // Calls the object's PostNcDestroy.
    static void TellGone(CWnd& object) { object.PostNcDestroy(); }

private:
    static LRESULT Route(CWnd& object, const MSG& message);
};
