#include "service/Form.h"

#include "base/DarkControls.h"
#include "base/DarkDialog.h"
#include "service/FileChoice.h"

#include <Utils_Statics/GetStr.h>
#include <Utils_Statics/utilsExam.h>

#include <algorithm>
#include <utility>

namespace exam {

namespace {

constexpr int firstField = 100;
constexpr int firstBrowse = 200; // the buttons beside folders
constexpr int problemText = 99;

// Lengths in pixels at 96 dpi.
constexpr int margin = 16;
constexpr int gap = 12;
constexpr int fieldWidth = 320;
constexpr int fieldHeight = 25;
constexpr int browseWidth = 36;
constexpr int rowHeight = 34;
constexpr int longRows = 3;
constexpr int problemHeight = 40; // two lines

constexpr int listEdge = 6;                        // above and below the field of a list
constexpr auto ownField = static_cast<WPARAM>(-1); // of CB_SETITEMHEIGHT

constexpr int mostChoices = 12; // of an open list, which scrolls to the others

class Form : public DarkDialog
{
public:
    Form(std::vector<FormField>& fields, const FormCheck& check) : m_fields(fields), m_check(check)
    {
    }

protected:
    CSize Fill() override
    {
        const int around = Scaled(margin);
        const int right = around + LabelWidth() + Scaled(gap + fieldWidth);
        int top = around;
        for (std::size_t i = 0; i < m_fields.size(); ++i) {
            const FormField& field = m_fields[i];
            CRect box(around, top, right, top + HeightOf(field));
            AddField(field, box, firstField + static_cast<int>(i));
            top += HeightOf(field);
        }
        Add(L"STATIC", L"", SS_NOPREFIX, CRect(around, top, right, top + Scaled(problemHeight)),
            problemText);
        top += Scaled(problemHeight + gap) + ButtonHeight();
        AddButtons({{IDOK, GetStr("exam.form.ok").GetString()},
                    {IDCANCEL, GetStr("exam.form.cancel").GetString()}},
                   IDOK, {right, top});
        SetFocus(GetDlgItem(Window(), firstField));
        return {right + around, top + around};
    }

    // Takes the values over, unless the check finds something.
    bool Accept(int button) override
    {
        if (button >= firstBrowse) return Browse(button - firstBrowse + firstField);
        std::vector<FormField> filled = m_fields;
        for (std::size_t i = 0; i < filled.size(); ++i) {
            HWND control = GetDlgItem(Window(), firstField + static_cast<int>(i));
            const int length = GetWindowTextLengthW(control);
            CString value;
            GetWindowTextW(control, value.GetBuffer(length + 1), length + 1);
            value.ReleaseBuffer();
            filled[i].value = value;
        }
        const CString problem = m_check(filled);
        SetDlgItemTextW(Window(), problemText, problem);
        if (!problem.IsEmpty()) return false;
        m_fields = std::move(filled);
        return true;
    }

private:
    // Lets the user look for the folder of a field. The dialog goes on.
    bool Browse(int field)
    {
        const HWND edit = GetDlgItem(Window(), field);
        CString folder;
        GetWindowTextW(edit, folder.GetBuffer(MAX_PATH), MAX_PATH);
        folder.ReleaseBuffer();
        const std::wstring chosen =
            ChooseFolder(Window(), m_fields[static_cast<std::size_t>(field - firstField)].label,
                         folder.GetString());
        if (!chosen.empty()) SetWindowTextW(edit, chosen.c_str());
        return false;
    }

    int HeightOf(const FormField& field) const
    {
        return Scaled(field.isLong ? rowHeight * longRows : rowHeight);
    }

    int LabelWidth() const
    {
        int width = 0;
        for (const FormField& field : m_fields)
            width = std::max<int>(width, SizeOf(field.label.GetString(), Scaled(fieldWidth)).cx);
        return width;
    }

    void AddField(const FormField& field, CRect box, int id)
    {
        CRect label = box;
        label.right = label.left + LabelWidth();
        label.top += Scaled(3); // its text stands level with that of the field
        Add(L"STATIC", field.label.GetString(), SS_NOPREFIX, label, -1);
        box.left = label.right + Scaled(gap);
        box.bottom -= Scaled(rowHeight - fieldHeight);
        if (!field.choices.empty()) return AddChoices(field, box, id);
        const DWORD lines =
            field.isLong ? ES_MULTILINE | ES_WANTRETURN | ES_AUTOVSCROLL : ES_AUTOHSCROLL;
        const int right = box.right;
        if (field.isFolder) box.right -= Scaled(browseWidth) + Scaled(gap) / 2;
        Add(L"EDIT", field.value.GetString(), WS_TABSTOP | WS_BORDER | lines, box, id);
        if (!field.isFolder) return;
        box.left = right - Scaled(browseWidth);
        box.right = right;
        Add(L"BUTTON", L"\u2026", WS_TABSTOP | BS_OWNERDRAW, box, id - firstField + firstBrowse);
    }

    void AddChoices(const FormField& field, CRect box, int id)
    {
        HWND list = Add(L"COMBOBOX", L"", WS_TABSTOP | CBS_DROPDOWNLIST, box, id);
        SendMessageW(list, CB_SETITEMHEIGHT, ownField, Scaled(fieldHeight - listEdge));
        Darken(list);
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

    std::vector<FormField>& m_fields;
    const FormCheck& m_check;
};

} // namespace

bool AskForm(HWND owner, const CString& title, std::vector<FormField>& fields,
             const FormCheck& check)
{
    return Form(fields, check).Run(owner, title.GetString()) == IDOK;
}

} // namespace exam
