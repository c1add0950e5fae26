// An application with a window: the framework's application object, a message map, the pointer's
// messages passed on to the library, and a repaint whenever the state changes. Here a timer ends
// it.
#include <Utils_Statics/IStateChangeConsumer.h>
#include <Utils_Statics/MouseCapture.h>

#include <afxwin.h>

#include <cstdio>

enum StateChangeType : std::int32_t
{
    stateFrozen = 1
};

namespace {

class ExamWindow : public CWnd, private IStateChangeConsumer
{
    void OnLButtonDown(UINT keys, CPoint point) // further pointer messages are passed on likewise
    {
        MouseCapture::HandleMouse(WM_LBUTTONDOWN, keys, point);
        StateChangeSignal(stateFrozen, 1, 0);
    }
    void OnStateChange(StateChangeType, unsigned int frozen, long) override
    {
        std::printf("%s: paint anew\n", frozen ? "frozen" : "live");
        Invalidate(FALSE);
    }
    void OnTimer(UINT_PTR) { DestroyWindow(); } // the main window's end ends the application

    DECLARE_MESSAGE_MAP()
};

BEGIN_MESSAGE_MAP(ExamWindow, CWnd)
    ON_WM_LBUTTONDOWN()
    ON_WM_TIMER()
END_MESSAGE_MAP()

class ExamApplication : public CWinApp
{
    BOOL InitInstance() override
    {
        const CRect area(0, 0, 640, 480);
        m_pMainWnd = &m_window;
        if (!m_window.CreateEx(0, AfxRegisterWndClass(0), L"Exam", WS_OVERLAPPEDWINDOW, area,
                               nullptr, 0))
            return FALSE;
        MouseCapture::Initialize(area, InputPointer);
        m_window.ShowWindow(m_nCmdShow);
        m_window.SendMessage(WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(10, 10)); // as the user would
        m_window.SetTimer(1, 100, nullptr);
        return TRUE;
    }

    ExamWindow m_window;
};

ExamApplication s_application; // a static object, as the framework expects

} // namespace

int main()
{
    return AfxWinMain(GetModuleHandleW(nullptr), nullptr, GetCommandLineW(), SW_SHOW);
}
