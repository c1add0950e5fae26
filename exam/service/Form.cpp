#include "service/Form.h"

#include <Utils_Statics/GetStr.h>
#include <Utils_Statics/utilsExam.h>

#include <algorithm>
#include <utility>

namespace exam {

namespace {

constexpr int firstField = 100;
constexpr int problemText = 99;

// All in dialog units, which follow the font.
constexpr short width = 240;
constexpr short margin = 8;
constexpr short labelWidth = 76;
constexpr short rowHeight = 18;
constexpr short fieldHeight = 13;
constexpr short longRows = 3;
constexpr short buttonWidth = 54;
constexpr short buttonHeight = 15;
constexpr short problemHeight = 20;

constexpr int mostChoices = 12; // of an open list, which scrolls to the others

struct Template
{
    DLGTEMPLATE dialog{};
    WORD menu = 0;
    WORD windowClass = 0;
    WORD title = 0;
    WORD fontSize = 9;
    wchar_t font[6] = L"Arial";
};

class Form
{
public:
    Form(const CString& title, std::vector<FormField>& fields, const FormCheck& check)
        : m_title(title), m_fields(fields), m_check(check)
    {
    }

    bool Run(HWND owner)
    {
        Template form;
        form.dialog.style = WS_POPUP | WS_CAPTION | WS_SYSMENU | DS_MODALFRAME | DS_SETFONT |
                            DS_CENTER | WS_VISIBLE;
        form.dialog.cx = width;
        form.dialog.cy =
            static_cast<short>(FieldsHeight() + problemHeight + buttonHeight + 3 * margin);
        return DialogBoxIndirectParamW(GetModuleHandleW(nullptr), &form.dialog, owner, Procedure,
                                       reinterpret_cast<LPARAM>(this)) == IDOK;
    }

private:
    static INT_PTR CALLBACK Procedure(HWND window, UINT message, WPARAM wParam,
                                      LPARAM lParam) noexcept
    {
        if (message == WM_INITDIALOG) {
            SetWindowLongPtrW(window, GWLP_USERDATA, lParam);
            reinterpret_cast<Form*>(lParam)->Fill(window);
            return FALSE; // the first field has the focus already
        }
        auto* const self = reinterpret_cast<Form*>(GetWindowLongPtrW(window, GWLP_USERDATA));
        if (!self || message != WM_COMMAND) return FALSE;
        if (LOWORD(wParam) == IDCANCEL || (LOWORD(wParam) == IDOK && self->Accept(window)))
            EndDialog(window, LOWORD(wParam));
        return TRUE;
    }

    static short HeightOf(const FormField& field)
    {
        return field.isLong ? rowHeight * longRows : rowHeight;
    }

    short FieldsHeight() const
    {
        short height = 0;
        for (const FormField& field : m_fields)
            height = static_cast<short>(height + HeightOf(field));
        return height;
    }

    static HWND Add(HWND form, const wchar_t* kind, const CString& text, DWORD style, CRect box,
                    int id)
    {
        MapDialogRect(form, &box);
        const DWORD edge = style & WS_BORDER ? WS_EX_CLIENTEDGE : 0;
        HWND control = CreateWindowExW(
            edge, kind, text, (style & ~WS_BORDER) | WS_CHILD | WS_VISIBLE, box.left, box.top,
            box.Width(), box.Height(), form, reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)),
            GetModuleHandleW(nullptr), nullptr);
        SendMessageW(control, WM_SETFONT, static_cast<WPARAM>(SendMessageW(form, WM_GETFONT, 0, 0)),
                     FALSE);
        return control;
    }

    void Fill(HWND form)
    {
        SetWindowTextW(form, m_title);
        int top = margin;
        for (std::size_t i = 0; i < m_fields.size(); ++i) {
            AddField(form, m_fields[i], top, firstField + static_cast<int>(i));
            top += HeightOf(m_fields[i]);
        }
        Add(form, L"STATIC", L"", 0, CRect(margin, top, width - margin, top + problemHeight),
            problemText);
        top += problemHeight + margin;
        const int right = width - margin;
        Add(form, L"BUTTON", GetStr("exam.form.ok"), WS_TABSTOP | BS_DEFPUSHBUTTON,
            CRect(right - 2 * buttonWidth - margin, top, right - buttonWidth - margin,
                  top + buttonHeight),
            IDOK);
        Add(form, L"BUTTON", GetStr("exam.form.cancel"), WS_TABSTOP,
            CRect(right - buttonWidth, top, right, top + buttonHeight), IDCANCEL);
        SetFocus(GetDlgItem(form, firstField));
    }

    static void AddField(HWND form, const FormField& field, int top, int id)
    {
        Add(form, L"STATIC", field.label, 0,
            CRect(margin, top + 2, margin + labelWidth, top + rowHeight), -1);
        const int room = HeightOf(field) - rowHeight + fieldHeight;
        CRect box(margin + labelWidth, top, width - margin, top + room);
        if (field.choices.empty()) {
            const DWORD lines = field.isLong ? ES_MULTILINE | ES_WANTRETURN | WS_VSCROLL : 0;
            Add(form, L"EDIT", field.value, WS_TABSTOP | WS_BORDER | ES_AUTOHSCROLL | lines, box,
                id);
            return;
        }
        HWND list = Add(form, L"COMBOBOX", L"", WS_TABSTOP | CBS_DROPDOWNLIST, box, id);
        for (const CString& choice : field.choices)
            SendMessageW(list, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(choice.GetString()));
        CComboBox shown;
        shown.Attach(list);
        utilsExam::SetComboBoxDropdownHeight(shown, 0, mostChoices);
        shown.Detach();
        const auto chosen = std::ranges::find(field.choices, field.value);
        if (chosen != field.choices.end())
            SendMessageW(list, CB_SETCURSEL, static_cast<WPARAM>(chosen - field.choices.begin()),
                         0);
    }

    // Takes the values over, unless the check finds something.
    bool Accept(HWND form)
    {
        std::vector<FormField> filled = m_fields;
        for (std::size_t i = 0; i < filled.size(); ++i) {
            HWND control = GetDlgItem(form, firstField + static_cast<int>(i));
            const int length = GetWindowTextLengthW(control);
            CString value;
            GetWindowTextW(control, value.GetBuffer(length + 1), length + 1);
            value.ReleaseBuffer();
            filled[i].value = value;
        }
        const CString problem = m_check(filled);
        SetDlgItemTextW(form, problemText, problem);
        if (!problem.IsEmpty()) return false;
        m_fields = std::move(filled);
        return true;
    }

    CString m_title;
    std::vector<FormField>& m_fields;
    const FormCheck& m_check;
};

} // namespace

bool AskForm(HWND owner, const CString& title, std::vector<FormField>& fields,
             const FormCheck& check)
{
    return Form(title, fields, check).Run(owner);
}

} // namespace exam
