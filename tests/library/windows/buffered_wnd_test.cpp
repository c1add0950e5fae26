// CBufferedWnd: real windows over a patterned parent, and the result on the screen.
#include "PatternWindow.h"

#include <gtest/gtest.h>
#include <test_support/ResourceCounts.h>
#include <test_support/VirtualPlace.h>
#include <Utils_Statics/CBufferedWnd.h>

#include <functional>
#include <memory>
#include <stdexcept>
#include <type_traits>

static_assert(std::is_abstract_v<CBufferedWnd>);
static_assert(std::is_base_of_v<CWnd, CBufferedWnd>);

namespace {

CWinApp application(L"buffered_wnd_test");

// Overrides only what a class has to supply.
class PlainOverlay : public CBufferedWnd
{
public:
    void PlaceOver(const CRect& image) override { MoveWindow(&image); }
    void Refresh() override { Invalidate(FALSE); }

    using CBufferedWnd::m_buffer;
    using CBufferedWnd::m_inverseMask;
    using CBufferedWnd::m_mask;
};

// An overlay with content of its own that counts its calls.
class Overlay : public PlainOverlay
{
public:
    void Draw(CDC* dc) override
    {
        ++draws;
        CRect client;
        GetClientRect(&client);
        for (int y = 0; y < client.Height(); ++y)
            for (int x = 0; x < client.Width(); ++x)
                SetPixelV(*dc, x, y, ContentAt(x, y));
        if (onDraw) onDraw();
    }
    void DrawMask(CDC* dc) override
    {
        ++masks;
        CRect client;
        GetClientRect(&client);
        dc->FillSolidRect(&client, RGB(0, 0, 0));
        for (int y = 0; y < client.Height(); ++y)
            for (int x = 0; x < client.Width(); ++x)
                if (IsInside(x, y)) SetPixelV(*dc, x, y, RGB(255, 255, 255));
        if (onDrawMask) onDrawMask();
    }
    int IsRectMask() override { return isRect ? 1 : 0; }

    static COLORREF ContentAt(int x, int y) { return RGB(255 - x, 255 - y, (x * y) & 0xFF); }
    // A chequered disc: single pixels in it belong to the parent.
    static bool IsInside(int x, int y)
    {
        const int dx = x - 20;
        const int dy = y - 16;
        return dx * dx + dy * dy < 260 && (x * 3 + y * 5) % 7 != 0;
    }

    int draws = 0;
    int masks = 0;
    bool isRect = false;
    std::function<void()> onDraw;
    std::function<void()> onDrawMask;
};

std::uint32_t PixelOf(COLORREF colour)
{
    return static_cast<std::uint32_t>(RGB(GetBValue(colour), GetGValue(colour), GetRValue(colour)));
}

// The pattern with an overlay's content on it.
Picture Expected(const CRect& place, bool isRect)
{
    Picture picture = PatternWindow::Pattern();
    for (int y = 0; y < place.Height(); ++y)
        for (int x = 0; x < place.Width(); ++x)
            if (isRect || Overlay::IsInside(x, y))
                picture.At(place.left + x, place.top + y) = PixelOf(Overlay::ContentAt(x, y));
    return picture;
}

CSize SizeOf(const CBitmap& bitmap)
{
    BITMAP description = {};
    bitmap.GetBitmap(&description);
    return {static_cast<int>(description.bmWidth), static_cast<int>(description.bmHeight)};
}

class BufferedWndTest : public testing::Test
{
protected:
    // One parent serves all tests, because a screen without a window manager is slow to hide a
    // window.
    static void SetUpTestSuite() { s_parent = std::make_unique<PatternWindow>(); }
    static void TearDownTestSuite() { s_parent.reset(); }

    void SetUp() override
    {
        ASSERT_TRUE(m_parent.m_hWnd);
        m_parent.PaintAll();
        if (Differences(m_parent.Screen(), PatternWindow::Pattern()) != 0)
            GTEST_SKIP() << "what a window paints cannot be read back from this screen";
    }

    int CreateOver(CBufferedWnd& overlay, const CRect& place)
    {
        const int result =
            overlay.Create(WS_CHILD | WS_VISIBLE, 0, &m_parent, place, 7, L"overlay");
        m_parent.PaintAll();
        return result;
    }

    PatternWindow& m_parent = *s_parent;

private:
    static inline std::unique_ptr<PatternWindow> s_parent;
};

const CRect place(CPoint(50, 30), CSize(41, 33));

} // namespace

