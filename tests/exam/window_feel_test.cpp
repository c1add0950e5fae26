// The main window paints only what changed, and never works long without a sign of life.
#include "base/Painting.h"
#include "LargeCine.h"
#include "MainWindowFixture.h"
#include "window/Capture.h"

#include <Utils_Statics/MouseCapture.h>

#include <commctrl.h>
#include <psapi.h>

#include <algorithm>
#include <filesystem>
#include <optional>
#include <utility>
#include <vector>

using namespace exam;

namespace {

class WindowFeel : public OpenMainWindow
{
protected:
    WindowFeel()
    {
        EXPECT_EQ(m_state.AddRecording(L"linear.cine"), L"");
        Open(WindowForm::console);
    }
};

// The parts of the window that wait to be painted.
class Waiting
{
public:
    explicit Waiting(CWnd& window) : m_region(PartToPaint(window.GetSafeHwnd())) {}

    bool Has(CPoint at) const { return PtInRegion(m_region.get(), at.x, at.y) != 0; }

    int Pixels() const
    {
        const DWORD size = GetRegionData(m_region.get(), 0, nullptr);
        std::vector<char> bytes(size);
        auto* const data = reinterpret_cast<RGNDATA*>(bytes.data());
        if (GetRegionData(m_region.get(), size, data) == 0) return 0;
        int pixels = 0;
        for (DWORD i = 0; i < data->rdh.nCount; ++i) {
            const CRect part(reinterpret_cast<const RECT*>(data->Buffer)[i]);
            pixels += part.Width() * part.Height();
        }
        return pixels;
    }

private:
    base::Region m_region;
};

int PixelsOf(const CRect& part)
{
    return part.Width() * part.Height();
}

TEST_F(WindowFeel, AFrameRepaintsOnlyWhatFollowsIt)
{
    for (const WindowForm form : {WindowForm::console, WindowForm::window}) {
        Open(form);
        m_state.SetStatus(L"");
        HandleMessages();
        m_window->UpdateWindow();
        ASSERT_EQ(Waiting(*m_window).Pixels(), 0);
        const ScreenLayout& layout = m_state.Layout();
        // Windows of others that go from the screen can only add to what waits.
        std::optional<Waiting> least;
        for (int i = 0; i < 5; ++i) {
            m_window->Exam().Advance();
            Waiting waiting(*m_window);
            if (!least || waiting.Pixels() < least->Pixels()) least.emplace(std::move(waiting));
            m_window->UpdateWindow();
        }
        EXPECT_LE(least->Pixels(), PixelsOf(layout.imageArea) + PixelsOf(layout.panel) +
                                       PixelsOf(layout.timeline) + PixelsOf(layout.recordingMark));
        EXPECT_TRUE(least->Has(layout.image.CenterPoint()));
        EXPECT_TRUE(least->Has(layout.panel.CenterPoint()));
        EXPECT_FALSE(least->Has(layout.header.CenterPoint()));
        EXPECT_FALSE(least->Has(layout.status.CenterPoint()));
    }
}

TEST_F(WindowFeel, ABarIsRepaintedWhenItsTextIsAnother)
{
    m_state.SetStatus(L"one"); // the first change puts all parts into their places
    const ScreenLayout& layout = m_state.Layout();
    HandleMessages();
    m_window->UpdateWindow();
    m_state.SetStatus(L"another");
    EXPECT_TRUE(Waiting(*m_window).Has(layout.status.CenterPoint()));
    EXPECT_FALSE(Waiting(*m_window).Has(layout.header.CenterPoint()));
    m_window->UpdateWindow();
    Patient patient;
    patient.name = L"Ada Sample";
    m_state.Document().SetPatient(patient);
    m_state.Marks().Refresh();
    EXPECT_TRUE(Waiting(*m_window).Has(layout.header.CenterPoint()));
    m_window->UpdateWindow();
    m_state.NextLanguage();
    EXPECT_EQ(Waiting(*m_window).Pixels(), PixelsOf(CRect(CPoint(0, 0), layout.client)));
    m_state.NextLanguage();
}

// The clipped buffer gives the same pixels as a whole repaint.
TEST_F(WindowFeel, WhatIsRepaintedInPartsLooksLikeTheWhole)
{
    const CRect all(CPoint(0, 0), m_state.Layout().client);
    const auto pixels = [&] {
        m_window->RedrawWindow(nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
        const base::Bitmap picture = Capture(m_window->GetSafeHwnd(), all);
        std::vector<COLORREF> seen;
        CDC dc;
        dc.CreateCompatibleDC(nullptr);
        const base::Selection selection(dc.GetSafeHdc(), picture.get());
        for (int y = 0; y < all.bottom; y += 3)
            for (int x = 0; x < all.right; x += 3)
                seen.push_back(dc.GetPixel(x, y));
        return seen;
    };
    m_state.StepFrames(1);
    m_state.SetStatus(L"a frame");
    const auto parts = pixels();
    m_window->Invalidate(FALSE);
    EXPECT_TRUE(parts == pixels());
}

// The milliseconds of a processor that this thread has taken.
double WorkOfThread()
{
    FILETIME unused = {};
    FILETIME kernel = {};
    FILETIME user = {};
    GetThreadTimes(GetCurrentThread(), &unused, &unused, &kernel, &user);
    return (kernel.dwLowDateTime + 1.0 * user.dwLowDateTime) / 10000;
}

// Finds the longest work of this thread between two signs of life while it lives. A turn of the
// message loop is one, and so is a step of a bar that shows progress; it stands for what follows,
// too.
class SignsOfLife
{
public:
    SignsOfLife()
        : m_turns(SetWindowsHookExW(WH_GETMESSAGE, OnTurn, nullptr, GetCurrentThreadId())),
          m_sent(SetWindowsHookExW(WH_CALLWNDPROC, OnSent, nullptr, GetCurrentThreadId()))
    {
        s_longest = 0;
        s_steps = 0;
        s_isProgress = false;
        s_last = WorkOfThread();
    }
    ~SignsOfLife()
    {
        UnhookWindowsHookEx(m_turns);
        UnhookWindowsHookEx(m_sent);
    }
    SignsOfLife(const SignsOfLife&) = delete;
    SignsOfLife& operator=(const SignsOfLife&) = delete;

    int Steps() const { return s_steps; }
    double Longest() const
    {
        Sign(false);
        return s_longest;
    }

private:
    static void Sign(bool isProgress)
    {
        const double now = WorkOfThread();
        if (!s_isProgress) s_longest = std::max(s_longest, now - s_last);
        s_isProgress = isProgress;
        s_last = now;
    }
    static LRESULT CALLBACK OnTurn(int code, WPARAM wParam, LPARAM lParam)
    {
        Sign(false);
        return CallNextHookEx(nullptr, code, wParam, lParam);
    }
    static LRESULT CALLBACK OnSent(int code, WPARAM wParam, LPARAM lParam)
    {
        const auto& sent = *reinterpret_cast<const CWPSTRUCT*>(lParam);
        if (sent.message == PBM_SETPOS && IsWindowVisible(sent.hwnd)) {
            ++s_steps;
            Sign(true);
        }
        return CallNextHookEx(nullptr, code, wParam, lParam);
    }

    HHOOK m_turns;
    HHOOK m_sent;
    inline static double s_longest = 0;
    inline static double s_last = 0;
    inline static int s_steps = 0;
    inline static bool s_isProgress = false;
};

constexpr double longestBlock = 100; // milliseconds

TEST_F(WindowFeel, OpeningALargeRecordingTakesNoTimeAndNoMemory)
{
    constexpr int frames = 1200;
    constexpr int lineCount = 256;
    constexpr int sampleCount = 2048;
    if (!large_cine::HasRoom(m_folder.Path(), 630'000'000))
        GTEST_SKIP() << "the disk has no room for 600 MB";
    const std::wstring path = m_folder / L"large.cine";
    ASSERT_TRUE(large_cine::WriteLargeCine(path, frames, lineCount, sampleCount));
    HandleMessages();
    const SignsOfLife signs;
    m_window->Exam().OpenImage(path);
    m_window->UpdateWindow();
    EXPECT_LT(signs.Longest(), longestBlock);
    EXPECT_EQ(m_state.Source().Frames(), frames);
    EXPECT_GT(m_state.View().Grey(m_state.View().Parameters().Pixel(lineCount / 2, 1000)), 0);
    for (const int place : {frames, frames / 2, 1}) {
        m_state.ShowPosition(place);
        EXPECT_TRUE(m_state.IsFrameReadable());
    }
    PROCESS_MEMORY_COUNTERS memory = {};
    memory.cb = sizeof memory;
    ASSERT_TRUE(GetProcessMemoryInfo(GetCurrentProcess(), &memory, sizeof memory));
    EXPECT_LT(memory.PeakWorkingSetSize, 300'000'000u);
}

TEST_F(WindowFeel, PlayingSkipsNoFrame)
{
    constexpr int frames = 40;
    const std::wstring path = m_folder / L"loop.cine";
    ASSERT_TRUE(large_cine::WriteLargeCine(path, frames, 64, 512));
    m_window->Exam().OpenImage(path);
    m_state.ChangeSpeed(2);
    std::vector<int> seen{m_state.FramePosition()};
    m_state.SetFrozen(false);
    const ULONGLONG end = GetTickCount64() + 20'000;
    while (seen.size() < frames && GetTickCount64() < end) {
        MsgWaitForMultipleObjects(0, nullptr, FALSE, 100, QS_ALLINPUT);
        MSG next;
        if (PeekMessage(&next, nullptr, 0, 0, PM_REMOVE)) DispatchMessage(&next);
        if (m_state.FramePosition() != seen.back()) seen.push_back(m_state.FramePosition());
    }
    m_state.SetFrozen(true);
    for (int i = 0; i < frames; ++i)
        EXPECT_EQ(seen.at(static_cast<std::size_t>(i)), i + 1);
}

// Answers the question whether the unpacked study shall be opened, as soon as it is asked.
void CALLBACK DeclineStudy(HWND, UINT, UINT_PTR timer, DWORD)
{
    const HWND box = FindWindowW(L"#32770", nullptr);
    if (GetDlgItem(box, IDNO) == nullptr) return;
    KillTimer(nullptr, timer);
    PostMessageW(box, WM_COMMAND, IDNO, 0);
}

TEST_F(WindowFeel, LongWorkShowsItsProgress)
{
    Examination& exam = m_window->Exam();
    const std::wstring folder = m_folder / L"P1\\S1";
    qor_utils::SetStoreFolder(qor_utils::patientDatabaseStore, m_folder.Path());
    std::filesystem::create_directories(folder);
    exam.OpenStudy(folder);
    constexpr int frames = 20;
    ASSERT_TRUE(large_cine::WriteLargeCine(folder + L"\\marked.cine", frames, 256, 2048));
    exam.OpenImage(folder + L"\\marked.cine");
    for (int i = 0; i < frames; ++i) {
        m_state.ShowPosition(i + 1);
        m_state.ChooseMark(MarkKind::distance);
        const CPoint at = m_state.Layout().image.CenterPoint();
        m_state.Press(MK_LBUTTON, at);
        MouseCapture::HandleMouse(WM_LBUTTONUP, 0, at + CPoint(40, 40));
    }
    ASSERT_EQ(m_state.Content().marks.size(), static_cast<std::size_t>(frames));
    HandleMessages();
    const SignsOfLife signs;
    exam.ExportReport();
    EXPECT_EQ(signs.Steps(), frames);
    EXPECT_LT(signs.Longest(), longestBlock) << "the report";
    exam.ExportTable();
    EXPECT_LT(signs.Longest(), longestBlock) << "the table";
    exam.Pack();
    EXPECT_GT(signs.Steps(), frames);
    EXPECT_LT(signs.Longest(), longestBlock) << "packing";
    SetTimer(nullptr, 0, 20, DeclineStudy);
    exam.Unpack();
    EXPECT_LT(signs.Longest(), longestBlock) << "unpacking";
    EXPECT_TRUE(std::filesystem::exists(m_folder / L"study-001\\S1\\marked.cine"));
}

} // namespace
