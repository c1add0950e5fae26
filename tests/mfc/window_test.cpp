// Real windows and their message maps.
#include <afxwin.h>

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace {

constexpr UINT askMessage = WM_APP + 22;
constexpr UINT throwMessage = WM_APP + 23;
constexpr UINT deleteMessage = WM_APP + 24;

// Writes down what reaches it.
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
        Note(L"cursor %d %d %u", window == this, static_cast<int>(hit), message);
        return TRUE;
    }
    afx_msg void OnCaptureChanged(CWnd* next) { Note(L"capture %d", next == this); }
    afx_msg void OnKeyDown(UINT key, UINT repeat, UINT flags) { Note(L"down %u %u %u", key, repeat, flags); }
    afx_msg void OnKeyUp(UINT key, UINT repeat, UINT flags) { Note(L"up %u %u %u", key, repeat, flags); }
    afx_msg void OnChar(UINT key, UINT repeat, UINT flags) { Note(L"char %u %u %u", key, repeat, flags); }
    afx_msg void OnMouseMove(UINT flags, CPoint at) { Note(L"mouse %u %d %d", flags, at.x, at.y); }
    afx_msg BOOL OnMouseWheel(UINT flags, short delta, CPoint at)
    {
        Note(L"wheel %u %d %d %d", flags, delta, at.x, at.y);
        return TRUE;
    }
    afx_msg void OnLButtonDown(UINT flags, CPoint at) { Note(L"left %u %d %d", flags, at.x, at.y); }
    afx_msg void OnLButtonUp(UINT flags, CPoint at) { Note(L"left up %u %d %d", flags, at.x, at.y); }
    afx_msg LRESULT OnAsk(WPARAM wParam, LPARAM lParam) { return static_cast<LRESULT>(wParam) + lParam; }
    afx_msg LRESULT OnThrow(WPARAM, LPARAM) { throw std::runtime_error("thrown by a handler"); }
    afx_msg void OnBaseCommand() { Note(L"command of the base"); }
    afx_msg void OnChosen() { Note(L"chosen"); }
    afx_msg void OnSelection() { Note(L"selection"); }
    DECLARE_MESSAGE_MAP()
};

BEGIN_MESSAGE_MAP(RecordingWindow, CWnd)
ON_WM_CREATE()
ON_WM_DESTROY()
ON_WM_PAINT()
ON_WM_ERASEBKGND()
ON_WM_SIZE()
ON_WM_MOVE()
ON_WM_TIMER()
ON_WM_CLOSE()
ON_WM_SHOWWINDOW()
ON_WM_ENABLE()
ON_WM_SETFOCUS()
ON_WM_KILLFOCUS()
ON_WM_SETCURSOR()
ON_WM_CAPTURECHANGED()
ON_WM_KEYDOWN()
ON_WM_KEYUP()
ON_WM_CHAR()
ON_WM_MOUSEMOVE()
ON_WM_MOUSEWHEEL()
ON_WM_LBUTTONDOWN()
ON_WM_LBUTTONUP()
ON_MESSAGE(askMessage, OnAsk)
ON_MESSAGE(throwMessage, OnThrow)
ON_COMMAND(100, OnBaseCommand)
ON_COMMAND(101, OnChosen)
ON_CBN_SELCHANGE(7, OnSelection)
END_MESSAGE_MAP()

// Overrides one entry of its base class and leaves the others.
class DerivedWindow : public RecordingWindow
{
protected:
    afx_msg void OnDerivedCommand() { Note(L"command of the derived class"); }
    DECLARE_MESSAGE_MAP()
};

BEGIN_MESSAGE_MAP(DerivedWindow, RecordingWindow)
ON_COMMAND(100, OnDerivedCommand)
END_MESSAGE_MAP()

class HeapWindow : public CWnd
{
public:
    explicit HeapWindow(bool& gone) : m_gone(gone) {}
    ~HeapWindow() override { m_gone = true; }

protected:
    void PostNcDestroy() override { delete this; }
    LRESULT OnDelete(WPARAM, LPARAM)
    {
        DestroyWindow();
        return 5; // the object is gone
    }
    DECLARE_MESSAGE_MAP()

private:
    bool& m_gone;
};