TEST_F(BufferedWndTest, ChangesExactlyTheMaskedPixels)
{
    Overlay overlay;
    ASSERT_NE(CreateOver(overlay, place), 0);
    EXPECT_EQ(Differences(m_parent.Screen(), Expected(place, false)), 0);
    EXPECT_NE(Differences(m_parent.Screen(), PatternWindow::Pattern()), 0);
    EXPECT_GE(overlay.masks, 1);
}

TEST_F(BufferedWndTest, PaintsARectangleWholeAndNeverAsksForItsMask)
{
    Overlay overlay;
    overlay.isRect = true;
    ASSERT_NE(CreateOver(overlay, place), 0);
    EXPECT_EQ(Differences(m_parent.Screen(), Expected(place, true)), 0);
    EXPECT_EQ(overlay.masks, 0);
    EXPECT_GE(overlay.draws, 1);
}

TEST_F(BufferedWndTest, ShowsNothingWhenNothingIsOverridden)
{
    PlainOverlay overlay;
    ASSERT_NE(CreateOver(overlay, place), 0);
    EXPECT_EQ(Differences(m_parent.Screen(), PatternWindow::Pattern()), 0);
    EXPECT_EQ(overlay.IsRectMask(), 0);
    EXPECT_TRUE(overlay.CanDrawOnAVI());
}

TEST_F(BufferedWndTest, IsWhiteWhereTheContentIsNotDrawn)
{
    class WhiteRectangle : public PlainOverlay
    {
        int IsRectMask() override { return 1; }
    };
    WhiteRectangle overlay;
    ASSERT_NE(CreateOver(overlay, place), 0);
    Picture expected = PatternWindow::Pattern();
    for (int y = place.top; y < place.bottom; ++y)
        for (int x = place.left; x < place.right; ++x)
            expected.At(x, y) = 0xFFFFFF;
    EXPECT_EQ(Differences(m_parent.Screen(), expected), 0);
}

TEST_F(BufferedWndTest, KeepsTheComplementOfTheMask)
{
    Overlay overlay;
    ASSERT_NE(CreateOver(overlay, place), 0);
    constexpr DWORD bytes = 6 * 33; // rows of 41 bits, padded to 16
    std::vector<BYTE> mask(bytes);
    std::vector<BYTE> inverse(bytes);
    ASSERT_EQ(overlay.m_mask.GetBitmapBits(bytes, mask.data()), bytes);
    ASSERT_EQ(overlay.m_inverseMask.GetBitmapBits(bytes, inverse.data()), bytes);
    for (int y = 0; y < 33; ++y)
        for (int x = 0; x < 41; ++x) {
            const std::size_t at = static_cast<std::size_t>(y * 6 + x / 8);
            const int bit = 0x80 >> x % 8;
            ASSERT_EQ((mask[at] & bit) != 0, Overlay::IsInside(x, y)) << x << ' ' << y;
            ASSERT_EQ((inverse[at] & bit) == 0, Overlay::IsInside(x, y)) << x << ' ' << y;
        }
}

TEST_F(BufferedWndTest, HasBitmapsOfItsSizeBeforeTheNextPaint)
{
    Overlay overlay;
    ASSERT_NE(CreateOver(overlay, place), 0);
    overlay.onDrawMask = [&] { EXPECT_EQ(SizeOf(overlay.m_mask), CSize(90, 70)); };
    overlay.onDraw = [&] { EXPECT_EQ(SizeOf(overlay.m_buffer), CSize(90, 70)); };
    overlay.MoveWindow(20, 10, 90, 70);
    EXPECT_EQ(SizeOf(overlay.m_buffer), CSize(90, 70));
    EXPECT_EQ(SizeOf(overlay.m_mask), CSize(90, 70));
    EXPECT_EQ(SizeOf(overlay.m_inverseMask), CSize(90, 70));
    m_parent.PaintAll();
    const CRect larger(CPoint(20, 10), CSize(90, 70));
    EXPECT_EQ(Differences(m_parent.Screen(), Expected(larger, false)), 0);
}

TEST_F(BufferedWndTest, HasMonochromeMasksAndABufferOfTheScreensKind)
{
    Overlay overlay;
    ASSERT_NE(CreateOver(overlay, place), 0);
    BITMAP description = {};
    overlay.m_mask.GetBitmap(&description);
    EXPECT_EQ(description.bmPlanes * description.bmBitsPixel, 1);
    overlay.m_inverseMask.GetBitmap(&description);
    EXPECT_EQ(description.bmPlanes * description.bmBitsPixel, 1);
    overlay.m_buffer.GetBitmap(&description);
    CClientDC screen(nullptr);
    EXPECT_EQ(description.bmBitsPixel, screen.GetDeviceCaps(BITSPIXEL));
}

