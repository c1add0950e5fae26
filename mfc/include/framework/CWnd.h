#pragma once

#include <framework/CCmdTarget.h>
#include <framework/CDC.h>

#include <afxmsg_.h>

/// A window with a message map. The object owns its window: the destructor destroys it. Use it on
/// the window's own thread, except for members that only send or post. No exception leaves the
/// window procedure. One that a handler throws ends the message with the result 0 and is reported
/// to the debugger; if the message was WM_CREATE, the window is not created.
///
/// FromHandle returns the object that a window is attached to, or a temporary one (like
/// CGdiObject's), on any thread.
class MFC_API CWnd : public CCmdTarget
{
public:
    CWnd() = default;
    ~CWnd() override;

    /// The handle, which stays the object's; null for an empty object.
    HWND m_hWnd = nullptr;

    /// The handle, also of an empty object (null).
    HWND GetSafeHwnd() const noexcept { return m_hWnd; }
    operator HWND() const noexcept { return m_hWnd; }
    /// Null for a null handle.
    static CWnd* FromHandle(HWND window);
    /// Null when no object is attached.
    static CWnd* FromHandlePermanent(HWND window);
    /// Deletes the calling thread's temporary objects.
    static void DeleteTempMap();
    /// FALSE for a null handle, when a handle is already attached, or when the window has another
    /// object. Messages are not routed to the object: SubclassWindow does that.
    BOOL Attach(HWND window);
    /// Gives the window up without destroying it, and returns its handle.
    HWND Detach();
    /// Attaches the window and routes its messages to the object; FALSE like Attach.
    BOOL SubclassWindow(HWND window);
    /// Restores the window's former procedure and detaches the window.
    HWND UnsubclassWindow();
    /// Called before the window's messages begin to arrive.
    virtual void PreSubclassWindow();

    /// Creates a child window. The message map is in force from the window's first message on.
    virtual BOOL Create(LPCTSTR className, LPCTSTR windowName, DWORD style, const RECT& rect,
                        CWnd* parent, UINT id, void* context = nullptr);
    /// Creates any window; a null class name stands for a plain class of the framework. FALSE when
    /// it cannot be created; PostNcDestroy has then been called.
    virtual BOOL CreateEx(DWORD exStyle, LPCTSTR className, LPCTSTR windowName, DWORD style,
                          const RECT& rect, CWnd* parent, UINT id, LPVOID parameter = nullptr);
    /// Does the same with the rectangle as a place and a size, and with handles.
    BOOL CreateEx(DWORD exStyle, LPCTSTR className, LPCTSTR windowName, DWORD style, int x, int y,
                  int width, int height, HWND parent, HMENU idOrMenu, LPVOID parameter = nullptr);
    /// May change the description of the window to create; FALSE refuses.
    virtual BOOL PreCreateWindow(CREATESTRUCT& description);
    /// FALSE when there is no window, or when the platform refuses because it belongs to another
    /// thread. The object may have deleted itself in PostNcDestroy.
    virtual BOOL DestroyWindow();

    /// TRUE when the message is handled and must not be dispatched. The default handles none.
    virtual BOOL PreTranslateMessage(MSG* message);
    /// The message that a window procedure of the framework is handling on this thread, or null.
    static const MSG* GetCurrentMessage();

