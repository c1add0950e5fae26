// The windows over the image have a part in recordings, the tool bar has buttons, and tips explain.
#include "overlay/Overlays.h"

#include "base/Palette.h"
#include "overlay/TipLook.h"
#include "record/PixelCanvas.h"

#include <base/GdiPlusSession.h>
#include <gtest/gtest.h>
#include <qor_utils/StoreFolders.h>
#include <qor_utils/StoreNumbers.h>
#include <test_support/Messages.h>
#include <test_support/TipReader.h>
#include <Utils_Statics/utilsExam.h>

#include <algorithm>
#include <memory>
#include <string>
#include <utility>

namespace {

using namespace exam;

CWinApp application(L"overlays_test");

const CRect image(0, 0, 1024, 768);

class OverlaysTest : public testing::Test
{
protected:
    OverlaysTest()
    {
        const std::wstring folder = utilsExam::GetApplicationPath().GetString();
        qor_utils::SetStoreFolder(qor_utils::imagesStore, folder + L"sample\\images");
    }

    void SetUp() override
    {
        ASSERT_TRUE(m_parent.CreateEx(0, nullptr, L"parent", WS_POPUP, image, nullptr, 0));
        ASSERT_TRUE(m_overlays.Open(m_parent));
    }

    // The overlays' pixels in a recording, row by row.
    std::vector<unsigned int> Recorded()
    {
        PixelCanvas canvas(image.Size());
        m_overlays.DrawRecorded(canvas.Context());
        std::vector<unsigned int> pixels;
        canvas.Cut(image, pixels);
        return pixels;
    }

    static bool IsBlack(const std::vector<unsigned int>& pixels, const CRect& part)
    {
        for (int y = part.top; y < part.bottom; ++y)
            for (int x = part.left; x < part.right; ++x)
                if (pixels[static_cast<std::size_t>(y * image.Width() + x)] & 0xFFFFFF)
                    return false;
        return true;
    }

    CRect AreaOf(CWnd& overlay)
    {
        CRect area;
        overlay.GetWindowRect(&area);
        m_parent.ScreenToClient(&area);
        return area;
    }

    void Push(std::size_t button)
    {
        const CPoint middle = m_overlays.Tools().AreaOf(button).CenterPoint();
        m_overlays.Tools().SendMessage(WM_LBUTTONDOWN, 0, MAKELPARAM(middle.x, middle.y));
    }

    base::GdiPlusSession m_gdiPlus;
    ExamState m_state;
    ButtonForm m_form = ButtonForm::normal;
    int m_pushed = 0;
    CWnd m_parent;
    Overlays m_overlays{m_state,
                        {{L"raw.png", "name", [] { return L"tip"; }, [this] { ++m_pushed; },
                          [this] { return m_form; }},
                         {L"missing.png", "name", [] { return L"tip"; },
                          [this] { m_pushed += 100; }, [] { return ButtonForm::framed; }}}};
};

} // namespace

TEST_F(OverlaysTest, RecordsTheIndicatorsAndLeavesTheToolBarOut)
{
    const std::vector<unsigned int> pixels = Recorded();
    EXPECT_TRUE(m_overlays.Dial().CanDrawOnAVI());
    EXPECT_FALSE(IsBlack(pixels, AreaOf(m_overlays.Dial())));
    EXPECT_FALSE(m_overlays.Tools().CanDrawOnAVI());
    EXPECT_TRUE(IsBlack(pixels, AreaOf(m_overlays.Tools())));
}

TEST_F(OverlaysTest, RecordsOnlyTheShapeOfAnIndicator)
{
    const std::vector<unsigned int> pixels = Recorded();
    const CRect dial = AreaOf(m_overlays.Dial());
    EXPECT_TRUE(IsBlack(pixels, CRect(dial.TopLeft(), CSize(6, 6))));
    EXPECT_TRUE(IsBlack(pixels, CRect(dial.BottomRight() - CSize(6, 6), CSize(6, 6))));
    EXPECT_FALSE(IsBlack(pixels, CRect(CPoint(dial.CenterPoint().x, dial.top), CSize(1, 4))));
}