BEGIN_MESSAGE_MAP(HeapWindow, CWnd)
ON_MESSAGE(deleteMessage, OnDelete)
END_MESSAGE_MAP()

using Calls = std::vector<std::wstring>;

bool Contains(const Calls& calls, const std::wstring& call)
{
    return std::find(calls.begin(), calls.end(), call) != calls.end();
}

void DispatchPosted()
{
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE))
        DispatchMessageW(&message);
}

} // namespace

TEST(Window, ReceivesItsFirstMessages)
{
    RecordingWindow window;
    ASSERT_TRUE(window.Open());
    EXPECT_TRUE(IsWindow(window.m_hWnd));
    EXPECT_EQ(CWnd::FromHandle(window.m_hWnd), &window);
    EXPECT_EQ(CWnd::FromHandlePermanent(window.m_hWnd), &window);
    const Calls calls = window.Take();
    EXPECT_TRUE(Contains(calls, L"create recording"));
}

TEST(Window, LetsTheHandlerOfTheFirstMessageRefuse)
{
    RecordingWindow window;
    window.refuseCreation = true;
    EXPECT_FALSE(window.Open());
    EXPECT_EQ(window.m_hWnd, nullptr);
    window.refuseCreation = false;
    EXPECT_TRUE(window.Open());
    EXPECT_FALSE(window.Open()); // it has a window already
}

TEST(Window, ReportsAClassThatDoesNotExist)
{
    CWnd window;
    EXPECT_FALSE(window.CreateEx(0, L"no such class", L"", WS_OVERLAPPED, CRect(0, 0, 1, 1), nullptr, 0));
    EXPECT_EQ(window.GetSafeHwnd(), nullptr);
    // The refused window must not take the next one that the thread creates.
    const HWND other =
        CreateWindowExW(0, L"STATIC", L"", WS_OVERLAPPED, 0, 0, 1, 1, nullptr, nullptr, nullptr, nullptr);
    EXPECT_EQ(CWnd::FromHandlePermanent(other), nullptr);
    ::DestroyWindow(other);
}

TEST(Window, IsDestroyedWithItsObject)
{
    HWND handle;
    {
        RecordingWindow window;
        window.Open();
        handle = window;
    }
    EXPECT_FALSE(IsWindow(handle));
    EXPECT_EQ(CWnd::FromHandlePermanent(handle), nullptr);
}

TEST(Window, IsForgottenWhenItIsDestroyedFromOutside)
{
    RecordingWindow window;
    window.Open();
    ::DestroyWindow(window);
    EXPECT_EQ(window.m_hWnd, nullptr);
    EXPECT_TRUE(Contains(window.Take(), L"destroy"));
    EXPECT_TRUE(window.Open()); // and may be opened anew
}

TEST(Window, OnTheHeapMayDeleteItself)
{
    bool gone = false;
    auto* const window = new HeapWindow(gone);
    ASSERT_TRUE(window->CreateEx(0, nullptr, L"", WS_OVERLAPPED, CRect(0, 0, 1, 1), nullptr, 0));
    EXPECT_EQ(::SendMessageW(window->m_hWnd, deleteMessage, 0, 0), 5);
    EXPECT_TRUE(gone);
}

TEST(Window, OnTheHeapDeletesItselfAlsoWhenItCannotBeCreated)
{
    bool gone = false;
    auto* const window = new HeapWindow(gone);
    EXPECT_FALSE(window->CreateEx(0, L"no such class", L"", WS_OVERLAPPED, CRect(0, 0, 1, 1), nullptr, 0));
    EXPECT_TRUE(gone);
}

