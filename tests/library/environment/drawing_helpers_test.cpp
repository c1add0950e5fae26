// Gradients and borders, read back pixel by pixel, and pictures for image lists.
#include <gtest/gtest.h>
#include <test_support/Canvas.h>
#include <test_support/ImportHook.h>
#include <test_support/ResourceCounts.h>
#include <Utils_Statics/utilsExam.h>

#include <afxcmn.h>
#include <afxwin.h>

#include <array>
#include <random>
#include <set>
#include <string>
#include <vector>

using test_support::ImportHook;

CWinApp theApplication;

namespace {

constexpr COLORREF untouched = RGB(1, 2, 3);
constexpr COLORREF black = RGB(0, 0, 0);
constexpr COLORREF red = RGB(255, 0, 0);
constexpr COLORREF blue = RGB(0, 0, 255);

// Its pixels have a colour that no test draws.
class Canvas : public test_support::Canvas
{
public:
    Canvas(int width, int height) : test_support::Canvas(width, height)
    {
        dc.FillSolidRect(0, 0, width, height, untouched);
    }
};

bool IsIn(const CRect& rect, int x, int y)
{
    return x >= rect.left && x < rect.right && y >= rect.top && y < rect.bottom;
}

// A channel's value in a gradient from `from` at the top to `to` at the bottom, at a row.
double Shaded(BYTE from, BYTE to, int row, int height)
{
    return from + (to - from) * (static_cast<double>(row) / height);
}

void ExpectNear(COLORREF actual, COLORREF from, COLORREF to, int row, int height)
{
    EXPECT_NEAR(GetRValue(actual), Shaded(GetRValue(from), GetRValue(to), row, height), 1.01);
    EXPECT_NEAR(GetGValue(actual), Shaded(GetGValue(from), GetGValue(to), row, height), 1.01);
    EXPECT_NEAR(GetBValue(actual), Shaded(GetBValue(from), GetBValue(to), row, height), 1.01);
}

TEST(DrawGradient, FillsPlainlyWithOneColour)
{
    Canvas canvas(20, 12);
    canvas.dc.SetBkColor(RGB(9, 9, 9));
    const CRect rect(2, 3, 17, 10);
    utilsExam::DrawGradient(&canvas.dc, rect, RGB(10, 200, 30), RGB(10, 200, 30));
    for (int y = 0; y < canvas.Height(); ++y)
        for (int x = 0; x < canvas.Width(); ++x)
            ASSERT_EQ(canvas.At(x, y), IsIn(rect, x, y) ? RGB(10, 200, 30) : untouched);
    EXPECT_EQ(canvas.dc.GetBkColor(), RGB(9, 9, 9));
}

TEST(DrawGradient, ShadesFromTheTopToTheBottom)
{
    Canvas canvas(20, 70);
    const CRect rect(2, 3, 17, 67);
    const COLORREF top = RGB(255, 0, 100), bottom = RGB(0, 128, 110);
    utilsExam::DrawGradient(&canvas.dc, rect, top, bottom);
    for (int y = 0; y < canvas.Height(); ++y)
        for (int x = 0; x < canvas.Width(); ++x) {
            if (!IsIn(rect, x, y)) {
                ASSERT_EQ(canvas.At(x, y), untouched);
                continue;
            }
            ASSERT_EQ(canvas.At(x, y), canvas.At(rect.left, y)) << "a row has one colour";
            ExpectNear(canvas.At(x, y), top, bottom, y - rect.top, rect.Height());
        }
}

TEST(DrawGradient, WorksInCoordinatesOfTheContext)
{
    Canvas canvas(20, 20);
    canvas.dc.SetViewportOrg(5, 6);
    utilsExam::DrawGradient(&canvas.dc, CRect(0, 0, 4, 4), red, blue);
    EXPECT_EQ(canvas.At(5, 6), red);
    EXPECT_EQ(canvas.At(4, 6), untouched);
    EXPECT_EQ(canvas.At(9, 6), untouched);
}

TEST(DrawDoubleGradient, FillsPlainlyWithOneColour)
{
    Canvas canvas(10, 10);
    utilsExam::DrawDoubleGradient(&canvas.dc, CRect(1, 1, 9, 9), red, red, red, red);
    EXPECT_EQ(canvas.At(1, 1), red);
    EXPECT_EQ(canvas.At(8, 8), red);
    EXPECT_EQ(canvas.At(9, 9), untouched);
}

TEST(DrawDoubleGradient, ShadesEachHalfByItself)
{
    const COLORREF c1 = RGB(200, 0, 0), c2 = RGB(0, 200, 0), c3 = RGB(0, 0, 200),
                   c4 = RGB(50, 60, 70);
    for (const int height : {64, 65, 3, 2}) {
        Canvas canvas(12, 80);
        const CRect rect(2, 5, 10, 5 + height);
        utilsExam::DrawDoubleGradient(&canvas.dc, rect, c1, c2, c3, c4);
        const int upper = height / 2, lower = height - upper;
        for (int row = 0; row < height; ++row) {
            const COLORREF pixel = canvas.At(5, rect.top + row);
            if (row < upper)
                ExpectNear(pixel, c1, c2, row, upper);
            else
                ExpectNear(pixel, c3, c4, row - upper, lower);
        }
        EXPECT_EQ(canvas.At(5, 4), untouched);
        EXPECT_EQ(canvas.At(5, rect.bottom), untouched);
        EXPECT_EQ(canvas.At(1, rect.top), untouched);
        EXPECT_EQ(canvas.At(10, rect.top), untouched);
    }
}

TEST(DrawDoubleGradient, ShadesWhenAnyOneColourDiffers)
{
    for (int other = 0; other < 4; ++other) {
        std::array<COLORREF, 4> colours = {red, red, red, red};
        colours[static_cast<std::size_t>(other)] = blue;
        Canvas canvas(4, 64);
        utilsExam::DrawDoubleGradient(&canvas.dc, CRect(0, 0, 4, 64), colours[0], colours[1],
                                      colours[2], colours[3]);
        EXPECT_NE(canvas.At(1, other < 2 ? 16 : 48), red) << other;
        EXPECT_EQ(canvas.At(1, other < 2 ? 48 : 16), red) << other;
    }
}

// ---- Borders

constexpr int leftSide = 1, topSide = 2, rightSide = 4, bottomSide = 8;

// The border in its plainest form: pixel by pixel, the sides in order.
class PlainBorder
{
public:
    PlainBorder(const CRect& rect, COLORREF first, COLORREF second)
        : m_rect(rect), m_first(first), m_second(second)
    {
    }

