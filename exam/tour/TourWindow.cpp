// Station 12: the window as a user has it, in sizes and on screens of several resolutions.
#include "base/Dpi.h"
#include "image/PictureFile.h"
#include "tour/Tour.h"
#include "window/Capture.h"

#include <base/GdiHandles.h>

#include <algorithm>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace exam {

namespace {

struct Size
{
    const wchar_t* name;
    CSize pixels;
    int dpi;
};

constexpr Size sizes[] = {{L"800x600", {800, 600}, 96},
                          {L"1280x800", {1280, 800}, 96},
                          {L"1920x1080", {1920, 1080}, 96},
                          {L"1280x800-144dpi", {1280, 800}, 144},
                          {L"1920x1080-192dpi", {1920, 1080}, 192}};

// An enumeration callback that stops at a window that is not whole in its parent.
BOOL CALLBACK IsWhole(HWND child, LPARAM result)
{
    CRect area;
    CRect room;
    GetWindowRect(child, &area);
    GetClientRect(GetParent(child), &room);
    MapWindowPoints(GetParent(child), nullptr, reinterpret_cast<POINT*>(&room), 2);
    CRect seen;
    seen.IntersectRect(&area, &room);
    const bool isWhole = !IsWindowVisible(child) || (!area.IsRectEmpty() && seen == area);
    if (!isWhole) *reinterpret_cast<bool*>(result) = false;
    return isWhole;
}

bool AreAllWhole(HWND window)
{
    bool areWhole = true;
    EnumChildWindows(window, IsWhole, reinterpret_cast<LPARAM>(&areWhole));
    return areWhole;
}

// A picture of a window's client area. A window that is larger than the screen is moved about and
// looked at part by part. One that is not stays where all of it is on the screen, because a
// platform may keep no pixels of what lies outside.
class WindowPicture
{
public:
    explicit WindowPicture(HWND window) : m_screen(nullptr)
    {
        GetClientRect(window, &m_client);
        m_memory.reset(CreateCompatibleDC(m_screen.get()));
        m_bitmap.reset(CreateCompatibleBitmap(m_screen.get(), m_client.Width(), m_client.Height()));
        m_selection.emplace(m_memory.get(), m_bitmap.get());
        CRect before;
        GetWindowRect(window, &before);
        const CSize screen(GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN));
        if (before.Width() <= screen.cx && before.Height() <= screen.cy) {
            MoveTo(window, CPoint(0, 0));
            Take(window, m_client);
        } else
            TakeParts(window, {screen.cx / 2, screen.cy / 2});
        MoveTo(window, before.TopLeft());
    }

    // A bitmap is saved while no context holds it.
    bool Save(const std::wstring& path)
    {
        m_selection.reset();
        const bool isSaved = SavePng(m_bitmap.get(), path);
        m_selection.emplace(m_memory.get(), m_bitmap.get());
        return isSaved;
    }

    // True when a part has more than two colours.
    bool IsDrawn(const CRect& part) const
    {
        constexpr int step = 3; // pixels
        std::set<COLORREF> colours;
        for (int y = part.top; y < part.bottom; y += step)
            for (int x = part.left; x < part.right && colours.size() < 3; x += step)
                colours.insert(GetPixel(m_memory.get(), x, y));
        return colours.size() > 2;
    }

    const CRect& Client() const { return m_client; }

private:
    static void MoveTo(HWND window, CPoint corner)
    {
        SetWindowPos(window, nullptr, corner.x, corner.y, 0, 0,
                     SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
    }

    void TakeParts(HWND window, CSize size)
    {
        CRect all;
        CPoint origin(0, 0);
        GetWindowRect(window, &all);
        ClientToScreen(window, &origin);
        all.OffsetRect(-origin);
        for (int y = 0; y < m_client.bottom; y += size.cy)
            for (int x = 0; x < m_client.right; x += size.cx) {
                MoveTo(window, {all.left - x, all.top - y});
                Take(window, CRect(CPoint(x, y), size));
            }
    }

    void Take(HWND window, const CRect& part)
    {
        RedrawWindow(window, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW | RDW_ALLCHILDREN);
        BitBlt(m_memory.get(), part.left, part.top, part.Width(), part.Height(),
               base::WindowContext(window).get(), part.left, part.top, SRCCOPY);
    }

    base::WindowContext m_screen;
    CRect m_client;
    base::MemoryContext m_memory;
    base::Bitmap m_bitmap;
    std::optional<base::Selection> m_selection; // uses the members above
};

class Visit
{
public:
    Visit(TourContext& context, const Size& size) : m_context(context), m_size(size)
    {
        AssumeDpi(size.dpi);
        context.window.TakeForm(WindowForm::window, CRect(CPoint(0, 0), size.pixels));
    }

