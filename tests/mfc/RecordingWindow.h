#pragma once

#include <afxwin.h>

#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

using Calls = std::vector<std::wstring>;

constexpr UINT askMessage = WM_APP + 22;
constexpr UINT throwMessage = WM_APP + 23;

// Records every message that reaches it.
class RecordingWindow : public CWnd
{
public:
    BOOL Open(DWORD style = WS_OVERLAPPEDWINDOW, CWnd* parent = nullptr)
    {
        return CreateEx(0, nullptr, L"recording", style, CRect(10, 20, 210, 170), parent, 0);
    }
    std::vector<std::wstring> Take() { return std::exchange(calls, {}); }

    std::vector<std::wstring> calls;
    bool refuseCreation = false;
    bool throwInCreation = false;
    bool throwInPaint = false;
    bool eraseItself = false;

protected:
    template <class... Arguments>
    void Note(LPCWSTR format, Arguments... arguments)
    {
        CString text;
        text.Format(format, arguments...);
        calls.emplace_back(text.GetString());
    }

    afx_msg int OnCreate(LPCREATESTRUCT description)
    {
        if (throwInCreation) throw std::runtime_error("creation");
        if (CWnd::OnCreate(description) == -1 || refuseCreation) return -1;
        Note(L"create %s", description->lpszName);
        return 0;
    }
    afx_msg void OnDestroy()
    {
        CWnd::OnDestroy();
        Note(L"destroy");
    }
    afx_msg void OnPaint()
    {
        if (throwInPaint) throw 1;
        CPaintDC dc(this);
        Note(L"paint");
    }
    afx_msg BOOL OnEraseBkgnd(CDC* dc)
    {
        Note(L"erase %d", dc && dc->GetSafeHdc());
        return eraseItself ? TRUE : CWnd::OnEraseBkgnd(dc);
    }
    afx_msg void OnSize(UINT type, int width, int height)
    {
        CWnd::OnSize(type, width, height);
        Note(L"size %u %d %d", type, width, height);
    }
    afx_msg void OnMove(int x, int y) { Note(L"move %d %d", x, y); }
    afx_msg void OnTimer(UINT_PTR id) { Note(L"timer %u", static_cast<unsigned>(id)); }
    afx_msg void OnClose() { Note(L"close"); }
    afx_msg void OnShowWindow(BOOL show, UINT status) { Note(L"show %d %u", show, status); }
    afx_msg void OnEnable(BOOL enable) { Note(L"enable %d", enable); }
    afx_msg void OnSetFocus(CWnd* old) { Note(L"focus %d", old != nullptr); }
    afx_msg void OnKillFocus(CWnd* next) { Note(L"unfocus %d", next != nullptr); }
    afx_msg BOOL OnSetCursor(CWnd* window, UINT hit, UINT message)
    {
        Note(L"cursor %d %u %u", window == this, hit, message);
        return TRUE;
    }
    afx_msg void OnCaptureChanged(CWnd* next) { Note(L"capture %d", next == this); }
    afx_msg void OnKeyDown(UINT key, UINT repeat, UINT flags)
    {
        Note(L"down %u %u %u", key, repeat, flags);
    }
    afx_msg void OnKeyUp(UINT key, UINT repeat, UINT flags)
    {
        Note(L"up %u %u %u", key, repeat, flags);
    }
    afx_msg void OnChar(UINT key, UINT repeat, UINT flags)
    {
        Note(L"char %u %u %u", key, repeat, flags);
    }
    afx_msg void OnMouseMove(UINT flags, CPoint at) { Note(L"mouse %u %d %d", flags, at.x, at.y); }
    afx_msg BOOL OnMouseWheel(UINT flags, short delta, CPoint at)
    {
        Note(L"wheel %u %d %d %d", flags, delta, at.x, at.y);
        return TRUE;
    }
    afx_msg void OnLButtonDown(UINT flags, CPoint at) { Note(L"left %u %d %d", flags, at.x, at.y); }
    afx_msg void OnLButtonUp(UINT flags, CPoint at)
    {
        Note(L"left up %u %d %d", flags, at.x, at.y);
    }
    afx_msg LRESULT OnAsk(WPARAM wParam, LPARAM lParam)
    {
        return static_cast<LRESULT>(wParam) + lParam;
    }
    afx_msg LRESULT OnThrow(WPARAM, LPARAM) { throw std::runtime_error("thrown by a handler"); }
    afx_msg void OnBaseCommand() { Note(L"command of the base"); }
    afx_msg void OnChosen() { Note(L"chosen"); }
    afx_msg void OnSelection() { Note(L"selection"); }
    DECLARE_MESSAGE_MAP()
};

// True when a call was recorded.
bool Contains(const Calls& calls, const std::wstring& call);
