// GDI objects and device contexts, with counts of the process's handles.
#include <base/GdiHandles.h>
#include <gtest/gtest.h>
#include <test_support/ResourceCounts.h>

#include <afxcmn.h>
#include <afxwin.h>

#include <functional>
#include <optional>
#include <thread>
#include <utility>

namespace {

constexpr COLORREF red = RGB(255, 0, 0);
constexpr COLORREF green = RGB(0, 255, 0);
constexpr COLORREF blue = RGB(0, 0, 255);
constexpr COLORREF white = RGB(255, 255, 255);

// Repeats work that must leave no handle behind. The first rounds may fill caches of the platform.
void ExpectNoLeak(const std::function<void()>& work)
{
    for (int i = 0; i < 3; ++i)
        work();
    const DWORD before = test_support::DrawingObjectCount();
    for (int i = 0; i < 200; ++i)
        work();
    EXPECT_LE(test_support::DrawingObjectCount(), before + 2);
}

// A memory context with a white 32-bit bitmap.
class Canvas : public testing::Test
{
protected:
    Canvas()
    {
        CClientDC screen(nullptr);
        m_dc.CreateCompatibleDC(&screen);
        m_bitmap.CreateCompatibleBitmap(&screen, 40, 30);
        m_selected.emplace(m_dc, m_bitmap);
        m_dc.FillSolidRect(CRect(0, 0, 40, 30), white);
    }

    CDC m_dc;
    CBitmap m_bitmap;
    std::optional<base::Selection> m_selected;
};

bool IsGdiObject(HGDIOBJ object)
{
    return GetObjectType(object) != 0;
}

} // namespace

TEST(GdiObject, IsEmptyUntilItIsCreated)
{
    CPen pen;
    EXPECT_EQ(pen.GetSafeHandle(), nullptr);
    EXPECT_FALSE(pen.DeleteObject());
    EXPECT_FALSE(pen.Attach(nullptr));
    EXPECT_TRUE(pen.CreatePen(PS_SOLID, 1, red));
    EXPECT_TRUE(pen.DeleteObject());
    EXPECT_EQ(pen.GetSafeHandle(), nullptr);
}

TEST(GdiObject, IsDeletedOnce)
{
    HGDIOBJ handle;
    {
        const CBrush brush(red);
        handle = brush;
        EXPECT_TRUE(IsGdiObject(handle));
    }
    EXPECT_FALSE(IsGdiObject(handle));
}

TEST(GdiObject, GivesItsHandleUp)
{
    base::Brush handle;
    {
        CBrush brush(red);
        handle.reset(static_cast<HBRUSH>(brush.Detach()));
        EXPECT_EQ(brush.Detach(), nullptr);
    }
    EXPECT_TRUE(IsGdiObject(handle.get()));
}

TEST(GdiObject, RefusesASecondHandle)
{
    ExpectNoLeak([] {
        CBrush brush(red);
        const HGDIOBJ first = brush;
        EXPECT_FALSE(brush.CreateSolidBrush(blue));
        EXPECT_EQ(brush.GetSafeHandle(), first);
        CPen pen(PS_SOLID, 1, red);
        EXPECT_FALSE(pen.Attach(first));
    });
}

TEST(GdiObject, LeaksNothing)
{
    ExpectNoLeak([] {
        CPen pen(PS_SOLID, 1, red);
        CBrush brush(red);
        CFont font;
        EXPECT_TRUE(font.CreatePointFont(90, L"Arial"));
        CBitmap bitmap;
        EXPECT_TRUE(bitmap.CreateBitmap(8, 8, 1, 1, nullptr));
        CDC dc;
        EXPECT_TRUE(dc.CreateCompatibleDC(nullptr));
        CBitmap* const old = dc.SelectObject(&bitmap);
        EXPECT_EQ(dc.SelectObject(old), &bitmap);
    });
}

