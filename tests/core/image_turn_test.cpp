// An image lies on the screen in eight ways: the map there and back, pixels against their plain
// form, marks on the tissue, and grey levels.
#include "image/GreyWindow.h"
#include "ImagedRect.h"
#include "measure/MarkShapes.h"
#include "measure/MarkSurface.h"
#include "record/PixelCanvas.h"
#include "SyntheticCine.h"

#include <test_support/Random.h>

#include <algorithm>
#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

using namespace synthetic_cine;

namespace {

std::vector<Orientation> Orientations()
{
    std::vector<Orientation> all;
    for (const bool flipsSides : {false, true})
        for (const bool flipsDepth : {false, true})
            for (int quarters = 0; quarters < 4; ++quarters)
                all.push_back({flipsSides, flipsDepth, quarters});
    return all;
}

std::string NameOf(const Orientation& orientation)
{
    return std::string(orientation.flipsSides ? "sides " : "") +
           (orientation.flipsDepth ? "depth " : "") + std::to_string(90 * orientation.quarters);
}

// Mirrors a pixel, and then turns it about the upper left corner, one quarter after the other.
CPoint PlainlyTurned(CPoint pixel, CSize size, const Orientation& orientation)
{
    if (orientation.flipsSides) pixel.x = size.cx - 1 - pixel.x;
    if (orientation.flipsDepth) pixel.y = size.cy - 1 - pixel.y;
    for (int i = 0; i < orientation.quarters; ++i) {
        pixel = CPoint(size.cy - 1 - pixel.y, pixel.x);
        std::swap(size.cx, size.cy);
    }
    return pixel;
}

// Frames whose every sample is known, because it follows from its place.
class Pattern : public FrameSource
{
public:
    explicit Pattern(const CineDescription& cine) : m_cine(cine) {}

    const CineDescription& Description() const override { return m_cine; }
    int Frames() const override { return 1; }
    bool ReadFrame(int, std::vector<std::uint8_t>& bytes) const override
    {
        bytes.clear();
        for (int line = 0; line < lines; ++line)
            for (int sample = 0; sample < samples; ++sample)
                bytes.push_back(static_cast<std::uint8_t>(line * 3 + sample / 4));
        return true;
    }

private:
    CineDescription m_cine;
};

constexpr CSize landscape(300, 203);

// Shows the pattern so that its upright image has always the same size.
void ShowPattern(const CineDescription& cine, ImageView& view, const Orientation& orientation)
{
    const Pattern pattern(cine);
    CSize size = landscape;
    if (orientation.IsOnSide()) std::swap(size.cx, size.cy);
    view.SetOrientation(orientation);
    view.SetSource(pattern, size);
    ASSERT_TRUE(view.Show(pattern, 0));
}

} // namespace

TEST(ImageTurn, GoesThereAndBackInEachOrientation)
{
    test_support::Random random(5);
    for (const Orientation& orientation : Orientations()) {
        SCOPED_TRACE(NameOf(orientation));
        for (int i = 0; i < 200; ++i) {
            const CSize size(random.Int(1, 2000), random.Int(1, 2000));
            const ImageTurn turn(orientation, size);
            EXPECT_EQ(turn.Size(), orientation.IsOnSide() ? CSize(size.cy, size.cx) : size);
            const CPoint pixel(random.Int(-50, 2050), random.Int(-50, 2050));
            const PixelPoint displayed = turn.Displayed(Exactly(pixel));
            const CPoint plain = PlainlyTurned(pixel, size, orientation);
            EXPECT_EQ(displayed.x, plain.x);
            EXPECT_EQ(displayed.y, plain.y);
            const PixelPoint between{pixel.x + 0.375, pixel.y - 0.25};
            const PixelPoint back = turn.Upright(turn.Displayed(between));
            EXPECT_EQ(back.x, between.x);
            EXPECT_EQ(back.y, between.y);
        }
    }
}

