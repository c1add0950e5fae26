#pragma once

#include <afxwin.h>

#include <functional>

// The program's application object.
extern CWinApp theApplication;

namespace test_support {

// A plain window of a class with any name and size, owned by another window or by none. Its
// messages go to a function of the test.
class ExamWindow
{
public:
    // Returns true when the message was handled.
    using Handler =
        std::function<bool(ExamWindow& window, UINT message, WPARAM wParam, LPARAM lParam)>;

    explicit ExamWindow(HWND owner = nullptr, const wchar_t* className = L"ExamTestWindow",
                        DWORD exStyle = 0)
    {
        Register(className);
        m_window = CreateWindowExW(exStyle, className, L"exam test", WS_POPUP, 40, 40, 300, 200,
                                   owner, nullptr, GetModuleHandleW(nullptr), this);
        ShowWindow(m_window, SW_SHOWNA); // an activated window would wait for a window manager
        SetActiveWindow(m_window);
    }
    ~ExamWindow() { DestroyWindow(m_window); }
    ExamWindow(const ExamWindow&) = delete;
    ExamWindow& operator=(const ExamWindow&) = delete;

    HWND Handle() const { return m_window; }
    bool Exists() const { return IsWindow(m_window) != FALSE; }

    Handler onMessage;

private:
    static void Register(const wchar_t* className)
    {
        WNDCLASSW description = {};
        description.lpfnWndProc = Procedure;
        description.hInstance = GetModuleHandleW(nullptr);
        description.lpszClassName = className;
        RegisterClassW(&description); // fails when it is registered already
    }

    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
    {
        if (message == WM_NCCREATE)
            SetWindowLongPtrW(window, GWLP_USERDATA,
                              reinterpret_cast<LONG_PTR>(
                                  reinterpret_cast<CREATESTRUCTW*>(lParam)->lpCreateParams));
        auto* const self = reinterpret_cast<ExamWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA));
        if (self && self->onMessage && self->onMessage(*self, message, wParam, lParam)) return 0;
        return DefWindowProcW(window, message, wParam, lParam);
    }

    HWND m_window = nullptr;
};

// Makes a window the application's main window while it lives.
class AsMainWindow
{
public:
    explicit AsMainWindow(const ExamWindow& window)
    {
        m_main.Attach(window.Handle());
        theApplication.m_pMainWnd = &m_main;
    }
    ~AsMainWindow()
    {
        theApplication.m_pMainWnd = nullptr;
        m_main.Detach();
    }
    AsMainWindow(const AsMainWindow&) = delete;
    AsMainWindow& operator=(const AsMainWindow&) = delete;

private:
    CWnd m_main;
};

} // namespace test_support