TEST_F(OverlaysTest, RecordsNothingOfWindowsThatAreGone)
{
    m_parent.DestroyWindow();
    EXPECT_TRUE(IsBlack(Recorded(), image));
}

TEST_F(OverlaysTest, PushesTheButtonThatIsHitUnlessItIsDisabled)
{
    Push(0);
    EXPECT_EQ(m_pushed, 1);
    Push(1);
    EXPECT_EQ(m_pushed, 101);
    m_form = ButtonForm::disabled;
    Push(0);
    EXPECT_EQ(m_pushed, 101);
    const CPoint between(5, m_overlays.Tools().AreaOf(0).bottom + 2);
    m_overlays.Tools().SendMessage(WM_LBUTTONDOWN, 0, MAKELPARAM(between.x, between.y));
    EXPECT_EQ(m_pushed, 101);
}

TEST_F(OverlaysTest, LetsTheMouseThroughIndicatorsOnly)
{
    EXPECT_EQ(m_overlays.Dial().SendMessage(WM_NCHITTEST), HTTRANSPARENT);
    CRect tools;
    m_overlays.Tools().GetWindowRect(&tools);
    EXPECT_EQ(m_overlays.Tools().SendMessage(
                  WM_NCHITTEST, 0, MAKELPARAM(tools.CenterPoint().x, tools.CenterPoint().y)),
              HTCLIENT);
}

TEST_F(OverlaysTest, DrawsDisabledPicturesGreyAndFramedOnesWithAFrame)
{
    const ButtonPicture picture(L"raw.png");
    const CRect area(0, 0, 40, 40);
    const auto drawn = [&](ButtonForm form) {
        PixelCanvas canvas(area.Size());
        picture.Draw(canvas.Context(), area, form);
        std::vector<unsigned int> pixels;
        canvas.Cut(area, pixels);
        return pixels;
    };
    const auto isGrey = [](unsigned int pixel) {
        return (pixel & 0xFF) == (pixel >> 8 & 0xFF) && (pixel & 0xFF) == (pixel >> 16 & 0xFF);
    };
    const std::vector<unsigned int> normal = drawn(ButtonForm::normal);
    const std::vector<unsigned int> disabled = drawn(ButtonForm::disabled);
    const std::vector<unsigned int> framed = drawn(ButtonForm::framed);
    EXPECT_FALSE(std::all_of(normal.begin(), normal.end(), isGrey));
    EXPECT_TRUE(std::all_of(disabled.begin(), disabled.end(), isGrey));
    EXPECT_NE(disabled, std::vector<unsigned int>(disabled.size()));
    EXPECT_EQ(normal[0] & 0xFFFFFF, 0u); // rounded
    const std::size_t middleOfLeftEdge = 20 * 40;
    EXPECT_GT(framed[middleOfLeftEdge] >> 16 & 0xFF, 200u); // the frame's colour is light
    EXPECT_LT(normal[middleOfLeftEdge] >> 16 & 0xFF, 100u);
}

TEST_F(OverlaysTest, DrawsThePictureOfEachResolutionPointByPoint)
{
    const ButtonPicture picture(L"distance.png");
    for (const auto& [file, size] : {std::pair(L"buttons\\distance.png", 40),
                                     {L"144\\buttons\\distance.png", 60},
                                     {L"192\\buttons\\distance.png", 80}}) {
        const std::unique_ptr<Gdiplus::Bitmap> symbol(LoadImageFromIconStore(file));
        ASSERT_EQ(static_cast<int>(symbol->GetWidth()), size);
        const CRect area(0, 0, size, size);
        PixelCanvas canvas(area.Size());
        picture.Draw(canvas.Context(), area, ButtonForm::normal);
        int opaque = 0;
        for (int y = 0; y < size; ++y)
            for (int x = 0; x < size; ++x) {
                Gdiplus::Color colour;
                symbol->GetPixel(x, y, &colour);
                if (colour.GetAlpha() != 255) continue;
                ++opaque;
                EXPECT_EQ(canvas.Context().GetPixel(x, y), colour.ToCOLORREF()) << size;
            }
        EXPECT_GT(opaque, size);
    }
}

