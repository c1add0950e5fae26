// An application that goes wrong on purpose, for the driver itself: as the environment's SOAK_FAULT
// says, at a key or at a click. It has a window, and ends at Ctrl+Q.
#include <windows.h>

#include <string_view>

namespace {

std::wstring_view s_fault;

void GoWrong(UINT message)
{
    const bool isKey = message == WM_KEYDOWN;
    if (!isKey && message != WM_LBUTTONDOWN) return;
    if (s_fault == (isKey ? L"hang at a key" : L"hang at a click")) Sleep(INFINITE);
    if (s_fault == L"end" && !isKey) ExitProcess(0);
    for (int i = 0; i < 100 && s_fault == L"lose" && !isKey; ++i)
        CreateSolidBrush(RGB(1, 2, 3));
}

LRESULT CALLBACK Handle(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    GoWrong(message);
    if (message == WM_KEYDOWN && wParam == 'Q' && GetKeyState(VK_CONTROL) < 0) PostQuitMessage(0);
    return DefWindowProcW(window, message, wParam, lParam);
}

} // namespace

int wmain()
{
    wchar_t fault[32] = {};
    s_fault = {fault, GetEnvironmentVariableW(L"SOAK_FAULT", fault, 32)};
    WNDCLASSW own{};
    own.lpfnWndProc = Handle;
    own.lpszClassName = L"faulty";
    RegisterClassW(&own);
    // Without the system menu no key closes it.
    const HWND window = CreateWindowExW(0, own.lpszClassName, nullptr, WS_POPUP | WS_VISIBLE, 0, 0,
                                        600, 400, nullptr, nullptr, nullptr, nullptr);
    SetForegroundWindow(window);
    MSG message{};
    while (GetMessageW(&message, nullptr, 0, 0) > 0)
        DispatchMessageW(&message);
    return 0;
}