TEST_F(BufferedWndTest, PaintsNothingWithoutASize)
{
    Overlay overlay;
    ASSERT_NE(CreateOver(overlay, CRect(50, 30, 50, 30)), 0);
    overlay.CallOnPaint();
    m_parent.PaintAll();
    EXPECT_EQ(Differences(m_parent.Screen(), PatternWindow::Pattern()), 0);
    overlay.isRect = true;
    overlay.CallOnPaint();
    EXPECT_EQ(Differences(m_parent.Screen(), PatternWindow::Pattern()), 0);

    overlay.isRect = false;
    overlay.MoveWindow(&place); // then it gets one
    m_parent.PaintAll();
    EXPECT_EQ(Differences(m_parent.Screen(), Expected(place, false)), 0);
    overlay.MoveWindow(50, 30, 0, 33);
    m_parent.PaintAll();
    EXPECT_EQ(Differences(m_parent.Screen(), PatternWindow::Pattern()), 0);
}

TEST_F(BufferedWndTest, ShowsWhatLiesBeneathAtItsNewPlace)
{
    Overlay overlay;
    ASSERT_NE(CreateOver(overlay, place), 0);
    const CRect moved(CPoint(130, 90), place.Size());
    overlay.SetWindowPos(nullptr, moved.left, moved.top, 0, 0,
                         SWP_NOSIZE | SWP_NOZORDER | SWP_NOCOPYBITS);
    m_parent.PaintAll();
    EXPECT_EQ(Differences(m_parent.Screen(), Expected(moved, false)), 0);
    overlay.PlaceOver(place);
    m_parent.PaintAll();
    EXPECT_EQ(Differences(m_parent.Screen(), Expected(place, false)), 0);
}

TEST_F(BufferedWndTest, ShowsAParentThatClipsItsChildrenWhenItIsTransparent)
{
    m_parent.ModifyStyle(0, WS_CLIPCHILDREN);
    {
        Overlay overlay;
        ASSERT_NE(overlay.Create(WS_CHILD | WS_VISIBLE, WS_EX_TRANSPARENT, &m_parent, place, 7,
                                 L"overlay"),
                  0);
        m_parent.PaintAll();
        EXPECT_EQ(Differences(m_parent.Screen(), Expected(place, false)), 0);
        const CRect moved(CPoint(130, 90), place.Size());
        overlay.PlaceOver(moved);
        m_parent.PaintAll();
        EXPECT_EQ(Differences(m_parent.Screen(), Expected(moved, false)), 0);
    }
    m_parent.ModifyStyle(WS_CLIPCHILDREN, 0);
}

TEST_F(BufferedWndTest, ClipsAtTheEdgeOfItsParent)
{
    Overlay overlay;
    const CRect outside(CPoint(PatternWindow::width - 20, -10), place.Size());
    ASSERT_NE(CreateOver(overlay, outside), 0);
    Picture expected = PatternWindow::Pattern();
    for (int y = 10; y < 33; ++y)
        for (int x = 0; x < 20; ++x)
            if (Overlay::IsInside(x, y))
                expected.At(outside.left + x, y - 10) = PixelOf(Overlay::ContentAt(x, y));
    EXPECT_EQ(Differences(m_parent.Screen(), expected), 0);
}

TEST_F(BufferedWndTest, PaintsOnDemandWhatIsInvalid)
{
    Overlay overlay;
    ASSERT_NE(CreateOver(overlay, place), 0);
    overlay.draws = 0;
    overlay.Refresh();
    overlay.CallOnPaint();
    EXPECT_EQ(overlay.draws, 1);
    EXPECT_EQ(Differences(m_parent.Screen(), Expected(place, false)), 0);
    EXPECT_FALSE(GetUpdateRect(overlay, nullptr, FALSE));
}

TEST_F(BufferedWndTest, MayBeDestroyedWhileItPaints)
{
    for (const bool inMask : {false, true})
        for (const bool isRect : {false, true}) {
            Overlay overlay;
            overlay.isRect = isRect;
            bool destroyed = false;
            const auto destroy = [&] {
                if (!std::exchange(destroyed, true)) overlay.DestroyWindow();
            };
            (inMask && !isRect ? overlay.onDrawMask : overlay.onDraw) = destroy;
            CreateOver(overlay, place);
            EXPECT_TRUE(destroyed);
            EXPECT_EQ(overlay.m_hWnd, nullptr);
            m_parent.PaintAll();
            EXPECT_EQ(Differences(m_parent.Screen(), PatternWindow::Pattern()), 0);
            overlay.CallOnPaint(); // now without a window
        }
}