TEST(GdiObject, DescribesItself)
{
    CPen pen(PS_DASH, 3, blue);
    LOGPEN logPen = {};
    EXPECT_TRUE(pen.GetLogPen(&logPen));
    EXPECT_EQ(logPen.lopnWidth.x, 3);
    EXPECT_EQ(logPen.lopnColor, blue);
    CFont font;
    EXPECT_TRUE(font.CreateFont(-20, 0, 0, 0, FW_BOLD, FALSE, FALSE, FALSE, DEFAULT_CHARSET,
                                OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS, DEFAULT_QUALITY,
                                DEFAULT_PITCH, L"Arial"));
    LOGFONT logFont = {};
    EXPECT_TRUE(font.GetLogFont(&logFont));
    EXPECT_EQ(logFont.lfHeight, -20);
    EXPECT_EQ(logFont.lfWeight, FW_BOLD);
    CBitmap bitmap;
    EXPECT_FALSE(bitmap.LoadBitmap(31000)); // no such resource
    EXPECT_TRUE(bitmap.CreateBitmap(5, 4, 1, 32, nullptr));
    BITMAP description = {};
    EXPECT_EQ(bitmap.GetBitmap(&description), static_cast<int>(sizeof description));
    EXPECT_EQ(description.bmWidth, 5);
    EXPECT_EQ(description.bmHeight, 4);
}

TEST(GdiObject, KeepsTheBitsOfABitmap)
{
    CBitmap bitmap;
    const DWORD pixels[] = {1, 2, 3, 4};
    ASSERT_TRUE(bitmap.CreateBitmap(2, 2, 1, 32, pixels));
    DWORD read[4] = {};
    EXPECT_EQ(bitmap.GetBitmapBits(sizeof read, read), sizeof read);
    EXPECT_TRUE(std::equal(std::begin(pixels), std::end(pixels), read));
    const DWORD others[] = {5, 6, 7, 8};
    EXPECT_EQ(bitmap.SetBitmapBits(sizeof others, others), sizeof others);
    EXPECT_EQ(bitmap.GetBitmapBits(sizeof read, read), sizeof read);
    EXPECT_EQ(read[3], 8u);
}

TEST(FromHandle, AnswersTheObjectThatTheHandleIsAttachedTo)
{
    CPen pen(PS_SOLID, 1, red);
    EXPECT_EQ(CPen::FromHandle(pen), &pen);
    EXPECT_EQ(CGdiObject::FromHandle(pen), &pen);
    EXPECT_EQ(CPen::FromHandle(nullptr), nullptr);
    const base::Pen handle(static_cast<HPEN>(pen.Detach()));
    CPen* const temporary = CPen::FromHandle(handle.get());
    EXPECT_NE(temporary, &pen);
    EXPECT_EQ(temporary->GetSafeHandle(), handle.get());
    EXPECT_EQ(CPen::FromHandle(handle.get()), temporary);
    CGdiObject::DeleteTempMap();
    EXPECT_TRUE(IsGdiObject(handle.get())); // temporary objects own nothing
}

TEST(FromHandle, HasTheHandleAgainAfterTheTemporaryObjectLostIt)
{
    const HPEN handle = ::CreatePen(PS_SOLID, 1, red);
    CPen::FromHandle(handle)->Detach();
    EXPECT_EQ(CPen::FromHandle(handle)->GetSafeHandle(), handle);
    EXPECT_TRUE(CPen::FromHandle(handle)->DeleteObject());
    EXPECT_EQ(CPen::FromHandle(handle)->GetSafeHandle(), handle); // another pen may have it
    CGdiObject::DeleteTempMap();
}

TEST(FromHandle, AnswersAnObjectOfTheTypeThatIsAskedFor)
{
    CGdiObject object;
    ASSERT_TRUE(object.Attach(::CreateSolidBrush(red)));
    CBrush* const brush = CBrush::FromHandle(static_cast<HBRUSH>(object.GetSafeHandle()));
    EXPECT_NE(static_cast<CGdiObject*>(brush), &object);
    EXPECT_EQ(brush->GetSafeHandle(), object.GetSafeHandle());
}

TEST(FromHandle, LeaksNothingWhenTheThreadEnds)
{
    const base::Pen pen(::CreatePen(PS_SOLID, 1, red));
    ExpectNoLeak([&] {
        std::thread([&] {
            CPen::FromHandle(pen.get());
            const base::WindowContext screen(nullptr);
            CDC::FromHandle(screen.get());
        }).join();
    });
    EXPECT_TRUE(IsGdiObject(pen.get()));
}

