#include "base/DarkDialog.h"

#include "base/DarkControls.h"
#include "base/Dpi.h"
#include "base/Palette.h"

#include <algorithm>

namespace exam {

namespace {

// Lengths in pixels at 96 dpi.
constexpr int leastButton = 84;
constexpr int buttonMargin = 16;
constexpr int gap = 8;
constexpr int margin = 20;
constexpr int widestText = 520;

// The template of an empty dialog. Its size and its controls come later.
struct Template
{
    DLGTEMPLATE dialog{};
    WORD menu = 0;
    WORD windowClass = 0;
    WORD title = 0;
};

void DrawButton(const DRAWITEMSTRUCT& item)
{
    DrawDarkButton(*CDC::FromHandle(item.hDC), item.hwndItem, (item.itemState & ODS_SELECTED) != 0,
                   (item.itemState & ODS_FOCUS) != 0);
}

bool IsButton(HWND control)
{
    wchar_t name[16] = {};
    GetClassNameW(control, name, 16);
    return CString(name).CompareNoCase(L"Button") == 0;
}

// A box with a text and buttons.
class Box : public DarkDialog
{
public:
    Box(const std::wstring& text, const std::vector<DialogButton>& buttons, int usual)
        : m_text(text), m_buttons(buttons), m_usual(usual)
    {
    }

protected:
    CSize Fill() override
    {
        const int around = Scaled(margin);
        const CSize text = SizeOf(m_text, Scaled(widestText)); // long paths are broken too
        const int least = static_cast<int>(m_buttons.size()) * Scaled(leastButton + gap);
        const CSize all(std::max<int>(text.cx, least) + 2 * around,
                        text.cy + ButtonHeight() + 3 * around);
        Add(L"STATIC", m_text, SS_NOPREFIX | SS_EDITCONTROL, CRect(CPoint(around, around), text),
            -1);
        AddButtons(m_buttons, m_usual, {all.cx - around, all.cy - around});
        SetFocus(GetDlgItem(Window(), m_usual));
        return all;
    }

private:
    const std::wstring& m_text;
    const std::vector<DialogButton>& m_buttons;
    int m_usual;
};

} // namespace

int DarkDialog::Run(HWND owner, const std::wstring& title)
{
    m_owner = owner;
    m_title = title;
    Template dialog;
    dialog.dialog.style = WS_POPUP | WS_CAPTION | WS_SYSMENU | DS_MODALFRAME | WS_VISIBLE;
    const INT_PTR result = DialogBoxIndirectParamW(GetModuleHandleW(nullptr), &dialog.dialog, owner,
                                                   Procedure, reinterpret_cast<LPARAM>(this));
    return result > 0 ? static_cast<int>(result) : IDCANCEL;
}

INT_PTR CALLBACK DarkDialog::Procedure(HWND window, UINT message, WPARAM wParam,
                                       LPARAM lParam) noexcept
{
    if (message == WM_INITDIALOG) {
        SetWindowLongPtrW(window, GWLP_USERDATA, lParam);
        reinterpret_cast<DarkDialog*>(lParam)->Open(window);
        return FALSE; // Fill has set the focus
    }
    auto* const self = reinterpret_cast<DarkDialog*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    return self ? self->Handle(message, wParam, lParam) : FALSE;
}

INT_PTR DarkDialog::Handle(UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_CTLCOLORDLG:
    case WM_CTLCOLORSTATIC:
    case WM_CTLCOLORBTN: return DarkColours(wParam, palette::panel);
    case WM_CTLCOLOREDIT:
    case WM_CTLCOLORLISTBOX: return DarkColours(wParam, palette::header);
    case WM_DRAWITEM: DrawButton(*reinterpret_cast<const DRAWITEMSTRUCT*>(lParam)); return TRUE;
    // Buttons that are drawn here have no style of a usual one that could wander.
    case DM_SETDEFID: return TRUE;
    case DM_GETDEFID:
        SetWindowLongPtrW(m_window, DWLP_MSGRESULT, MAKELONG(ButtonOfEnter(), DC_HASDEFID));
        return TRUE;
    case WM_COMMAND:
        if (lParam != 0 && !IsButton(reinterpret_cast<HWND>(lParam))) return FALSE;
        if (LOWORD(wParam) == IDCANCEL || Accept(LOWORD(wParam)))
            EndDialog(m_window, LOWORD(wParam));
        return TRUE;
    default: return FALSE;
    }
}