TEST_F(BufferedWndTest, MayBeDestroyedAndCreatedAgain)
{
    Overlay overlay;
    for (int i = 0; i < 3; ++i) {
        ASSERT_NE(CreateOver(overlay, place), 0);
        EXPECT_EQ(Differences(m_parent.Screen(), Expected(place, false)), 0);
        overlay.DestroyWindow();
        m_parent.PaintAll();
        EXPECT_EQ(Differences(m_parent.Screen(), PatternWindow::Pattern()), 0);
    }
}

TEST_F(BufferedWndTest, PaintsAgainAfterItsContentFailedToDraw)
{
    Overlay overlay;
    ASSERT_NE(CreateOver(overlay, place), 0);
    overlay.onDraw = [] { throw std::runtime_error("no content"); };
    m_parent.PaintAll();
    overlay.onDraw = nullptr;
    m_parent.PaintAll();
    EXPECT_EQ(Differences(m_parent.Screen(), Expected(place, false)), 0);
}

TEST_F(BufferedWndTest, IsDisabledWhileAModalStateLasts)
{
    Overlay overlay;
    ASSERT_NE(CreateOver(overlay, place), 0);
    overlay.BeginModalState();
    EXPECT_FALSE(overlay.IsWindowEnabled());
    overlay.EndModalState();
    EXPECT_TRUE(overlay.IsWindowEnabled());
}

TEST_F(BufferedWndTest, TakesStyleNameAndIdentifier)
{
    Overlay overlay;
    ASSERT_NE(overlay.Create(WS_CHILD | WS_DISABLED, WS_EX_TRANSPARENT, &m_parent, place, 4711,
                             L"the name"),
              0);
    CString name;
    overlay.GetWindowText(name);
    EXPECT_EQ(name, L"the name");
    EXPECT_EQ(overlay.GetDlgCtrlID(), 4711);
    EXPECT_TRUE(overlay.GetStyle() & WS_DISABLED);
    EXPECT_TRUE(overlay.GetExStyle() & WS_EX_TRANSPARENT);
    EXPECT_EQ(overlay.GetParent(), &m_parent);
    Overlay orphan;
    EXPECT_EQ(orphan.Create(WS_CHILD, 0, nullptr, place, 1, L""), 0);
}

TEST_F(BufferedWndTest, LeavesNoDrawingObjectAfterManyResizes)
{
    Overlay overlay;
    ASSERT_NE(CreateOver(overlay, CRect(0, 0, 3, 3)), 0);
    const DWORD before = test_support::DrawingObjectCount();
    for (int i = 0; i < 1000; ++i) {
        overlay.MoveWindow(0, 0, i % 7, i % 5);
        overlay.UpdateWindow();
    }
    overlay.MoveWindow(0, 0, 3, 3);
    EXPECT_EQ(test_support::DrawingObjectCount(), before);
    overlay.DestroyWindow();
    EXPECT_LE(test_support::DrawingObjectCount(), before);
}

TEST_F(BufferedWndTest, LeavesNoDrawingObjectWhenItGoes)
{
    const auto live = [&] {
        Overlay overlay;
        CreateOver(overlay, place);
    };
    live();
    const DWORD before = test_support::DrawingObjectCount();
    for (int i = 0; i < 20; ++i)
        live();
    EXPECT_EQ(test_support::DrawingObjectCount(), before);
}

TEST(CBufferedWnd, AddsItsOperationsInOrder)
{
    const std::size_t places[] = {
        test_support::VirtualPlace<int (CBufferedWnd::*)(unsigned long, unsigned long, CWnd*, CRect,
                                                         unsigned int, CString)>(
            &CBufferedWnd::Create),
        test_support::VirtualPlace(&CBufferedWnd::Paint),
        test_support::VirtualPlace(&CBufferedWnd::Draw),
        test_support::VirtualPlace(&CBufferedWnd::DrawMask),
        test_support::VirtualPlace(&CBufferedWnd::IsRectMask),
        test_support::VirtualPlace(&CBufferedWnd::PlaceOver),
        test_support::VirtualPlace(&CBufferedWnd::Refresh),
        test_support::VirtualPlace(&CBufferedWnd::CanDrawOnAVI),
    };
    for (std::size_t i = 1; i < std::size(places); ++i)
        EXPECT_EQ(places[i], places[0] + i);
    EXPECT_GT(places[0], test_support::VirtualPlace(&CWnd::EndModalState));
}