TEST(Window, IsNotCreatedWhenItsObjectFailsBeforeTheFirstMessage)
{
    class Throwing : public RecordingWindow
    {
    protected:
        void PreSubclassWindow() override { throw std::runtime_error("before the first message"); }
        void PostNcDestroy() override { Note(L"gone"); }
    };
    Throwing window;
    EXPECT_FALSE(window.Open());
    EXPECT_EQ(window.m_hWnd, nullptr);
    EXPECT_EQ(window.Take(), (Calls{L"gone"}));
}

TEST(Window, CreatesOthersWhileItIsCreated)
{
    class Parent : public RecordingWindow
    {
    public:
        RecordingWindow child;

    protected:
        LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override
        {
            const LRESULT result = RecordingWindow::WindowProc(message, wParam, lParam);
            if (message == WM_CREATE) child.Open(WS_CHILD, this);
            return result;
        }
    };
    Parent window;
    ASSERT_TRUE(window.Open());
    EXPECT_EQ(window.child.GetParent(), &window);
    EXPECT_TRUE(Contains(window.child.Take(), L"create recording"));
}

TEST(Window, OfAnotherThreadIsForgottenWithItsObject)
{
    const HWND handle = GetDesktopWindow();
    {
        CWnd window;
        ASSERT_TRUE(window.Attach(handle));
    }
    EXPECT_TRUE(IsWindow(handle));
    EXPECT_EQ(CWnd::FromHandlePermanent(handle), nullptr);
}

TEST(Window, TranslatesTheParametersOfMessages)
{
    RecordingWindow window;
    window.Open();
    window.Take();
    window.SendMessage(WM_SIZE, SIZE_MAXIMIZED, MAKELPARAM(40000, 5));
    window.SendMessage(WM_MOVE, 0, MAKELPARAM(0xFFFF, 7));
    window.SendMessage(WM_TIMER, 8345, 0);
    window.SendMessage(WM_KEYDOWN, VK_ESCAPE, 0x00010001);
    window.SendMessage(WM_KEYUP, VK_ESCAPE, static_cast<LPARAM>(0xC0010001u));
    window.SendMessage(WM_CHAR, L'x', 2);
    window.SendMessage(WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(0xFFFE, 12));
    window.SendMessage(WM_MOUSEWHEEL, MAKEWPARAM(MK_SHIFT, 0xFF88), MAKELPARAM(3, 4));
    window.SendMessage(WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(1, 2));
    window.SendMessage(WM_LBUTTONUP, 0, MAKELPARAM(1, 2));
    window.SendMessage(WM_SETCURSOR, reinterpret_cast<WPARAM>(window.m_hWnd), MAKELPARAM(HTERROR, WM_MOUSEMOVE));
    window.SendMessage(WM_CLOSE);
    EXPECT_EQ(window.Take(), (Calls{L"size 2 40000 5", L"move -1 7", L"timer 8345", L"down 27 1 1", L"up 27 1 49153",
                                    L"char 120 2 0", L"mouse 1 -2 12", L"wheel 4 -120 3 4", L"left 1 1 2",
                                    L"left up 0 1 2", L"cursor 1 -2 512", L"close"}));
    EXPECT_TRUE(IsWindow(window)); // the handler of WM_CLOSE did not pass it on
}

TEST(Window, AnswersApplicationMessages)
{
    RecordingWindow window;
    window.Open();
    EXPECT_EQ(window.SendMessage(askMessage, 40, 2), 42);
    EXPECT_EQ(window.SendMessage(WM_APP + 999, 1, 1), 0);
}

TEST(Window, PaintsAndErases)
{
    RecordingWindow window;
    window.Open(WS_OVERLAPPEDWINDOW | WS_VISIBLE);
    window.UpdateWindow();
    DispatchPosted();
    window.Take();
    window.eraseItself = true;
    window.Invalidate();
    window.UpdateWindow();
    const Calls calls = window.Take();
    EXPECT_TRUE(Contains(calls, L"paint"));
    EXPECT_TRUE(Contains(calls, L"erase 1"));
    EXPECT_FALSE(GetUpdateRect(window, nullptr, FALSE));
}