    /// The platform's functions of these names, for this window.
    LRESULT SendMessage(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const
    {
        return ::SendMessageW(m_hWnd, message, wParam, lParam);
    }
    BOOL PostMessage(UINT message, WPARAM wParam = 0, LPARAM lParam = 0)
    {
        return ::PostMessageW(m_hWnd, message, wParam, lParam);
    }

    /// The window's style, and its extended one.
    DWORD GetStyle() const { return static_cast<DWORD>(::GetWindowLongW(m_hWnd, GWL_STYLE)); }
    DWORD GetExStyle() const { return static_cast<DWORD>(::GetWindowLongW(m_hWnd, GWL_EXSTYLE)); }
    /// TRUE when the style changed. Non-zero `positionFlags` are passed to SetWindowPos.
    BOOL ModifyStyle(DWORD remove, DWORD add, UINT positionFlags = 0);
    /// Does the same with the extended style.
    BOOL ModifyStyleEx(DWORD remove, DWORD add, UINT positionFlags = 0);
    /// The platform's functions of these names, for this window.
    int GetDlgCtrlID() const { return ::GetDlgCtrlID(m_hWnd); }
    CWnd* GetDlgItem(int id) const { return FromHandle(::GetDlgItem(m_hWnd, id)); }
    CWnd* GetParent() const { return FromHandle(::GetParent(m_hWnd)); }
    /// The window's owner, or its parent when it has none.
    CWnd* GetOwner() const
    {
        CWnd* const owner = GetWindow(GW_OWNER);
        return owner ? owner : GetParent();
    }
    /// The platform's functions of these names, for this window.
    CWnd* GetWindow(UINT command) const { return FromHandle(::GetWindow(m_hWnd, command)); }
    BOOL IsChild(const CWnd* window) const
    {
        return ::IsChild(m_hWnd, window ? window->m_hWnd : nullptr);
    }
    /// The platform's functions of these names; null for none.
    static CWnd* GetDesktopWindow() { return FromHandle(::GetDesktopWindow()); }
    static CWnd* GetActiveWindow() { return FromHandle(::GetActiveWindow()); }
    static CWnd* GetForegroundWindow() { return FromHandle(::GetForegroundWindow()); }
    static CWnd* GetFocus() { return FromHandle(::GetFocus()); }
    static CWnd* GetCapture() { return FromHandle(::GetCapture()); }

    /// The platform's functions of these names, for this window.
    void SetWindowText(LPCTSTR text) { ::SetWindowTextW(m_hWnd, text); }
    void GetWindowText(CString& text) const;
    int GetWindowTextLength() const { return ::GetWindowTextLengthW(m_hWnd); }
    /// The font that the window draws with; null is the system's. It stays the caller's.
    void SetFont(CFont* font, BOOL redraw = TRUE);
    CFont* GetFont() const
    {
        return CFont::FromHandle(reinterpret_cast<HFONT>(SendMessage(WM_GETFONT)));
    }

    /// The platform's functions of these names, for this window.
    BOOL ShowWindow(int command) { return ::ShowWindow(m_hWnd, command); }
    BOOL IsWindowVisible() const { return ::IsWindowVisible(m_hWnd); }
    BOOL IsIconic() const { return ::IsIconic(m_hWnd); }
    BOOL EnableWindow(BOOL enable = TRUE) { return ::EnableWindow(m_hWnd, enable); }
    BOOL IsWindowEnabled() const { return ::IsWindowEnabled(m_hWnd); }
    /// Disable and enable the window around a modal state of the application.
    virtual void BeginModalState() { EnableWindow(FALSE); }
    virtual void EndModalState() { EnableWindow(TRUE); }
    /// The platform's functions of these names, for this window. Three of them return the window
    /// that had the role before.
    CWnd* SetFocus() { return FromHandle(::SetFocus(m_hWnd)); }
    CWnd* SetActiveWindow() { return FromHandle(::SetActiveWindow(m_hWnd)); }
    BOOL SetForegroundWindow() { return ::SetForegroundWindow(m_hWnd); }
    void BringWindowToTop() { ::BringWindowToTop(m_hWnd); }
    CWnd* SetCapture() { return FromHandle(::SetCapture(m_hWnd)); }

    /// The platform's functions of these names, for this window. Of a rectangle both corners are
    /// converted.
    void GetWindowRect(LPRECT rect) const { ::GetWindowRect(m_hWnd, rect); }
    void GetClientRect(LPRECT rect) const { ::GetClientRect(m_hWnd, rect); }
    void ClientToScreen(LPPOINT point) const { ::ClientToScreen(m_hWnd, point); }
    void ScreenToClient(LPPOINT point) const { ::ScreenToClient(m_hWnd, point); }
    void ClientToScreen(LPRECT rect) const
    {
        ::MapWindowPoints(m_hWnd, nullptr, reinterpret_cast<LPPOINT>(rect), 2);
    }
    void ScreenToClient(LPRECT rect) const
    {
        ::MapWindowPoints(nullptr, m_hWnd, reinterpret_cast<LPPOINT>(rect), 2);
    }
    void MoveWindow(int x, int y, int width, int height, BOOL repaint = TRUE)
    {
        ::MoveWindow(m_hWnd, x, y, width, height, repaint);
    }
    void MoveWindow(LPCRECT rect, BOOL repaint = TRUE);
    /// A null `after` means the top of the Z order, unless `flags` say otherwise.
    BOOL SetWindowPos(const CWnd* after, int x, int y, int width, int height, UINT flags)
    {
        return ::SetWindowPos(m_hWnd, after ? after->m_hWnd : nullptr, x, y, width, height, flags);
    }

    /// The platform's functions of these names, for this window.
    void Invalidate(BOOL erase = TRUE) { ::InvalidateRect(m_hWnd, nullptr, erase); }
    void InvalidateRect(LPCRECT rect, BOOL erase = TRUE) { ::InvalidateRect(m_hWnd, rect, erase); }
    void ValidateRect(LPCRECT rect) { ::ValidateRect(m_hWnd, rect); }
    void UpdateWindow() { ::UpdateWindow(m_hWnd); }
    BOOL RedrawWindow(LPCRECT rect = nullptr,
                      UINT flags = RDW_INVALIDATE | RDW_UPDATENOW | RDW_ERASE)
    {
        return ::RedrawWindow(m_hWnd, rect, nullptr, flags);
    }
    /// The caller must release it with ReleaseDC.
    CDC* GetDC() { return CDC::FromHandle(::GetDC(m_hWnd)); }
    /// Gives a context of GetDC back; 0 for null.
    int ReleaseDC(CDC* dc) { return dc ? ::ReleaseDC(m_hWnd, dc->m_hDC) : 0; }

    /// The platform's functions of these names, for this window.
    UINT_PTR SetTimer(UINT_PTR id, UINT milliseconds, TIMERPROC procedure)
    {
        return ::SetTimer(m_hWnd, id, milliseconds, procedure);
    }
    BOOL KillTimer(UINT_PTR id) { return ::KillTimer(m_hWnd, id); }
    int MessageBox(LPCTSTR text, LPCTSTR caption = nullptr, UINT type = MB_OK)
    {
        return ::MessageBoxW(m_hWnd, text, caption, type);
    }

protected:
    /// WindowProc passes a message to OnWndMsg, which looks it up in the message map. A message
    /// that is not there goes to DefWindowProc, the window class's own procedure.
    virtual LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam);
    virtual BOOL OnWndMsg(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result);
    virtual LRESULT DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam);
    /// Handles WM_COMMAND; TRUE when handled. The default looks for the command or notification in
    /// the message map.
    virtual BOOL OnCommand(WPARAM wParam, LPARAM lParam);
    /// Called last, when the window is gone; an object on the heap may delete itself here.
    virtual void PostNcDestroy();
    /// Calls DefWindowProc with the message that is being handled.
    LRESULT Default();

    /// The default handlers; each calls Default(). Handlers of a derived class name them in its
    /// message map.
    afx_msg int OnCreate(LPCREATESTRUCT description);
    afx_msg void OnDestroy();
    afx_msg void OnNcDestroy();
    afx_msg void OnClose();
    afx_msg void OnPaint();
    afx_msg BOOL OnEraseBkgnd(CDC* dc);
    afx_msg void OnSize(UINT type, int width, int height);
    afx_msg void OnMove(int x, int y);
    afx_msg void OnTimer(UINT_PTR id);
    afx_msg void OnShowWindow(BOOL show, UINT status);
    afx_msg void OnEnable(BOOL enable);
    afx_msg void OnSetFocus(CWnd* old);
    afx_msg void OnKillFocus(CWnd* next);
    afx_msg BOOL OnSetCursor(CWnd* window, UINT hitTest, UINT message);
    afx_msg void OnCaptureChanged(CWnd* next);
    afx_msg void OnKeyDown(UINT key, UINT repeat, UINT flags);
    afx_msg void OnKeyUp(UINT key, UINT repeat, UINT flags);
    afx_msg void OnChar(UINT character, UINT repeat, UINT flags);
    afx_msg void OnMouseMove(UINT flags, CPoint point);
    afx_msg BOOL OnMouseWheel(UINT flags, short delta, CPoint point);
    afx_msg void OnLButtonDown(UINT flags, CPoint point);
    afx_msg void OnLButtonUp(UINT flags, CPoint point);
    afx_msg void OnLButtonDblClk(UINT flags, CPoint point);
    afx_msg void OnRButtonDown(UINT flags, CPoint point);
    afx_msg void OnRButtonUp(UINT flags, CPoint point);
    afx_msg void OnMButtonDown(UINT flags, CPoint point);
    afx_msg void OnMButtonUp(UINT flags, CPoint point);
    DECLARE_MESSAGE_MAP()

private:
    friend class WindowProcedure;

    WNDPROC m_pfnSuper = nullptr; // the window class's procedure, once the window is subclassed
};

/// Returns the name of a window class with these properties, which is registered when it is new.
/// The name is valid until the thread's next call. It is empty when the platform refuses.
MFC_API LPCTSTR AfxRegisterWndClass(UINT style, HCURSOR cursor = nullptr,
                                    HBRUSH background = nullptr, HICON icon = nullptr);