    // The expected pixel: a colour, or the shade of this row.
    struct Pixel
    {
        COLORREF colour = untouched;
        bool isShaded = false;
    };
    Pixel At(int sides, int x, int y) const
    {
        Pixel pixel;
        const bool isRow = y >= m_rect.top && y < m_rect.bottom;
        if (sides & leftSide && isRow) Column(pixel, x, m_rect.left, m_rect.left + 1);
        if (sides & rightSide && isRow) Column(pixel, x, m_rect.right - 2, m_rect.right - 1);
        if (sides & topSide) {
            Line(pixel, x, y, m_rect.left + 1, m_rect.right, m_rect.top, m_second);
            Line(pixel, x, y, m_rect.left + 2, m_rect.right - 1, m_rect.top + 1, black);
        }
        if (sides & bottomSide) {
            Line(pixel, x, y, m_rect.left + 1, m_rect.right - 2, m_rect.bottom - 2, black);
            Line(pixel, x, y, m_rect.left, m_rect.right - 1, m_rect.bottom - 1, m_first);
        }
        return pixel;
    }

private:
    static void Column(Pixel& pixel, int x, int blackAt, int shadedAt)
    {
        if (x == blackAt) pixel = {black, false};
        if (x == shadedAt) pixel = {untouched, true};
    }
    static void Line(Pixel& pixel, int x, int y, int from, int to, int at, COLORREF colour)
    {
        if (y == at && x >= from && x < to) pixel = {colour, false};
    }