namespace {

class HoverTipTest : public testing::TestWithParam<CSize>
{
protected:
    HoverTipTest()
    {
        m_window.CreateEx(0, nullptr, L"window", WS_POPUP | WS_VISIBLE,
                          CRect(CPoint(300, 300), GetParam()), nullptr, 0);
    }
    ~HoverTipTest() override { m_window.DestroyWindow(); }

    // Handles messages for a time; the result is the tip that is shown then.
    static HWND TipAfter(DWORD milliseconds)
    {
        const ULONGLONG end = GetTickCount64() + milliseconds;
        while (GetTickCount64() < end) {
            MsgWaitForMultipleObjects(0, nullptr, FALSE, 20, QS_ALLINPUT);
            for (MSG next; PeekMessage(&next, nullptr, 0, 0, PM_REMOVE);)
                DispatchMessage(&next);
        }
        return test_support::ShownTip();
    }

    // The tip that comes; null when none does.
    static HWND NextTip()
    {
        test_support::PumpUntil([] { return test_support::ShownTip() != nullptr; });
        return test_support::ShownTip();
    }

    void PointAt(int thing)
    {
        m_tip.Follow(m_window, CRect(CPoint(thing * 20, 5), CSize(20, 20)), L"Title",
                     L"A text of some length for the thing");
    }

    TipLook m_look;
    CWnd m_window;
    HoverTip m_tip;
};

} // namespace

TEST_P(HoverTipTest, ComesAfterHalfASecondBesideTheWindow)
{
    const ULONGLONG begin = GetTickCount64();
    PointAt(1);
    const HWND tip = NextTip();
    ASSERT_NE(tip, nullptr);
    EXPECT_GE(GetTickCount64() - begin, 450u); // clocks are coarse
    CRect shown;
    CRect window;
    GetWindowRect(tip, &shown);
    m_window.GetWindowRect(&window);
    CRect both;
    EXPECT_FALSE(both.IntersectRect(&shown, &window))
        << shown.left << "," << shown.top << " - " << shown.right << "," << shown.bottom;
    m_tip.Leave();
    EXPECT_EQ(test_support::ShownTip(), nullptr);
}

TEST_P(HoverTipTest, HasTheColoursAndTheFontOfTheApplication)
{
    PointAt(1);
    const HWND tip = NextTip();
    ASSERT_NE(tip, nullptr);
    EXPECT_EQ(static_cast<COLORREF>(SendMessageW(tip, TTM_GETTIPBKCOLOR, 0, 0)), palette::line);
    EXPECT_EQ(static_cast<COLORREF>(SendMessageW(tip, TTM_GETTIPTEXTCOLOR, 0, 0)), palette::text);
    LOGFONTW font = {};
    GetObjectW(reinterpret_cast<HGDIOBJ>(SendMessageW(tip, WM_GETFONT, 0, 0)), sizeof font, &font);
    EXPECT_STREQ(font.lfFaceName, L"Helvetica");
    EXPECT_EQ(font.lfQuality, CLEARTYPE_QUALITY);
}

TEST_P(HoverTipTest, WaitsAnewWhenThePointerHasGoneOnAndNotAtAllWhenItLeaves)
{
    PointAt(1);
    TipAfter(300);
    const ULONGLONG begin = GetTickCount64();
    PointAt(2);
    EXPECT_NE(NextTip(), nullptr);
    EXPECT_GE(GetTickCount64() - begin, 450u);
    PointAt(1);
    m_tip.Leave();
    EXPECT_EQ(TipAfter(700), nullptr);
}

TEST_P(HoverTipTest, GoesOnAPressAndStaysAwayFromThatThing)
{
    PointAt(1);
    m_tip.Press();
    PointAt(1);
    EXPECT_EQ(TipAfter(800), nullptr);
    PointAt(2);
    EXPECT_NE(NextTip(), nullptr);
    m_tip.Press();
    EXPECT_EQ(test_support::ShownTip(), nullptr);
    PointAt(2);
    EXPECT_EQ(TipAfter(800), nullptr);
}

INSTANTIATE_TEST_SUITE_P(OfEachShape, HoverTipTest,
                         testing::Values(CSize(400, 60), CSize(60, 200)));