TEST(ImageTurn, TurnsPixelsAsThePlainForm)
{
    test_support::Random random(6);
    for (const Orientation& orientation : Orientations())
        for (const CSize size : {CSize(1, 1), CSize(7, 1), CSize(1, 9), CSize(16, 16),
                                 CSize(37, 50), CSize(123, 17)}) {
            SCOPED_TRACE(NameOf(orientation));
            const auto count = static_cast<std::size_t>(size.cx * size.cy);
            std::vector<std::uint8_t> upright(count);
            for (std::uint8_t& each : upright)
                each = static_cast<std::uint8_t>(random.Int(0, 255));
            const ImageTurn turn(orientation, size);
            std::vector<std::uint8_t> displayed(count);
            turn.TurnPixels(upright.data(), displayed.data());
            std::vector<std::uint8_t> plain(count);
            for (int y = 0; y < size.cy; ++y)
                for (int x = 0; x < size.cx; ++x) {
                    const CPoint to = PlainlyTurned({x, y}, size, orientation);
                    plain[static_cast<std::size_t>(to.y * turn.Size().cx + to.x)] =
                        upright[static_cast<std::size_t>(y * size.cx + x)];
                }
            EXPECT_EQ(displayed, plain);
        }
}

TEST(ImageTurn, TheImageShowsThePixelsOfTheUprightOne)
{
    for (const CineDescription& cine : {Linear(), Curved()}) {
        ImageView plain;
        ShowPattern(cine, plain, {});
        for (const Orientation& orientation : Orientations()) {
            SCOPED_TRACE(NameOf(orientation));
            ImageView view;
            ShowPattern(cine, view, orientation);
            PixelCanvas canvas(CSize(300, 300));
            view.Paint(canvas.Context(), CPoint(0, 0));
            int wrong = 0;
            for (int y = 0; y < landscape.cy; ++y)
                for (int x = 0; x < landscape.cx; ++x) {
                    const CPoint at = PlainlyTurned({x, y}, landscape, orientation);
                    wrong += view.Grey(at) != plain.Grey({x, y});
                }
            EXPECT_EQ(wrong, 0);
            const CPoint middle = view.Parameters().Pixel(lines / 2, samples / 2);
            const int grey = view.Grey(middle);
            EXPECT_EQ(canvas.Context().GetPixel(middle.x, middle.y), RGB(grey, grey, grey));
            const CRect box = ImagedRect(view);
            const CPoint corner =
                PlainlyTurned(ImagedRect(plain).TopLeft(), landscape, orientation);
            EXPECT_TRUE(corner.x == box.left || corner.x == box.right - 1);
            EXPECT_TRUE(corner.y == box.top || corner.y == box.bottom - 1);
        }
    }
}

TEST(ImageTurn, FindsTheLineAndSampleOfAPixel)
{
    for (const Orientation& orientation : Orientations()) {
        SCOPED_TRACE(NameOf(orientation));
        ImageView view;
        ShowPattern(Linear(), view, orientation);
        const UPoint found = view.Parameters().ScanPosition(view.Parameters().Pixel(20, 300));
        EXPECT_NEAR(found.x, 20, 1);
        EXPECT_NEAR(found.y, 300, 3);
    }
}

TEST(ImageTurn, MarksStayOnTheTissueAtAnyZoom)
{
    test_support::Random random(7);
    for (const CineDescription& cine : {Linear(), Curved()})
        for (const Orientation& orientation : Orientations()) {
            SCOPED_TRACE(NameOf(orientation));
            ImageView view;
            ShowPattern(cine, view, orientation);
            const FrameSurface surface(view, CPoint(11, 22));
            for (int i = 0; i < 100; ++i) {
                if (i == 40) view.ZoomAt(3, {100, 60});
                if (i == 70) view.Pan({25, -14});
                const CPoint scan(random.Int(0, lines - 1), random.Int(0, samples - 1));
                const MarkPoint point{1.0 * scan.x, 1.0 * scan.y};
                const PixelPoint pixel = surface.PixelOf(point);
                const CPoint shown = view.Parameters().Pixel(scan.x, scan.y) + CPoint(11, 22);
                EXPECT_LE(std::abs(pixel.x - shown.x), 0.5 + 1e-6);
                EXPECT_LE(std::abs(pixel.y - shown.y), 0.5 + 1e-6);
                const MarkPoint back = surface.PointAt(pixel);
                EXPECT_NEAR(back.x, point.x, 1e-6);
                EXPECT_NEAR(back.y, point.y, 1e-6);
            }
        }
}

