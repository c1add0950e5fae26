// Windows over the main window are dark, a form finds a folder, and balloons have room.
#include "MainWindowFixture.h"
#include "service/ServiceWindows.h"

#include <test_support/ImportHook.h>
#include <test_support/TipReader.h>

#include <commctrl.h>
#include <shlobj.h>

#include <functional>
#include <set>
#include <utility>

using namespace exam;

namespace {

// These windows have dark frames, and these controls dark scroll bars.
std::set<HWND> s_darkFrames;
std::set<HWND> s_darkBars;

using SetAttribute = HRESULT WINAPI(HWND, DWORD, LPCVOID, DWORD);
using SetTheme = HRESULT WINAPI(HWND, LPCWSTR, LPCWSTR);
SetAttribute* s_setAttribute = nullptr;
SetTheme* s_setTheme = nullptr;

HRESULT WINAPI NoteFrame(HWND window, DWORD attribute, LPCVOID value, DWORD size)
{
    constexpr DWORD darkMode = 20;
    if (attribute == darkMode && size == sizeof(BOOL) && *static_cast<const BOOL*>(value))
        s_darkFrames.insert(window);
    return s_setAttribute(window, attribute, value, size);
}

HRESULT WINAPI NoteTheme(HWND control, LPCWSTR name, LPCWSTR parts)
{
    if (name && CString(name) == L"DarkMode_Explorer" && !parts) s_darkBars.insert(control);
    return s_setTheme(control, name, parts);
}

// The work of a timer that runs as long as a dialog does.
std::function<void(UINT_PTR timer)> s_tick;

void CALLBACK Tick(HWND, UINT, UINT_PTR timer, DWORD)
{
    s_tick(timer);
}

void AtEachTick(std::function<void(UINT_PTR timer)> work)
{
    s_tick = std::move(work);
    SetTimer(nullptr, 0, 50, Tick);
}

class MainWindowDialogs : public MainWindowTest
{
protected:
    MainWindowDialogs()
    {
        s_setAttribute = m_attributes.Original<SetAttribute>();
        s_setTheme = m_themes.Original<SetTheme>();
        s_darkFrames.clear();
        s_darkBars.clear();
    }

    static bool HasDarkBars(HWND owner, const wchar_t* kind)
    {
        return s_darkBars.contains(FindWindowExW(owner, nullptr, kind, nullptr));
    }

    test_support::ImportHook m_attributes{L"main_window_test.exe", "DwmSetWindowAttribute",
                                          NoteFrame};
    test_support::ImportHook m_themes{L"main_window_test.exe", "SetWindowTheme", NoteTheme};
};

} // namespace

TEST_F(MainWindowDialogs, EachFrameIsDarkAndEachListHasDarkScrollBars)
{
    Open(WindowForm::window);
    EXPECT_TRUE(s_darkFrames.contains(m_window->GetSafeHwnd()));
    m_window->SendMessage(WM_KEYDOWN, 'J', 1); // the panel floats
    EXPECT_TRUE(s_darkFrames.contains(m_window->Panel().GetSafeHwnd()));
    m_window->SendMessage(WM_KEYDOWN, VK_F1, 1);
    EXPECT_TRUE(s_darkFrames.contains(m_window->Keys().GetSafeHwnd()));
    EXPECT_TRUE(HasDarkBars(m_window->Keys().GetSafeHwnd(), WC_LISTVIEWW));
    m_window->SendMessage(WM_KEYDOWN, VK_F1, 1);
    m_window->SendMessage(WM_KEYDOWN, 'A', 1);
    const HWND about = m_window->Exam().Service().About().GetSafeHwnd();
    EXPECT_TRUE(s_darkFrames.contains(about));
    EXPECT_TRUE(HasDarkBars(about, L"LISTBOX"));
    m_window->SendMessage(WM_KEYDOWN, 'A', 1);
    ProgressWindow progress;
    ASSERT_TRUE(progress.Open(*m_window, L"progress"));
    EXPECT_TRUE(s_darkFrames.contains(progress.GetSafeHwnd()));
    progress.DestroyWindow();
    bool isDark = false;
    AtEachTick([&](UINT_PTR timer) {
        const HWND form = FindWindowW(L"#32770", L"form");
        if (!form) return;
        KillTimer(nullptr, timer);
        COMBOBOXINFO parts = {};
        parts.cbSize = sizeof parts;
        GetComboBoxInfo(FindWindowExW(form, nullptr, WC_COMBOBOXW, nullptr), &parts);
        isDark = s_darkFrames.contains(form) && s_darkBars.contains(parts.hwndList);
        PostMessageW(form, WM_COMMAND, IDCANCEL, 0);
    });
    std::vector<FormField> fields = {{.label = L"one of", .choices = {L"a", L"b"}}};
    AskForm(m_window->GetSafeHwnd(), L"form", fields, [](const auto&) { return CString(); });
    EXPECT_TRUE(isDark);
}

