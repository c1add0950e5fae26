#include "test_support/TipReader.h"

#include "test_support/ResourceCounts.h"

#include <map>

namespace test_support {

namespace {

bool IsOfClass(HWND window, const wchar_t* name)
{
    wchar_t found[64] = {};
    GetClassNameW(window, found, 64);
    return lstrcmpiW(found, name) == 0;
}

BOOL CALLBACK CollectTip(HWND window, LPARAM tips)
{
    if (IsOfClass(window, TOOLTIPS_CLASSW))
        reinterpret_cast<std::vector<HWND>*>(tips)->push_back(window);
    return TRUE;
}

std::map<HWND, TipTitle> s_titles;

LRESULT CALLBACK NoteTitle(int code, WPARAM wParam, LPARAM lParam)
{
    const auto& sent = *reinterpret_cast<const CWPRETSTRUCT*>(lParam);
    if (code == HC_ACTION && sent.message == TTM_SETTITLEW && IsOfClass(sent.hwnd, TOOLTIPS_CLASSW))
        s_titles[sent.hwnd] = {reinterpret_cast<const wchar_t*>(sent.lParam),
                               static_cast<int>(sent.wParam), sent.lResult != FALSE};
    return CallNextHookEx(nullptr, code, wParam, lParam);
}

} // namespace

std::vector<HWND> TipWindows()
{
    std::vector<HWND> tips;
    EnumThreadWindows(GetCurrentThreadId(), CollectTip, reinterpret_cast<LPARAM>(&tips));
    return tips;
}

std::vector<HWND> MessageOnlyWindows()
{
    std::vector<HWND> windows;
    HWND window = nullptr;
    while ((window = FindWindowExW(HWND_MESSAGE, window, L"Static", nullptr))) {
        DWORD process = 0;
        GetWindowThreadProcessId(window, &process);
        if (process == GetCurrentProcessId()) windows.push_back(window);
    }
    return windows;
}

std::wstring TipText(HWND tip)
{
    constexpr std::size_t longest = 200000;
    std::wstring text(longest, L'\0');
    TOOLINFOW tool = {};
    tool.cbSize = sizeof tool;
    tool.lpszText = text.data();
    SendMessageW(tip, TTM_GETTEXTW, longest, reinterpret_cast<LPARAM>(&tool));
    return text.c_str();
}

bool ShowsText(HWND tip, const std::wstring& text)
{
    constexpr std::size_t sure = 1023;
    const std::wstring shown = TipText(tip);
    return shown == text || (shown.size() >= sure && text.starts_with(shown));
}

TitleWatch::TitleWatch()
    : m_hook(SetWindowsHookExW(WH_CALLWNDPROCRET, &NoteTitle, nullptr, GetCurrentThreadId()))
{
}

TitleWatch::~TitleWatch()
{
    UnhookWindowsHookEx(m_hook);
    s_titles.clear();
}

TipTitle TitleWatch::Of(HWND tip) const
{
    const auto found = s_titles.find(tip);
    return found == s_titles.end() ? TipTitle() : found->second;
}

HWND ShownTip()
{
    for (const HWND tip : TipWindows())
        if (IsWindowVisible(tip)) return tip;
    return nullptr;
}

DWORD DrawingObjectsLostWithATip()
{
    const auto live = [] {
        const HWND tip = CreateWindowExW(WS_EX_TOPMOST, TOOLTIPS_CLASSW, nullptr, TTS_BALLOON, 0, 0,
                                         0, 0, nullptr, nullptr, nullptr, nullptr);
        wchar_t text[] = L"text";
        TOOLINFOW tool = {};
        tool.cbSize = sizeof tool;
        tool.uFlags = TTF_TRACK;
        tool.lpszText = text;
        SendMessageW(tip, TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
        SendMessageW(tip, TTM_TRACKACTIVATE, TRUE, reinterpret_cast<LPARAM>(&tool));
        UpdateWindow(tip);
        DestroyWindow(tip);
    };
    constexpr DWORD times = 10;
    live();
    const DWORD before = DrawingObjectCount();
    for (DWORD i = 0; i < times; ++i)
        live();
    return (DrawingObjectCount() - before) / times;
}

} // namespace test_support
