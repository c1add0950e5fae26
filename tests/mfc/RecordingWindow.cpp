#include "RecordingWindow.h"

#include <algorithm>

BEGIN_MESSAGE_MAP(RecordingWindow, CWnd)
    ON_WM_CREATE()
    ON_WM_DESTROY()
    ON_WM_PAINT()
    ON_WM_ERASEBKGND()
    ON_WM_SIZE()
    ON_WM_MOVE()
    ON_WM_TIMER()
    ON_WM_CLOSE()
    ON_WM_SHOWWINDOW()
    ON_WM_ENABLE()
    ON_WM_SETFOCUS()
    ON_WM_KILLFOCUS()
    ON_WM_SETCURSOR()
    ON_WM_CAPTURECHANGED()
    ON_WM_KEYDOWN()
    ON_WM_KEYUP()
    ON_WM_CHAR()
    ON_WM_MOUSEMOVE()
    ON_WM_MOUSEWHEEL()
    ON_WM_LBUTTONDOWN()
    ON_WM_LBUTTONUP()
    ON_MESSAGE(askMessage, OnAsk)
    ON_MESSAGE(throwMessage, OnThrow)
    ON_COMMAND(100, OnBaseCommand)
    ON_COMMAND(101, OnChosen)
    ON_CBN_SELCHANGE(7, OnSelection)
END_MESSAGE_MAP()

bool Contains(const Calls& calls, const std::wstring& call)
{
    return std::find(calls.begin(), calls.end(), call) != calls.end();
}