TEST(Window, RoutesCommandsToTheMostDerivedHandler)
{
    DerivedWindow window;
    window.Open();
    window.Take();
    window.SendMessage(WM_COMMAND, MAKEWPARAM(100, 0), 0);
    window.SendMessage(WM_COMMAND, MAKEWPARAM(101, 1), 0); // an accelerator
    window.SendMessage(WM_COMMAND, MAKEWPARAM(102, 0), 0);
    EXPECT_EQ(window.Take(), (Calls{L"command of the derived class", L"chosen"}));
    EXPECT_EQ(window.SendMessage(askMessage, 1, 2), 3); // an entry of the base class
}

TEST(Window, LetsNoExceptionOut)
{
    RecordingWindow window;
    window.Open(WS_OVERLAPPEDWINDOW | WS_VISIBLE);
    EXPECT_EQ(window.SendMessage(throwMessage), 0);
    window.throwInPaint = true;
    window.Invalidate();
    window.UpdateWindow();
    EXPECT_FALSE(GetUpdateRect(window, nullptr, FALSE)); // or it would be painted for ever
    RecordingWindow other;
    other.throwInCreation = true;
    EXPECT_FALSE(other.Open());
    EXPECT_EQ(other.m_hWnd, nullptr);
}

TEST(Window, DefaultsOutsideOfAMessageDoNothing)
{
    class Caller : public CWnd
    {
    public:
        using CWnd::OnPaint;
    };
    Caller window;
    ASSERT_TRUE(window.CreateEx(0, nullptr, L"", WS_OVERLAPPED, CRect(0, 0, 1, 1), nullptr, 0));
    EXPECT_EQ(CWnd::GetCurrentMessage(), nullptr);
    window.OnPaint();
    EXPECT_TRUE(IsWindow(window));
}

TEST(Window, MayBeOfAControlsClassFromItsFirstMessageOn)
{
    class Hidden : public RecordingWindow
    {
    };
    Hidden window;
    ASSERT_TRUE(window.CWnd::CreateEx(0, L"Static", L"message only", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr));
    EXPECT_EQ(window.Take(), (Calls{L"create message only"}));
    EXPECT_EQ(window.SendMessage(askMessage, 1, 1), 2);
    CString text;
    window.GetWindowText(text);
    EXPECT_EQ(text, L"message only");
    wchar_t name[20] = {};
    GetClassNameW(window, name, 20);
    EXPECT_STREQ(name, L"Static");
}

TEST(Window, SubclassesAnExistingOneAndGivesItBack)
{
    const HWND handle =
        CreateWindowExW(0, L"STATIC", L"text", WS_OVERLAPPED, 0, 0, 5, 5, nullptr, nullptr, nullptr, nullptr);
    const LONG_PTR procedure = GetWindowLongPtrW(handle, GWLP_WNDPROC);
    RecordingWindow window;
    ASSERT_TRUE(window.SubclassWindow(handle));
    EXPECT_EQ(::SendMessageW(handle, askMessage, 2, 3), 5);
    RecordingWindow second;
    EXPECT_FALSE(second.SubclassWindow(handle)); // it has an object already
    EXPECT_EQ(window.UnsubclassWindow(), handle);
    EXPECT_EQ(GetWindowLongPtrW(handle, GWLP_WNDPROC), procedure);
    EXPECT_EQ(::SendMessageW(handle, askMessage, 2, 3), 0);
    EXPECT_TRUE(::DestroyWindow(handle));
}

TEST(Window, AttachesWithoutRouting)
{
    const HWND handle =
        CreateWindowExW(0, L"STATIC", L"", WS_OVERLAPPED, 0, 0, 5, 5, nullptr, nullptr, nullptr, nullptr);
    {
        RecordingWindow window;
        EXPECT_FALSE(window.Attach(nullptr));
        ASSERT_TRUE(window.Attach(handle));
        EXPECT_EQ(window.SendMessage(askMessage, 2, 3), 0);
        EXPECT_EQ(window.Detach(), handle);
        EXPECT_EQ(window.Detach(), nullptr);
    }
    EXPECT_TRUE(IsWindow(handle));
    {
        CWnd window;
        window.Attach(handle);
    }
    EXPECT_FALSE(IsWindow(handle)); // an attached window belongs to its object
}

