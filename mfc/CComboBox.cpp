#include <afxwin.h>

CComboBox::~CComboBox()
{
    DestroyWindow();
}

BOOL CComboBox::Create(DWORD style, const RECT& rect, CWnd* parent, UINT id)
{
    return CWnd::Create(L"COMBOBOX", nullptr, style, rect, parent, id);
}

void CComboBox::GetLBText(int index, CString& text) const
{
    const int length = GetLBTextLen(index);
    if (length < 0) return;
    SendMessage(CB_GETLBTEXT, Index(index),
                reinterpret_cast<LPARAM>(text.GetBufferSetLength(length)));
    text.ReleaseBuffer();
}
