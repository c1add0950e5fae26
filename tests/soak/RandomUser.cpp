#include "RandomUser.h"

#include "commands/Commands.h"

#include <dlgs.h>

#include <utility>

namespace soak {

namespace {

constexpr DWORD pause = 20;        // milliseconds between two things
constexpr DWORD probePause = 2000; // in which the frames of a probe fill some megabytes
constexpr wchar_t menuClass[] = L"#32768";
constexpr wchar_t dialogClass[] = L"#32770";

RECT Screen()
{
    return {0, 0, GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN)};
}

} // namespace

RandomUser::RandomUser(DrivenExam& exam, std::vector<std::wstring> files, unsigned seed)
    : m_exam(exam), m_files(std::move(files)), m_random(seed)
{
    for (const exam::Command& command : exam::Commands()) {
        const bool ends = command.key.code == 'Q' && command.key.withControl;
        if (command.key.code != 0 && !ends)
            m_keys.push_back({command.key.code, command.key.withControl});
    }
}

void RandomUser::PressAll()
{
    for (const Key& key : m_keys) {
        Press(key);
        Settle();
        Rest();
    }
}

void RandomUser::FillProbes()
{
    constexpr int mostPauses = 15;
    for (UINT key = '1'; key <= '3'; ++key) {
        Press({key, true});
        unsigned before = 0;
        for (int i = 0; i < mostPauses && m_exam.Megabytes() > before; ++i) {
            before = m_exam.Megabytes();
            Sleep(probePause);
        }
    }
}

void RandomUser::Act()
{
    if (!m_exam.Owns(GetForegroundWindow())) SetForegroundWindow(m_exam.Window());
    const HWND menu = m_exam.FindShown(menuClass);
    const HWND dialog = m_exam.FindShown(dialogClass);
    const int choice = Below(100);
    if (menu)
        UseMenu(menu);
    else if (dialog)
        UseDialog(dialog);
    else if (choice < 45)
        PressCommand();
    else if (choice < 75)
        Click(AnyPlace());
    else if (choice < 90)
        Drag();
    else if (choice < 98)
        Wheel();
    else
        PlaceWindow();
    Settle();
}

void RandomUser::Rest()
{
    constexpr int leastTries = 3; // for windows that are neither
    constexpr int mostTries = 30;
    for (int i = 0; i < leastTries || m_exam.FindShown(menuClass) || m_exam.FindShown(dialogClass);
         ++i) {
        if (i == mostTries) break;
        PressKeys({VK_ESCAPE});
        Settle();
    }
    PressKeys({'E'});
    Settle();
}

int RandomUser::Below(int end)
{
    return std::uniform_int_distribution(0, end - 1)(m_random);
}

LONG RandomUser::Between(LONG first, LONG end)
{
    return std::uniform_int_distribution(first, end - 1)(m_random);
}

void RandomUser::Settle()
{
    Sleep(pause);
    m_exam.Answers();
}

// A place in the part of a window that is on the screen.
std::optional<POINT> RandomUser::PlaceIn(HWND window)
{
    RECT area{};
    GetWindowRect(window, &area);
    const RECT screen = Screen();
    if (!IntersectRect(&area, &area, &screen)) return {};
    const POINT place{Between(area.left, area.right), Between(area.top, area.bottom)};
    if (!IsHarmless(place)) return {};
    return place;
}

std::optional<POINT> RandomUser::AnyPlace()
{
    const std::vector<HWND> windows = m_exam.Windows();
    if (windows.empty() || Below(2) == 0) return PlaceIn(m_exam.Window());
    return PlaceIn(windows[static_cast<std::size_t>(Below(static_cast<int>(windows.size())))]);
}

// False for the windows of others, and for what closes the application or hides it.
bool RandomUser::IsHarmless(POINT place) const
{
    const HWND window = WindowFromPoint(place);
    if (!m_exam.Owns(window)) return false;
    if (GetAncestor(window, GA_ROOT) != m_exam.Window()) return true;
    DWORD_PTR hit = HTNOWHERE;
    SendMessageTimeoutW(m_exam.Window(), WM_NCHITTEST, 0, MAKELPARAM(place.x, place.y), SMTO_NORMAL,
                        1000, &hit);
    return hit != HTCLOSE && hit != HTMINBUTTON && hit != HTSYSMENU && hit != HTNOWHERE;
}