    void Docked()
    {
        Look(L"docked", {Layout().controlPanel});
        m_context.state.NextLanguage();
        m_context.state.SelectImage(simulatedLinear);
        m_context.state.SetFrozen(true);
        m_context.state.ShowStrip(true);
        Look(L"other-language", {Layout().strip, Layout().controlPanel});
        m_context.state.ShowStrip(false);
        m_context.state.SelectImage(curvedRecording);
        m_context.state.NextLanguage();
    }

    void Keys()
    {
        m_context.Key(VK_F1);
        Window(L"keys", m_context.window.Keys().GetSafeHwnd());
        m_context.Key(VK_F1);
    }

    void Floating()
    {
        m_context.Key('J');
        Look(L"floating", {});
        Window(L"floating-panel", m_context.window.Panel().GetSafeHwnd());
        m_context.Key('J');
    }

    void Hidden()
    {
        m_context.Key('K');
        Look(L"hidden", {});
        m_context.Key('K');
    }

    void Zoomed()
    {
        m_context.state.ZoomAt(3, Layout().image.CenterPoint() - CSize(Layout().image.TopLeft()));
        Look(L"zoomed", {Layout().controlPanel});
        m_context.state.ShowWhole();
    }

private:
    const ScreenLayout& Layout() const { return m_context.state.Layout(); }
    std::wstring Name(const wchar_t* form) const
    {
        return L"window-" + std::wstring(m_size.name) + L"-" + form;
    }

    std::wstring PathOf(const std::wstring& picture) const
    {
        return m_context.folder + L"\\" + picture + L".png";
    }

    // Looks at a window that stands over the main one.
    void Window(const wchar_t* name, HWND window)
    {
        m_context.HandlePending();
        WindowPicture picture(window);
        m_context.report.Step(picture.Save(PathOf(Name(name))) &&
                                  picture.IsDrawn(picture.Client()) && AreAllWhole(window),
                              L"picture " + Name(name) + L".png shows all of it");
    }

    void Look(const wchar_t* form, std::vector<CRect> parts)
    {
        const HWND window = m_context.window.GetSafeHwnd();
        m_context.HandlePending();
        WindowPicture picture(window);
        m_context.report.Step(picture.Save(PathOf(Name(form))), L"picture " + Name(form) + L".png");
        m_context.report.Step(picture.Client().Size() == Layout().client && AreAllWhole(window),
                              Name(form) + L": no window is clipped");
        parts.insert(parts.end(), {Layout().header, Layout().image, Layout().panel, Layout().tools,
                                   Layout().timeline, Layout().badge});
        m_context.report.Step(
            std::ranges::all_of(parts, [&](const CRect& part) { return picture.IsDrawn(part); }),
            Name(form) + L": no part is empty");
    }

    TourContext& m_context;
    const Size& m_size;
};

} // namespace

void TourWindow(TourContext& context)
{
    // These windows may be larger than the screen, so the look at the screen is put off.
    const auto look = std::exchange(context.report.look, {});
    for (const Size& size : sizes) {
        Visit visit(context, size);
        visit.Docked();
        visit.Keys();
        visit.Floating();
        visit.Hidden();
        visit.Zoomed();
    }
    context.window.Panel().SendMessage(WM_MOUSELEAVE); // it was moved below the pointer
    AssumeDpi(0);
    context.window.TakeForm(WindowForm::console, CRect(CPoint(0, 0), ConsoleLayout().client));
    context.report.look = look;
}

} // namespace exam
