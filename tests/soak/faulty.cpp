// This application goes wrong on purpose, to try the driver: at a key or at a click, as the
// environment's SOAK_FAULT says. It has a window, and ends at Ctrl+Q.
#include <windows.h>

#include <string_view>
#include <vector>

namespace {

std::wstring_view s_fault;
std::vector<char> s_lost;

void GoWrongAtAClick()
{
    if (s_fault == L"hang at a click") Sleep(INFINITE);
    if (s_fault == L"end") ExitProcess(0);
    for (int i = 0; i < 100 && s_fault == L"lose brushes"; ++i)
        CreateSolidBrush(RGB(1, 2, 3));
    if (s_fault == L"lose memory") s_lost.resize(s_lost.size() + (4 << 20), 'x');
}

LRESULT CALLBACK Handle(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_KEYDOWN && s_fault == L"hang at a key") Sleep(INFINITE);
    if (message == WM_LBUTTONDOWN) GoWrongAtAClick();
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