TEST(FromHandle, ForgetsObjectsThatAnotherThreadDestroys)
{
    auto pen = std::make_unique<CPen>(PS_SOLID, 1, red);
    const HPEN handle = *pen;
    std::thread([&] { pen.reset(); }).join();
    // The handle's value may return for another object; the map must not answer with the destroyed
    // one.
    EXPECT_EQ(CPen::FromHandle(handle)->GetSafeHandle(), handle);
    CGdiObject::DeleteTempMap();
}

TEST_F(Canvas, KnowsWhatIsSelected)
{
    CPen first(PS_SOLID, 1, red);
    CPen second(PS_SOLID, 1, blue);
    CPen* const original = m_dc.SelectObject(&first);
    EXPECT_EQ(m_dc.SelectObject(&second), &first);
    EXPECT_EQ(m_dc.SelectObject(original), &second);
    EXPECT_EQ(m_dc.GetCurrentBitmap(), &m_bitmap);
    EXPECT_EQ(m_dc.SelectStockObject(BLACK_PEN)->GetSafeHandle(), original->GetSafeHandle());
    EXPECT_EQ(m_dc.SelectObject(static_cast<CPen*>(nullptr)), nullptr);
}

TEST_F(Canvas, DrawsLinesWithoutTheirLastPoint)
{
    CPen pen(PS_SOLID, 1, red);
    const base::Selection selected(m_dc, pen);
    m_dc.MoveTo(2, 5);
    EXPECT_TRUE(m_dc.LineTo(10, 5));
    EXPECT_EQ(m_dc.GetCurrentPosition(), CPoint(10, 5));
    EXPECT_EQ(m_dc.MoveTo(0, 0), CPoint(10, 5));
    EXPECT_EQ(m_dc.GetPixel(2, 5), red);
    EXPECT_EQ(m_dc.GetPixel(9, 5), red);
    EXPECT_EQ(m_dc.GetPixel(10, 5), white);
    const POINT corner[] = {{20, 1}, {30, 1}, {30, 10}};
    EXPECT_TRUE(m_dc.Polyline(corner, 3));
    EXPECT_EQ(m_dc.GetPixel(25, 1), red);
    EXPECT_EQ(m_dc.GetPixel(30, 8), red);
}

TEST_F(Canvas, DrawsShapes)
{
    CBrush brush(green);
    const base::Selection selected(m_dc, brush);
    EXPECT_TRUE(m_dc.Rectangle(1, 1, 6, 6));
    EXPECT_EQ(m_dc.GetPixel(3, 3), green);
    EXPECT_EQ(m_dc.GetPixel(1, 1), RGB(0, 0, 0));
    EXPECT_TRUE(m_dc.Ellipse(CRect(10, 10, 30, 28)));
    EXPECT_EQ(m_dc.GetPixel(20, 19), green);
    EXPECT_EQ(m_dc.GetPixel(10, 10), white);
    EXPECT_TRUE(m_dc.Arc(0, 0, 40, 30, 40, 15, 0, 15)); // the upper half, counter-clockwise
    EXPECT_EQ(m_dc.GetPixel(20, 0), RGB(0, 0, 0));
    EXPECT_EQ(m_dc.GetPixel(20, 29), white);
}

TEST_F(Canvas, FillsRectangles)
{
    const COLORREF background = m_dc.SetBkColor(blue);
    m_dc.FillSolidRect(1, 1, 4, 4, red);
    EXPECT_EQ(m_dc.GetBkColor(), blue);
    m_dc.SetBkColor(background);
    EXPECT_EQ(m_dc.GetPixel(1, 1), red);
    EXPECT_EQ(m_dc.GetPixel(4, 4), red);
    EXPECT_EQ(m_dc.GetPixel(5, 5), white);
    CBrush brush(green);
    m_dc.FillRect(CRect(10, 0, 20, 10), &brush);
    EXPECT_EQ(m_dc.GetPixel(CPoint(19, 9)), green);
    m_dc.InvertRect(CRect(10, 0, 20, 10));
    EXPECT_EQ(m_dc.GetPixel(15, 5), RGB(255, 0, 255));
    EXPECT_EQ(m_dc.SetPixel(0, 29, red), red);
    EXPECT_EQ(m_dc.GetPixel(0, 29), red);
}

TEST_F(Canvas, FillsGradients)
{
    TRIVERTEX corners[] = {{0, 0, 0, 0, 0, 0}, {40, 30, 0xFF00, 0, 0, 0}};
    GRADIENT_RECT rect = {0, 1};
    EXPECT_TRUE(m_dc.GradientFill(corners, 2, &rect, 1, GRADIENT_FILL_RECT_V));
    EXPECT_LT(GetRValue(m_dc.GetPixel(5, 2)), GetRValue(m_dc.GetPixel(5, 27)));
}