    CRect m_rect;
    COLORREF m_first, m_second;
};

TEST(DrawBorder, DrawsEverySelectionOfSides)
{
    const COLORREF first = RGB(240, 10, 20), second = RGB(30, 140, 250);
    const CRect rect(3, 4, 17, 30);
    const PlainBorder plain(rect, first, second);
    for (int sides = 0; sides < 16; ++sides) {
        Canvas canvas(22, 34);
        utilsExam::DrawBorder(&canvas.dc, rect, sides, first, second);
        for (int y = 0; y < canvas.Height(); ++y)
            for (int x = 0; x < canvas.Width(); ++x) {
                const auto expected = plain.At(sides, x, y);
                if (expected.isShaded)
                    ExpectNear(canvas.At(x, y), second, first, y - rect.top, rect.Height());
                else
                    ASSERT_EQ(canvas.At(x, y), expected.colour)
                        << "sides " << sides << " at " << x << ", " << y;
            }
    }
}

TEST(DrawBorder, IgnoresOtherBits)
{
    Canvas canvas(20, 20);
    utilsExam::DrawBorder(&canvas.dc, CRect(2, 2, 18, 18), ~15, red, blue);
    for (int y = 0; y < 20; ++y)
        for (int x = 0; x < 20; ++x)
            ASSERT_EQ(canvas.At(x, y), untouched);
}

TEST(DrawBorder, LeavesThePenAndNoObjectsBehind)
{
    Canvas canvas(20, 20);
    const HGDIOBJ pen = GetCurrentObject(canvas.dc, OBJ_PEN);
    utilsExam::DrawBorder(&canvas.dc, CRect(2, 2, 18, 18), 15, red, blue);
    const DWORD objects = test_support::DrawingObjectCount();
    for (int i = 0; i < 50; ++i)
        utilsExam::DrawBorder(&canvas.dc, CRect(2, 2, 18, 18), 15, red, blue);
    EXPECT_EQ(test_support::DrawingObjectCount(), objects);
    EXPECT_EQ(GetCurrentObject(canvas.dc, OBJ_PEN), pen);
}

TEST(Drawing, OnANullContextIsNothing)
{
    utilsExam::DrawGradient(nullptr, CRect(0, 0, 4, 4), red, blue);
    utilsExam::DrawGradient(nullptr, CRect(0, 0, 4, 4), red, red);
    utilsExam::DrawDoubleGradient(nullptr, CRect(0, 0, 4, 4), red, red, blue, blue);
    utilsExam::DrawBorder(nullptr, CRect(0, 0, 4, 4), 15, red, blue);
    SUCCEED();
}

TEST(Drawing, OfEmptyAndReversedRectanglesDoesNoHarm)
{
    Canvas canvas(20, 20);
    for (const CRect& rect : {CRect(5, 5, 5, 5), CRect(10, 10, 5, 5), CRect(5, 5, 6, 6)}) {
        utilsExam::DrawGradient(&canvas.dc, rect, red, blue);
        utilsExam::DrawDoubleGradient(&canvas.dc, rect, red, blue, red, blue);
        utilsExam::DrawBorder(&canvas.dc, rect, 15, red, blue);
    }
    EXPECT_EQ(canvas.At(0, 0), untouched);
}

// ---- Image lists

// A bitmap of the screen's format, of two colours: left and right half.
void MakeHalves(CBitmap& bitmap, int width, int height, COLORREF left, COLORREF right)
{
    CClientDC screen(nullptr);
    bitmap.CreateCompatibleBitmap(&screen, width, height);
    CDC dc;
    dc.CreateCompatibleDC(nullptr);
    CBitmap* const before = dc.SelectObject(&bitmap);
    dc.FillSolidRect(0, 0, width / 2, height, left);
    dc.FillSolidRect(width / 2, 0, width - width / 2, height, right);
    dc.SelectObject(before);
}

class AddImageTest : public testing::Test
{
protected:
    AddImageTest() { list.Create(16, 12, ILC_COLOR32 | ILC_MASK, 0, 4); }