void DarkDialog::Open(HWND window)
{
    m_window = window;
    m_dpi = DpiOf(m_owner ? m_owner : window);
    m_font = std::make_unique<TextFont>(Scaled(ScopedFont::textSize));
    SetWindowTextW(window, m_title.c_str());
    DarkenFrame(window);
    Centre(Fill());
}

// Gives the dialog its size, in the middle of its owner and on the screen.
void DarkDialog::Centre(CSize client)
{
    CRect all(CPoint(0, 0), client);
    AdjustWindowRectEx(&all, static_cast<DWORD>(GetWindowLongPtrW(m_window, GWL_STYLE)), FALSE,
                       static_cast<DWORD>(GetWindowLongPtrW(m_window, GWL_EXSTYLE)));
    MONITORINFO monitor = {};
    monitor.cbSize = sizeof monitor;
    GetMonitorInfoW(MonitorFromWindow(m_owner, MONITOR_DEFAULTTOPRIMARY), &monitor);
    const CRect screen(monitor.rcWork);
    CRect over = screen;
    if (m_owner) GetWindowRect(m_owner, &over);
    const auto place = [](int middle, int size, int begin, int end) {
        return std::max(begin, std::min(middle - size / 2, end - size));
    };
    MoveWindow(m_window, place(over.CenterPoint().x, all.Width(), screen.left, screen.right),
               place(over.CenterPoint().y, all.Height(), screen.top, screen.bottom), all.Width(),
               all.Height(), TRUE);
}

int DarkDialog::ButtonOfEnter() const
{
    const HWND focus = GetFocus();
    return focus && IsButton(focus) ? GetDlgCtrlID(focus) : m_usual;
}

int DarkDialog::Scaled(int pixels) const
{
    return MulDiv(pixels, m_dpi, USER_DEFAULT_SCREEN_DPI);
}

CSize DarkDialog::SizeOf(const std::wstring& text, int width) const
{
    const base::WindowContext context(m_window);
    const base::Selection font(context.get(), m_font->GetSafeHandle());
    CRect box(0, 0, width, 0);
    DrawTextW(context.get(), text.c_str(), -1, &box,
              DT_CALCRECT | DT_WORDBREAK | DT_EDITCONTROL | DT_NOPREFIX);
    return box.Size();
}

HWND DarkDialog::Add(const wchar_t* kind, const std::wstring& text, DWORD style, const CRect& box,
                     int id)
{
    const HWND control = CreateWindowExW(0, kind, text.c_str(), style | WS_CHILD | WS_VISIBLE,
                                         box.left, box.top, box.Width(), box.Height(), m_window,
                                         reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)),
                                         GetModuleHandleW(nullptr), nullptr);
    SendMessageW(control, WM_SETFONT, reinterpret_cast<WPARAM>(m_font->GetSafeHandle()), FALSE);
    return control;
}

void DarkDialog::AddButtons(const std::vector<DialogButton>& buttons, int usual, CPoint corner)
{
    m_usual = usual;
    std::vector<int> widths;
    widths.reserve(buttons.size());
    for (const DialogButton& button : buttons)
        widths.push_back(
            std::max<int>(Scaled(leastButton),
                          SizeOf(button.text, Scaled(widestText)).cx + 2 * Scaled(buttonMargin)));
    int left = corner.x + Scaled(gap);
    for (const int width : widths)
        left -= width + Scaled(gap);
    for (std::size_t i = 0; i < buttons.size(); ++i) { // in the order of the Tab key
        const CRect box(CPoint(left, corner.y - ButtonHeight()), CSize(widths[i], ButtonHeight()));
        Add(L"BUTTON", buttons[i].text, WS_TABSTOP | BS_OWNERDRAW, box, buttons[i].id);
        left += widths[i] + Scaled(gap);
    }
}

int ShowBox(HWND owner, const std::wstring& title, const std::wstring& text,
            const std::vector<DialogButton>& buttons, int usual)
{
    return Box(text, buttons, usual).Run(owner, title);
}

} // namespace exam