TEST_F(Canvas, CopiesBetweenContexts)
{
    CDC other;
    CBitmap target;
    ASSERT_TRUE(other.CreateCompatibleDC(&m_dc));
    ASSERT_TRUE(target.CreateCompatibleBitmap(&m_dc, 80, 60));
    const base::Selection selected(other, target);
    m_dc.SetPixel(3, 4, red);
    EXPECT_TRUE(other.BitBlt(0, 0, 40, 30, &m_dc, 0, 0, SRCCOPY));
    EXPECT_EQ(other.GetPixel(3, 4), red);
    other.SetStretchBltMode(COLORONCOLOR);
    EXPECT_TRUE(other.StretchBlt(0, 0, 80, 60, &m_dc, 0, 0, 40, 30, SRCCOPY));
    EXPECT_EQ(other.GetPixel(7, 9), red);
    EXPECT_FALSE(other.BitBlt(0, 0, 10, 10, nullptr, 0, 0, SRCCOPY));
    EXPECT_TRUE(other.PatBlt(0, 0, 80, 60, BLACKNESS));
    EXPECT_EQ(other.GetPixel(7, 9), RGB(0, 0, 0));
}

TEST_F(Canvas, CopiesThroughAMask)
{
    constexpr DWORD keep = 0x00AA0029; // leaves the destination as it is
    constexpr DWORD copyWhereSet = MAKEROP4(SRCCOPY, keep);
    CBitmap mask;
    const BYTE bits[] = {0xF0, 0x00, 0xF0, 0x00}; // the left four of eight pixels, two rows
    ASSERT_TRUE(mask.CreateBitmap(8, 2, 1, 1, bits));
    CDC other;
    CBitmap source;
    other.CreateCompatibleDC(&m_dc);
    source.CreateCompatibleBitmap(&m_dc, 8, 2);
    const base::Selection selected(other, source);
    other.FillSolidRect(0, 0, 8, 2, red);
    EXPECT_TRUE(m_dc.MaskBlt(0, 0, 8, 2, &other, 0, 0, mask, 0, 0, copyWhereSet));
    EXPECT_EQ(m_dc.GetPixel(3, 1), red);
    EXPECT_EQ(m_dc.GetPixel(4, 1), white);
}

TEST_F(Canvas, MeasuresAndDrawsText)
{
    CFont font;
    ASSERT_TRUE(font.CreatePointFont(80, L"Arial", &m_dc));
    const base::Selection selected(m_dc, font);
    EXPECT_EQ(m_dc.GetCurrentFont(), &font);
    CRect one, two;
    EXPECT_GT(m_dc.DrawText(L"W", -1, &one, DT_CALCRECT), 0);
    m_dc.DrawText(CString(L"WW"), &two, DT_CALCRECT);
    EXPECT_GT(two.Width(), one.Width());
    EXPECT_EQ(m_dc.GetTextExtent(L"W").cx, one.Width());
    TEXTMETRIC metrics = {};
    EXPECT_TRUE(m_dc.GetTextMetrics(&metrics));
    EXPECT_EQ(m_dc.SetBkMode(TRANSPARENT), OPAQUE);
    m_dc.SetTextColor(red);
    EXPECT_EQ(m_dc.GetTextColor(), red);
    EXPECT_TRUE(m_dc.TextOut(0, 0, L"W"));
    bool drawn = false;
    for (int x = 0; x < one.Width(); ++x)
        drawn |= m_dc.GetPixel(x, one.Height() / 2) != white;
    EXPECT_TRUE(drawn);
}

TEST_F(Canvas, SavesAndRestores)
{
    const int saved = m_dc.SaveDC();
    m_dc.SetTextColor(blue);
    EXPECT_EQ(m_dc.SetViewportOrg(5, 6), CPoint(0, 0));
    EXPECT_EQ(m_dc.GetViewportOrg(), CPoint(5, 6));
    EXPECT_TRUE(m_dc.RestoreDC(saved));
    EXPECT_EQ(m_dc.GetTextColor(), RGB(0, 0, 0));
    EXPECT_EQ(m_dc.GetViewportOrg(), CPoint(0, 0));
    m_dc.IntersectClipRect(CRect(1, 2, 3, 4));
    CRect clip;
    m_dc.GetClipBox(&clip);
    EXPECT_EQ(clip, CRect(1, 2, 3, 4));
}

