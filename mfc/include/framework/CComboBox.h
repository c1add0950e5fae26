#pragma once

#include <framework/CWnd.h>

/// A combo box. Indexes count from 0; CB_ERR (-1) reports a failure, CB_ERRSPACE (-2) that memory
/// is short.
class MFC_API CComboBox : public CWnd
{
public:
    CComboBox() = default;
    ~CComboBox() override;

    using CWnd::Create;
    /// Creates the control as a child of `parent`.
    BOOL Create(DWORD style, const RECT& rect, CWnd* parent, UINT id);

    /// The number of items, and the index of the selected one.
    int GetCount() const { return static_cast<int>(SendMessage(CB_GETCOUNT)); }
    int GetCurSel() const { return static_cast<int>(SendMessage(CB_GETCURSEL)); }
    /// -1 clears the selection (and returns CB_ERR).
    int SetCurSel(int index) { return static_cast<int>(SendMessage(CB_SETCURSEL, Index(index))); }
    /// Both return the index of the new item. Index -1 inserts at the end.
    int AddString(LPCTSTR text)
    {
        return static_cast<int>(SendMessage(CB_ADDSTRING, 0, Text(text)));
    }
    int InsertString(int index, LPCTSTR text)
    {
        return static_cast<int>(SendMessage(CB_INSERTSTRING, Index(index), Text(text)));
    }
    /// Returns the number of items that are left.
    int DeleteString(UINT index) { return static_cast<int>(SendMessage(CB_DELETESTRING, index)); }
    /// Removes all items.
    void ResetContent() { SendMessage(CB_RESETCONTENT); }
    /// The length of an item's text.
    int GetLBTextLen(int index) const
    {
        return static_cast<int>(SendMessage(CB_GETLBTEXTLEN, Index(index)));
    }
    /// An index that does not exist leaves `text` unchanged.
    void GetLBText(int index, CString& text) const;
    /// The index of the first item with this text, upper and lower case alike, behind `startAfter`
    /// and then from the first on.
    int FindStringExact(int startAfter, LPCTSTR text) const
    {
        return static_cast<int>(SendMessage(CB_FINDSTRINGEXACT, Index(startAfter), Text(text)));
    }
    /// Index -1 means the selection field.
    int GetItemHeight(int index) const
    {
        return static_cast<int>(SendMessage(CB_GETITEMHEIGHT, Index(index)));
    }
    int SetItemHeight(int index, UINT height)
    {
        return static_cast<int>(
            SendMessage(CB_SETITEMHEIGHT, Index(index), static_cast<LPARAM>(height)));
    }
    /// Open or close the list, and tell whether it is open.
    void ShowDropDown(BOOL show = TRUE) { SendMessage(CB_SHOWDROPDOWN, static_cast<WPARAM>(show)); }
    BOOL GetDroppedState() const { return static_cast<BOOL>(SendMessage(CB_GETDROPPEDSTATE)); }

private:
    static WPARAM Index(int index) noexcept { return static_cast<WPARAM>(index); }
    static LPARAM Text(LPCTSTR text) noexcept { return reinterpret_cast<LPARAM>(text); }
};
