// The main window shows running frames, and recordings end with it.
#include "base/ScreenLayout.h"
#include "image/CineFile.h"
#include "MainWindowFixture.h"
#include "record/MovieFile.h"
#include "record/PixelCanvas.h"

#include <base/GdiHandles.h>
#include <Utils_Statics/GetStr.h>

#include <atomic>
#include <thread>
#include <vector>

using namespace exam;

namespace {

class MainWindowFramesTest : public MainWindowTest
{
protected:
    void RecordMovie(int frames)
    {
        m_window->Exam().ToggleRecording(true);
        for (int i = 0; i < frames; ++i)
            m_window->Exam().Advance();
        ASSERT_TRUE(m_state.Recording());
    }

    void ExpectWholeMovie(int frames)
    {
        EXPECT_FALSE(m_state.Recording());
        EXPECT_EQ(FindMovieProblem(m_folder / L"movie-001.avi", frames), L"");
    }
};

} // namespace

TEST_F(MainWindowFramesTest, ZoomingDoesNotEndAMovie)
{
    RecordMovie(1);
    m_state.ZoomAt(2, {300, 300});
    m_window->Exam().Advance();
    m_state.ShowWhole();
    m_window->Exam().EndRecording();
    ExpectWholeMovie(2);
}

TEST_F(MainWindowFramesTest, ClosingTheWindowFinishesTheRecording)
{
    RecordMovie(3);
    m_window->SendMessage(WM_CLOSE);
    EXPECT_EQ(m_window->GetSafeHwnd(), nullptr);
    ExpectWholeMovie(3);
}

TEST_F(MainWindowFramesTest, TheEndOfTheSessionFinishesTheRecording)
{
    RecordMovie(3);
    EXPECT_TRUE(m_window->SendMessage(WM_QUERYENDSESSION));
    ExpectWholeMovie(3);
}

TEST_F(MainWindowFramesTest, AForcedEndOfTheSessionFinishesTheRecording)
{
    RecordMovie(2);
    m_window->SendMessage(WM_ENDSESSION, FALSE);
    EXPECT_TRUE(m_state.Recording()); // the session goes on
    m_window->SendMessage(WM_ENDSESSION, TRUE);
    ExpectWholeMovie(2);
}

TEST_F(MainWindowFramesTest, AHeldKeyRecordsOnce)
{
    constexpr LPARAM repeated = 0x40000001;
    m_window->SendMessage(WM_KEYDOWN, 'C', 1);
    for (int i = 0; i < 5; ++i)
        m_window->SendMessage(WM_KEYDOWN, 'C', repeated);
    EXPECT_TRUE(m_state.Recording());
}

namespace {

// Pixels of the windows over the image that look the same on every frame.
std::vector<CPoint> StablePixels(MainWindow& window)
{
    const auto inside = [](CWnd& overlay, CPoint pixel) {
        overlay.ClientToScreen(&pixel);
        return pixel;
    };
    LoopDial& dial = window.OverImage().Dial();
    CRect area;
    dial.GetClientRect(&area);
    std::vector<CPoint> pixels = {inside(dial, {area.CenterPoint().x, 2}),
                                  inside(dial, {2, area.CenterPoint().y})};
    ToolBar& tools = window.OverImage().Tools();
    for (std::size_t i = 0; i < tools.Buttons().size(); ++i)
        pixels.push_back(inside(tools, tools.AreaOf(i).CenterPoint()));
    return pixels;
}

std::vector<COLORREF> OnScreen(const std::vector<CPoint>& pixels)
{
    const base::WindowContext screen(nullptr);
    const CRect part(CPoint(0, 0), ConsoleLayout().client);
    const base::MemoryContext memory(CreateCompatibleDC(screen.get()));
    const base::Bitmap bitmap(CreateCompatibleBitmap(screen.get(), part.Width(), part.Height()));
    const base::Selection selection(memory.get(), bitmap.get());
    BitBlt(memory.get(), 0, 0, part.Width(), part.Height(), screen.get(), 0, 0, SRCCOPY);
    std::vector<COLORREF> colours;
    for (const CPoint& pixel : pixels)
        colours.push_back(GetPixel(memory.get(), pixel.x, pixel.y));
    return colours;
}

} // namespace

TEST_F(MainWindowFramesTest, NoScreenshotMissesAWindowOverTheImageWhileFramesRun)
{
    RedrawWindow(m_window->GetSafeHwnd(), nullptr, nullptr,
                 RDW_INVALIDATE | RDW_UPDATENOW | RDW_ALLCHILDREN);
    HandleMessages();
    const std::vector<CPoint> pixels = StablePixels(*m_window);
    const std::vector<COLORREF> expected = OnScreen(pixels);
    for (const COLORREF colour : expected)
        ASSERT_NE(colour, RGB(0, 0, 0)); // what is below them is black
    constexpr int screenshots = 30;
    int missing = 0;
    std::atomic<bool> done = false;
    {
        const std::jthread watcher([&] {
            for (int i = 0; i < screenshots; ++i) {
                missing += OnScreen(pixels) != expected;
                Sleep(23);
            }
            done = true;
        });
        while (!done) {
            m_state.StepFrames(1);
            HandleMessages();
        }
    }
    EXPECT_EQ(missing, 0) << "of " << screenshots;
}

TEST_F(MainWindowFramesTest, AClickOnItsMessageOpensAFinishedRecording)
{
    Open(WindowForm::window);
    m_window->Exam().ToggleRecording(false);
    m_window->Exam().Advance();
    m_window->Exam().EndRecording();
    const CPoint message = m_state.Layout().status.CenterPoint();
    m_window->SendMessage(WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(message.x, message.y));
    EXPECT_EQ(m_state.Source().Frames(), 1); // the other recording has four
    EXPECT_EQ(m_state.Status(),
              GetStr("exam.image.opened", (m_folder / L"recording-001.cine").c_str()));
}

TEST_F(MainWindowFramesTest, MoviesShowTheImageAsItLiesAndRawRecordingsKeepItsEchoes)
{
    m_state.FlipSides();
    m_state.Rotate(90);
    m_state.MoveGreyWindow(-60, -100);
    const ImageView& view = m_state.View();
    PixelCanvas canvas(m_state.Layout().client);
    m_window->Exam().Window().PaintMovie(canvas.Context());
    for (const CPoint scan : {CPoint(20, 200), CPoint(64, 300), CPoint(100, 400)}) {
        const CPoint pixel = view.Parameters().Pixel(scan.x, scan.y);
        const CPoint at = m_state.Layout().image.TopLeft() + pixel;
        const int grey = view.Grey(pixel);
        EXPECT_EQ(canvas.Context().GetPixel(at.x, at.y), RGB(grey, grey, grey));
    }
    m_window->Exam().ToggleRecording(false);
    m_window->Exam().Advance();
    m_window->Exam().EndRecording();
    CineFile recorded;
    ASSERT_EQ(recorded.Open(m_folder / L"recording-001.cine"), L"");
    std::vector<std::uint8_t> kept;
    ASSERT_TRUE(recorded.ReadFrame(0, kept));
    bool isThere = false; // among the frames, because they ran
    for (int i = 0; i < m_state.Source().Frames(); ++i) {
        std::vector<std::uint8_t> echoes;
        isThere = isThere || (m_state.Source().ReadFrame(i, echoes) && echoes == kept);
    }
    EXPECT_TRUE(isThere);
}