TEST(Window, HasTemporaryObjectsThatOwnNothing)
{
    const HWND handle =
        CreateWindowExW(0, L"STATIC", L"", WS_OVERLAPPED, 0, 0, 5, 5, nullptr, nullptr, nullptr, nullptr);
    CWnd* const temporary = CWnd::FromHandle(handle);
    EXPECT_EQ(CWnd::FromHandle(handle), temporary);
    EXPECT_EQ(CWnd::FromHandlePermanent(handle), nullptr);
    EXPECT_EQ(CWnd::FromHandle(nullptr), nullptr);
    CWnd::DeleteTempMap();
    EXPECT_TRUE(IsWindow(handle));
    ::DestroyWindow(handle);
}

TEST(Window, KnowsItsFamily)
{
    RecordingWindow parent;
    parent.Open();
    CWnd child;
    ASSERT_TRUE(child.Create(L"STATIC", L"child", WS_VISIBLE, CRect(1, 2, 11, 22), &parent, 7));
    EXPECT_EQ(child.GetParent(), &parent);
    EXPECT_EQ(parent.GetDlgItem(7), &child);
    EXPECT_EQ(child.GetDlgCtrlID(), 7);
    EXPECT_TRUE(parent.IsChild(&child));
    EXPECT_FALSE(child.IsChild(nullptr));
    CRect client;
    child.GetClientRect(&client);
    EXPECT_EQ(client, CRect(0, 0, 10, 20));
    CPoint point(0, 0);
    child.ClientToScreen(&point);
    parent.ScreenToClient(&point);
    EXPECT_EQ(point, CPoint(1, 2));
    CRect rect;
    child.GetWindowRect(&rect);
    parent.ScreenToClient(&rect);
    EXPECT_EQ(rect, CRect(1, 2, 11, 22));
    parent.DestroyWindow();
    EXPECT_EQ(child.m_hWnd, nullptr); // children go with their parent
}

TEST(Window, ChangesItsState)
{
    RecordingWindow window;
    window.Open();
    window.Take();
    EXPECT_FALSE(window.EnableWindow(FALSE));
    EXPECT_FALSE(window.IsWindowEnabled());
    window.EndModalState();
    EXPECT_TRUE(window.IsWindowEnabled());
    window.BeginModalState();
    EXPECT_FALSE(window.IsWindowEnabled());
    window.EnableWindow();
    EXPECT_EQ(window.Take(), (Calls{L"enable 0", L"enable 1", L"enable 0", L"enable 1"}));
    window.ShowWindow(SW_SHOWNOACTIVATE);
    EXPECT_TRUE(window.IsWindowVisible());
    EXPECT_TRUE(Contains(window.Take(), L"show 1 0"));
    window.SetWindowText(L"new text");
    CString text;
    window.GetWindowText(text);
    EXPECT_EQ(text, L"new text");
    EXPECT_TRUE(window.ModifyStyle(WS_MAXIMIZEBOX, WS_HSCROLL, SWP_FRAMECHANGED));
    EXPECT_FALSE(window.ModifyStyle(WS_MAXIMIZEBOX, WS_HSCROLL));
    EXPECT_EQ(window.GetStyle() & (WS_MAXIMIZEBOX | WS_HSCROLL), static_cast<DWORD>(WS_HSCROLL));
    window.MoveWindow(CRect(5, 6, 305, 206));
    CRect rect;
    window.GetWindowRect(&rect);
    EXPECT_EQ(rect.Size(), CSize(300, 200));
    CFont font;
    font.CreatePointFont(90, L"Arial");
    CWnd label;
    label.Create(L"STATIC", L"", 0, CRect(0, 0, 5, 5), &window, 1);
    label.SetFont(&font);
    EXPECT_EQ(label.GetFont(), &font);
}