    // Adds a bitmap of two halves.
    void Add(int width, int height, COLORREF left, COLORREF right, COLORREF mask = RGB(1, 1, 1))
    {
        CBitmap bitmap;
        MakeHalves(bitmap, width, height, left, right);
        utilsExam::AddImage(list, bitmap, CSize(16, 12), mask);
    }
    // Draws an image of the list over a background.
    void Draw(Canvas& canvas, int index)
    {
        ASSERT_TRUE(list.Draw(&canvas.dc, index, CPoint(0, 0), ILD_TRANSPARENT));
    }

    CImageList list;
};

TEST_F(AddImageTest, ScalesTheWholeBitmap)
{
    CBitmap bitmap;
    MakeHalves(bitmap, 64, 48, red, blue);
    utilsExam::AddImage(list, bitmap, CSize(16, 12), RGB(1, 1, 1));
    ASSERT_EQ(list.GetImageCount(), 1);
    Canvas canvas(16, 12);
    Draw(canvas, 0);
    for (int y = 0; y < 12; ++y) {
        EXPECT_EQ(canvas.At(0, y), red);
        EXPECT_EQ(canvas.At(6, y), red);
        EXPECT_EQ(canvas.At(9, y), blue);
        EXPECT_EQ(canvas.At(15, y), blue);
    }
    BITMAP description = {};
    EXPECT_NE(bitmap.GetBitmap(&description), 0) << "the bitmap stays the caller's";
    EXPECT_EQ(description.bmWidth, 64);
}

TEST_F(AddImageTest, EnlargesToo)
{
    Add(4, 3, red, blue);
    Canvas canvas(16, 12);
    Draw(canvas, 0);
    EXPECT_EQ(canvas.At(0, 0), red);
    EXPECT_EQ(canvas.At(15, 11), blue);
}

TEST_F(AddImageTest, TheMasksColourIsTransparent)
{
    Add(32, 24, red, RGB(255, 0, 255), RGB(255, 0, 255));
    Canvas canvas(16, 12);
    Draw(canvas, 0);
    EXPECT_EQ(canvas.At(2, 5), red);
    EXPECT_EQ(canvas.At(13, 5), untouched);
}

TEST_F(AddImageTest, AddsBehindWhatIsThere)
{
    Add(16, 12, red, red);
    Add(16, 12, blue, blue);
    ASSERT_EQ(list.GetImageCount(), 2);
    Canvas canvas(16, 12);
    Draw(canvas, 1);
    EXPECT_EQ(canvas.At(8, 6), blue);
}

// The test program's own: 32 x 24 pixels, red above blue.
constexpr unsigned int halvesResource = 900;

TEST_F(AddImageTest, LoadsABitmapResource)
{
    utilsExam::AddImage(list, halvesResource, CSize(16, 12), RGB(1, 1, 1));
    ASSERT_EQ(list.GetImageCount(), 1);
    Canvas canvas(16, 12);
    Draw(canvas, 0);
    EXPECT_EQ(canvas.At(0, 0), red);
    EXPECT_EQ(canvas.At(15, 11), blue);
}

TEST_F(AddImageTest, AddsNothingOfWhatIsMissing)
{
    utilsExam::AddImage(list, 4711, CSize(16, 12), red);
    CBitmap empty;
    utilsExam::AddImage(list, empty, CSize(16, 12), red);
    CBitmap bitmap;
    MakeHalves(bitmap, 16, 12, red, blue);
    for (const CSize size : {CSize(-1, 12), CSize(1 << 20, 1 << 20)})
        utilsExam::AddImage(list, bitmap, size, red);
    EXPECT_EQ(list.GetImageCount(), 0);

    CImageList none;
    utilsExam::AddImage(none, bitmap, CSize(16, 12), red);
}

// Keeps the numbers of the pictures behind it.
TEST_F(AddImageTest, AddsAnEmptyPictureOfABitmapThatIsSelectedElsewhere)
{
    CBitmap bitmap;
    MakeHalves(bitmap, 16, 12, red, red);
    CDC elsewhere;
    elsewhere.CreateCompatibleDC(nullptr);
    CBitmap* const before = elsewhere.SelectObject(&bitmap);
    utilsExam::AddImage(list, bitmap, CSize(16, 12), RGB(1, 1, 1));
    elsewhere.SelectObject(before);
    ASSERT_EQ(list.GetImageCount(), 1);
    Canvas canvas(16, 12);
    Draw(canvas, 0);
    EXPECT_NE(canvas.At(8, 6), red);
}

// The library's calls to the platform, in order.
std::vector<std::string> s_calls;
std::set<HDC> s_targets;

int WINAPI NoteMode(HDC dc, int mode)
{
    s_targets.insert(dc);
    s_calls.push_back("mode " + std::to_string(mode));
    return SetStretchBltMode(dc, mode);
}

BOOL WINAPI NoteOrigin(HDC dc, int x, int y, POINT* old)
{
    s_targets.insert(dc);
    s_calls.push_back("origin " + std::to_string(x) + "," + std::to_string(y));
    return SetBrushOrgEx(dc, x, y, old);
}

BOOL WINAPI NoteStretch(HDC target, int x, int y, int width, int height, HDC source, int fromX,
                        int fromY, int fromWidth, int fromHeight, DWORD operation)
{
    s_targets.insert(target);
    std::string call = operation == SRCCOPY ? "copy" : "other operation";
    for (const int number : {x, y, width, height, fromX, fromY, fromWidth, fromHeight})
        call += " " + std::to_string(number);
    s_calls.push_back(call);
    return StretchBlt(target, x, y, width, height, source, fromX, fromY, fromWidth, fromHeight,
                      operation);
}

TEST_F(AddImageTest, StretchesTheWholeSourceInHalftoneModeFromTheBrushOrigin)
{
    constexpr wchar_t library[] = L"Utils_Statics.dll";
    const ImportHook mode(library, "SetStretchBltMode", &NoteMode);
    const ImportHook origin(library, "SetBrushOrgEx", &NoteOrigin);
    const ImportHook stretch(library, "StretchBlt", &NoteStretch);
    CBitmap bitmap;
    MakeHalves(bitmap, 64, 48, red, blue);
    utilsExam::AddImage(list, bitmap, CSize(16, 12), RGB(1, 1, 1));
    EXPECT_EQ(s_calls,
              (std::vector<std::string>{"mode 4", "origin 0,0", "copy 0 0 16 12 0 0 64 48"}));
    EXPECT_EQ(s_targets.size(), 1u) << "mode and origin are the target's";
}

TEST_F(AddImageTest, LeavesNoObjectsBehind)
{
    CBitmap bitmap;
    MakeHalves(bitmap, 64, 48, red, blue);
    const auto use = [&] {
        utilsExam::AddImage(list, bitmap, CSize(16, 12), RGB(1, 1, 1));
        utilsExam::AddImage(list, halvesResource, CSize(16, 12), RGB(1, 1, 1));
        while (list.GetImageCount() > 0)
            list.Remove(0);
    };
    use();
    const DWORD objects = test_support::DrawingObjectCount();
    for (int i = 0; i < 50; ++i)
        use();
    EXPECT_LE(test_support::DrawingObjectCount(), objects + 2);
}

} // namespace