Button RandomUser::AnyButton()
{
    const int choice = Below(8);
    if (choice == 0) return Button::right;
    return choice == 1 ? Button::middle : Button::left;
}

// Letters and digits alone, because the text may become a folder of the current one.
std::wstring RandomUser::AnyText()
{
    constexpr wchar_t letters[] = L"abcxyz\u00e4\u00df0123456789";
    std::wstring text;
    for (int left = 1 + Below(4); left > 0; --left)
        text += letters[Below(static_cast<int>(std::size(letters)) - 1)];
    return text;
}

void RandomUser::Press(const Key& key)
{
    if (key.withControl) return PressKeys({VK_CONTROL, key.code});
    PressKeys({key.code});
}

void RandomUser::PressCommand()
{
    const Key& key = m_keys[static_cast<std::size_t>(Below(static_cast<int>(m_keys.size())))];
    if (Below(30) == 0) return PressKeys({VK_MENU});
    if (Below(10) == 0) return PressKeys({VK_SHIFT, key.code});
    Press(key);
}

void RandomUser::Click(std::optional<POINT> place)
{
    if (!place) return;
    const Button button = AnyButton();
    MoveTo(*place);
    for (int left = Below(5) == 0 ? 2 : 1; left > 0; --left) {
        PressButton(button);
        ReleaseButton(button);
    }
}

void RandomUser::Drag()
{
    const std::optional<POINT> from = AnyPlace();
    if (!from) return;
    const Button button = AnyButton();
    MoveTo(*from);
    PressButton(button);
    POINT place = *from;
    for (int left = 1 + Below(6); left > 0; --left) {
        place = {place.x + Below(121) - 60, place.y + Below(121) - 60};
        MoveTo(place);
        Settle();
    }
    ReleaseButton(button);
}

void RandomUser::Wheel()
{
    const std::optional<POINT> place = AnyPlace();
    if (!place) return;
    MoveTo(*place);
    TurnWheel(Below(7) - 3);
}

// Any size and place on the screen, which also brings the window back from where it went.
void RandomUser::PlaceWindow()
{
    if (Below(3) == 0) {
        ShowWindowAsync(m_exam.Window(), SW_MAXIMIZE);
        return;
    }
    const RECT screen = Screen();
    const LONG width = Between(screen.right / 2, screen.right);
    const LONG height = Between(screen.bottom / 2, screen.bottom);
    ShowWindowAsync(m_exam.Window(), SW_RESTORE);
    SetWindowPos(m_exam.Window(), nullptr, Between(0, screen.right - width),
                 Between(0, screen.bottom - height), width, height,
                 SWP_NOZORDER | SWP_NOACTIVATE | SWP_ASYNCWINDOWPOS);
}

// The command that ends the application stands last in its menu.
void RandomUser::UseMenu(HWND menu)
{
    constexpr LONG lastItem = 40; // pixels
    RECT area{};
    GetWindowRect(menu, &area);
    area.bottom -= lastItem;
    if (Below(3) == 0 || area.bottom <= area.top) return PressKeys({VK_ESCAPE});
    MoveTo({Between(area.left, area.right), Between(area.top, area.bottom)});
    PressButton(Button::left);
    ReleaseButton(Button::left);
}

void RandomUser::UseDialog(HWND dialog)
{
    if (GetDlgItem(dialog, edt1) || GetDlgItem(dialog, cmb13)) return ChooseFile();
    switch (Below(8)) {
    case 0:
    case 1: return TypeText(AnyText());
    case 2: return PressKeys({VK_TAB});
    case 3: return PressKeys({VK_DOWN});
    case 4: return PressKeys({VK_SPACE});
    case 5: return Click(PlaceIn(dialog));
    case 6: return PressKeys({VK_RETURN});
    default: return PressKeys({VK_ESCAPE});
    }
}

// Nothing else is done there, because the platform's dialog can make folders anywhere.
void RandomUser::ChooseFile()
{
    if (Below(3) == 0) return PressKeys({VK_ESCAPE});
    TypeText(m_files[static_cast<std::size_t>(Below(static_cast<int>(m_files.size())))]);
    PressKeys({VK_RETURN});
}

} // namespace soak