TEST(DeviceContext, OwnsItsHandle)
{
    HDC handle;
    {
        CDC dc;
        EXPECT_FALSE(dc.Attach(nullptr));
        ASSERT_TRUE(dc.CreateCompatibleDC(nullptr));
        EXPECT_FALSE(dc.CreateCompatibleDC(nullptr));
        handle = dc;
        EXPECT_EQ(CDC::FromHandle(handle), &dc);
    }
    EXPECT_FALSE(IsGdiObject(handle));
    EXPECT_EQ(CDC::FromHandle(nullptr), nullptr);
}

TEST(DeviceContext, TemporaryObjectsOwnNothing)
{
    const base::MemoryContext handle(::CreateCompatibleDC(nullptr));
    CDC* const temporary = CDC::FromHandle(handle.get());
    EXPECT_EQ(CDC::FromHandle(handle.get()), temporary);
    CDC::DeleteTempMap();
    EXPECT_TRUE(IsGdiObject(handle.get()));
}

TEST(DeviceContext, OfAHandleHasItAgainAfterItsTemporaryObjectLostIt)
{
    const base::MemoryContext handle(::CreateCompatibleDC(nullptr));
    EXPECT_EQ(CDC::FromHandle(handle.get())->Detach(), handle.get());
    EXPECT_EQ(CDC::FromHandle(handle.get())->m_hDC, handle.get());
    EXPECT_EQ(CDC::FromHandle(handle.get())->m_hAttribDC, handle.get());
    CDC::DeleteTempMap();
}

TEST(DeviceContext, OfTheScreenIsReleased)
{
    ExpectNoLeak([] {
        CClientDC screen(nullptr);
        EXPECT_NE(screen.GetSafeHdc(), nullptr);
        EXPECT_GE(screen.GetDeviceCaps(BITSPIXEL), 24);
    });
}

TEST(DeviceContext, WithoutAHandleFailsQuietly)
{
    CDC dc;
    EXPECT_FALSE(dc.LineTo(1, 1));
    EXPECT_EQ(dc.MoveTo(1, 1), CPoint(0, 0));
    EXPECT_EQ(dc.SelectObject(static_cast<CPen*>(nullptr)), nullptr);
    EXPECT_FALSE(dc.DeleteDC());
    EXPECT_EQ(dc.Detach(), nullptr);
    EXPECT_EQ(dc.GetTextExtent(L"x"), CSize(0, 0));
}

TEST(ImageList, KeepsCopiesOfBitmaps)
{
    CImageList list;
    EXPECT_EQ(list.GetImageCount(), 0);
    ASSERT_TRUE(list.Create(8, 8, ILC_COLOR32 | ILC_MASK, 1, 1));
    EXPECT_FALSE(list.Create(8, 8, ILC_COLOR32, 1, 1));
    CClientDC screen(nullptr);
    CBitmap bitmap;
    ASSERT_TRUE(bitmap.CreateCompatibleBitmap(&screen, 16, 8));
    EXPECT_EQ(list.Add(&bitmap, RGB(0, 0, 0)), 0);
    EXPECT_EQ(list.GetImageCount(), 2); // a bitmap twice as wide holds two
    EXPECT_EQ(list.Add(static_cast<CBitmap*>(nullptr), RGB(0, 0, 0)), -1);
    IMAGEINFO info = {};
    EXPECT_TRUE(list.GetImageInfo(1, &info));
    EXPECT_TRUE(list.Remove(0));
    EXPECT_EQ(list.GetImageCount(), 1);
    EXPECT_TRUE(list.DeleteImageList());
    EXPECT_FALSE(list.DeleteImageList());
}

TEST(ImageList, LeaksNothing)
{
    ExpectNoLeak([] {
        CImageList list;
        EXPECT_TRUE(list.Create(8, 8, ILC_COLOR32 | ILC_MASK, 1, 1));
        CImageList other;
        EXPECT_TRUE(other.Attach(list.Detach()));
        EXPECT_FALSE(other.Attach(other.GetSafeHandle()));
    });
}