TEST(Window, ReceivesItsTimers)
{
    RecordingWindow window;
    window.Open();
    window.Take();
    EXPECT_NE(window.SetTimer(8345, 10, nullptr), 0u);
    const ULONGLONG limit = GetTickCount64() + 30000;
    MSG message;
    while (!Contains(window.calls, L"timer 8345") && GetTickCount64() < limit &&
           GetMessageW(&message, nullptr, 0, 0) > 0)
        DispatchMessageW(&message);
    EXPECT_TRUE(Contains(window.Take(), L"timer 8345"));
    EXPECT_TRUE(window.KillTimer(8345));
}

TEST(Window, OfTheApplicationEndsItsLoop)
{
    CWinApp application;
    RecordingWindow window;
    window.Open();
    application.m_pMainWnd = &window;
    window.DestroyWindow();
    EXPECT_EQ(application.m_pMainWnd, nullptr);
    MSG message = {};
    EXPECT_TRUE(PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE));
    EXPECT_EQ(message.message, static_cast<UINT>(WM_QUIT));
}

TEST(Window, LeaksNoUserHandles)
{
    const auto work = [] {
        RecordingWindow window;
        window.Open();
        CWnd child;
        child.Create(L"STATIC", L"", 0, CRect(0, 0, 5, 5), &window, 1);
    };
    for (int i = 0; i < 3; ++i)
        work();
    const DWORD before = GetGuiResources(GetCurrentProcess(), GR_USEROBJECTS);
    for (int i = 0; i < 100; ++i)
        work();
    EXPECT_LE(GetGuiResources(GetCurrentProcess(), GR_USEROBJECTS), before + 2);
}

TEST(WindowClass, IsRegisteredOnce)
{
    const CString name = AfxRegisterWndClass(CS_HREDRAW, LoadCursorW(nullptr, IDC_ARROW));
    EXPECT_FALSE(name.IsEmpty());
    EXPECT_EQ(CString(AfxRegisterWndClass(CS_HREDRAW, LoadCursorW(nullptr, IDC_ARROW))), name);
    EXPECT_NE(CString(AfxRegisterWndClass(CS_VREDRAW, LoadCursorW(nullptr, IDC_ARROW))), name);
    WNDCLASS description = {};
    EXPECT_TRUE(GetClassInfoW(GetModuleHandleW(nullptr), name, &description));
    EXPECT_EQ(description.style, static_cast<UINT>(CS_HREDRAW));
}

TEST(ComboBox, KeepsItems)
{
    RecordingWindow parent;
    parent.Open();
    CComboBox box;
    ASSERT_TRUE(box.Create(WS_VISIBLE | CBS_DROPDOWNLIST, CRect(0, 0, 100, 200), &parent, 7));
    EXPECT_EQ(box.GetCount(), 0);
    EXPECT_EQ(box.AddString(L"one"), 0);
    EXPECT_EQ(box.AddString(L"three"), 1);
    EXPECT_EQ(box.InsertString(1, L"two"), 1);
    EXPECT_EQ(box.GetCount(), 3);
    CString text;
    box.GetLBText(1, text);
    EXPECT_EQ(text, L"two");
    box.GetLBText(9, text);
    EXPECT_EQ(text, L"two");
    EXPECT_EQ(box.FindStringExact(-1, L"three"), 2);
    EXPECT_EQ(box.GetCurSel(), CB_ERR);
    EXPECT_EQ(box.SetCurSel(2), 2);
    EXPECT_EQ(box.GetCurSel(), 2);
    EXPECT_GT(box.GetItemHeight(-1), 0);
    EXPECT_EQ(box.DeleteString(0), 2);
    parent.Take();
    parent.SendMessage(WM_COMMAND, MAKEWPARAM(7, CBN_SELCHANGE), reinterpret_cast<LPARAM>(box.m_hWnd));
    EXPECT_EQ(parent.Take(), (Calls{L"selection"}));
    box.ResetContent();
    EXPECT_EQ(box.GetCount(), 0);
}