namespace {

// The platform's dialog that a form has opened; null before and after.
HWND BrowserOf(HWND form)
{
    HWND dialog = nullptr;
    while ((dialog = FindWindowExW(nullptr, dialog, L"#32770", nullptr)))
        if (form && GetWindow(dialog, GW_OWNER) == form) break;
    return dialog;
}

// Fills a form of a folder: presses the button beside it, chooses another folder in the platform's
// dialog, ends that by a button, and accepts the form. The result is what the field has then.
CString BrowsedFolder(HWND owner, const CString& folder, const CString& other, UINT button)
{
    constexpr int browseButton = 200;
    enum
    {
        begins,
        browses,
        ends
    } stage = begins;
    AtEachTick([&](UINT_PTR timer) {
        const HWND form = FindWindowW(L"#32770", L"folder");
        const HWND browser = BrowserOf(form);
        if (stage == begins && form) {
            PostMessageW(GetDlgItem(form, browseButton), BM_CLICK, 0, 0);
            stage = browses;
        } else if (stage == browses && browser) {
            stage = ends;
            SendMessageW(browser, BFFM_SETSELECTIONW, TRUE,
                         reinterpret_cast<LPARAM>(other.GetString()));
            PostMessageW(browser, WM_COMMAND, button, 0);
        } else if (stage == ends && !browser) {
            KillTimer(nullptr, timer);
            PostMessageW(form, WM_COMMAND, IDOK, 0);
        }
    });
    std::vector<FormField> fields = {{.label = L"where", .value = folder, .isFolder = true}};
    EXPECT_TRUE(AskForm(owner, L"folder", fields, [](const auto&) { return CString(); }));
    return fields.front().value;
}

} // namespace

TEST_F(MainWindowDialogs, TheButtonBesideAFolderLooksForOneUntilTheUserCancels)
{
    // Few folders lie beside these, so that the platform finds them at once.
    CString one;
    GetWindowsDirectoryW(one.GetBuffer(MAX_PATH), MAX_PATH);
    one.ReleaseBuffer();
    const CString other = one + L"\\system32";
    const HWND owner = m_window->GetSafeHwnd();
    EXPECT_EQ(BrowsedFolder(owner, one, other, IDCANCEL), one);
    EXPECT_EQ(BrowsedFolder(owner, one, other, IDOK).CompareNoCase(other), 0);
    EXPECT_EQ(BrowsedFolder(owner, L"missing", one, IDOK).CompareNoCase(one), 0);
}

TEST_F(MainWindowDialogs, ALongBalloonWraps)
{
    CString sentence = L"begins";
    for (int i = 0; i < 30; ++i)
        sentence += L" and goes on";
    m_window->Exam().Report(NoticeKind::warning, sentence);
    HandleMessages();
    const HWND tip = test_support::ShownTip();
    ASSERT_TRUE(tip);
    CRect area;
    GetWindowRect(tip, &area);
    EXPECT_LT(area.Width(), 400);
    EXPECT_GT(area.Height(), 100);
    EXPECT_EQ(test_support::TipText(tip), std::wstring(sentence));
}