TEST(ImageTurn, AnImageIsZoomedAndMovedAsItLiesOnTheScreen)
{
    for (const Orientation& orientation : Orientations()) {
        SCOPED_TRACE(NameOf(orientation));
        ImageView view;
        ShowPattern(Curved(), view, orientation);
        view.ZoomAt(4, {100, 100});
        const PixelPoint pixel{90, 80};
        const FramePoint before = view.Parameters().InFrame(pixel);
        const double micron = view.Parameters().micronsPerPixel.x;
        view.Pan({0, 0});
        view.Pan({7, -5});
        const PixelPoint moved = view.Parameters().PixelOf(before);
        EXPECT_NEAR(moved.x, pixel.x + 7, 1e-6);
        EXPECT_NEAR(moved.y, pixel.y - 5, 1e-6);
        view.ZoomAt(1.25, {97, 75});
        const FramePoint after = view.Parameters().InFrame({97, 75});
        EXPECT_NEAR(after.x, before.x, micron);
        EXPECT_NEAR(after.y, before.y, micron);
    }
}

TEST(ImageTurn, ALineOfConstantDepthFollowsTheImage)
{
    for (const CineDescription& cine : {Linear(), Curved()})
        for (const Orientation& orientation : Orientations()) {
            SCOPED_TRACE(NameOf(orientation));
            ImageView view;
            ShowPattern(cine, view, orientation);
            PixelCanvas canvas(CSize(300, 300));
            canvas.Context().FillSolidRect(0, 0, 300, 300, RGB(0, 0, 0));
            SelectObject(canvas.Context().GetSafeHdc(), GetStockObject(WHITE_PEN));
            const ImagingParameters& image = view.Parameters();
            image.DrawDepthLine(canvas.Context(), 300, 20, 40);
            const CPoint middle = image.Pixel(30, 300);
            int close = 0;
            int all = 0;
            for (int y = 0; y < 300; ++y)
                for (int x = 0; x < 300; ++x) {
                    const bool isSet = canvas.Context().GetPixel(x, y) != 0;
                    all += isSet;
                    close += isSet && std::abs(x - middle.x) <= 3 && std::abs(y - middle.y) <= 3;
                }
            const CSize way = image.Pixel(40, 300) - image.Pixel(20, 300);
            EXPECT_GE(close, 5);
            EXPECT_NEAR(all, std::max(std::abs(way.cx), std::abs(way.cy)), 6);
        }
}

TEST(GreyWindow, TheWidestOneChangesNothing)
{
    const auto table = GreyTable({}, 0);
    for (std::size_t i = 0; i < table.size(); ++i)
        EXPECT_EQ(table[i], i);
}

TEST(GreyWindow, SpreadsItsLevelsFromBlackToWhite)
{
    const auto table = GreyTable({.level = 100, .width = 51}, 0); // from 74.5 to 124.5
    EXPECT_EQ(table[0], 0);
    EXPECT_EQ(table[74], 0);
    EXPECT_EQ(table[75], 3); // half a level: 0.5 / 50 x 255
    EXPECT_EQ(table[99], 125);
    EXPECT_EQ(table[100], 130);
    EXPECT_EQ(table[124], 252);
    EXPECT_EQ(table[125], 255);
    EXPECT_EQ(table[255], 255);
    const auto step = GreyTable({.level = 100, .width = 1}, 0);
    EXPECT_EQ(step[99], 0);
    EXPECT_EQ(step[100], 255);
}

TEST(GreyWindow, ComesAfterTheGain)
{
    const auto table = GreyTable({.level = 100, .width = 1}, 6); // 25 levels
    EXPECT_EQ(table[74], 0);
    EXPECT_EQ(table[75], 255);
}

TEST(GreyWindow, StaysWithinItsBounds)
{
    EXPECT_EQ(GreyWindow().Moved(1000, 1000), (GreyWindow{255, 256}));
    EXPECT_EQ(GreyWindow().Moved(-1000, -1000), (GreyWindow{0, 1}));
    for (const GreyWindow& window : {GreyWindow{0, 1}, GreyWindow{255, 1}, GreyWindow{255, 256},
                                     GreyWindow{0, 256}, GreyWindow{17, 2}}) {
        const auto table = GreyTable(window, 0);
        EXPECT_TRUE(std::ranges::is_sorted(table));
        EXPECT_GE(table[static_cast<std::size_t>(window.level)], 127);
    }
}

TEST(GreyWindow, LeavesTheImageBlackBesideTheFrame)
{
    ImageView view;
    view.SetGreyWindow({.level = 0, .width = 1});
    Show(Linear(), view);
    EXPECT_EQ(view.Grey(view.Parameters().Pixel(lines / 2, samples / 2)), 255);
    EXPECT_EQ(view.Grey({1, 1}), 0);
}
