// A tour finds what is wrong with what it sees, and keeps its steps.
#include "base/Painting.h"
#include "tour/TourReport.h"
#include "tour/TourScreen.h"
#include "window/Capture.h"

#include <base/FileContents.h>
#include <gtest/gtest.h>
#include <test_support/TemporaryFolder.h>

#include <algorithm>
#include <thread>

namespace {

using namespace exam;
using test_support::TemporaryFolder;

CWinApp application(L"tour_screen_test");

std::wstring CutIn(const CRect& box, UINT format)
{
    return FindCutText([&](CDC& dc) {
        const ScopedFont font(dc, ScopedFont::textSize, FW_NORMAL);
        CRect place = box;
        dc.DrawText(L"depth of the image", &place, format | DT_SINGLELINE);
    });
}

// Milliseconds that this thread has worked.
std::int64_t ThreadTime()
{
    FILETIME moment = {};
    FILETIME kernel = {};
    FILETIME user = {};
    GetThreadTimes(GetCurrentThread(), &moment, &moment, &kernel, &user);
    return (std::int64_t{kernel.dwLowDateTime} + user.dwLowDateTime) / 10'000;
}

TEST(CutText, IsFoundWhereItsPlaceIsTooNarrow)
{
    EXPECT_EQ(CutIn({0, 0, 40, 20}, DT_LEFT), L"depth of the image");
    EXPECT_EQ(CutIn({0, 0, 40, 20}, DT_RIGHT), L"depth of the image");
}

TEST(CutText, IsFoundByItsDots)
{
    EXPECT_TRUE(CutIn({0, 0, 80, 20}, DT_LEFT | DT_END_ELLIPSIS).ends_with(L"..."));
}

TEST(CutText, IsNoneWhereItFits)
{
    EXPECT_EQ(CutIn({0, 0, 300, 20}, DT_LEFT), L"");
    EXPECT_EQ(CutIn({0, 0, 300, 20}, DT_RIGHT | DT_END_ELLIPSIS), L"");
}

TEST(CutText, IsFoundInALabel)
{
    CWnd parent;
    ASSERT_TRUE(parent.CreateEx(0, nullptr, L"parent", WS_POPUP | WS_VISIBLE, CRect(0, 0, 400, 200),
                                nullptr, 0));
    const HWND label =
        CreateWindowExW(0, L"Static", L"depth of the image", WS_CHILD | WS_VISIBLE, 0, 0, 300, 40,
                        parent.GetSafeHwnd(), nullptr, nullptr, nullptr);
    EXPECT_EQ(FindCutLabel(), L"");
    MoveWindow(label, 0, 0, 30, 20, FALSE);
    EXPECT_EQ(FindCutLabel(), L"depth of the image");
}

TEST(ClippedWindow, IsNamed)
{
    CWnd window;
    ASSERT_TRUE(window.CreateEx(0, nullptr, L"the window", WS_POPUP | WS_VISIBLE,
                                CRect(10, 10, 200, 100), nullptr, 0));
    EXPECT_EQ(FindClippedWindow(), L"");
    EXPECT_EQ(AreaOfWindows(), CRect(10, 10, 200, 100));
    window.MoveWindow(-20, 10, 190, 90);
    EXPECT_EQ(FindClippedWindow(), L"the window");
    EXPECT_EQ(AreaOfWindows(), CRect(0, 10, 170, 100));
}

TEST(Picture, OfOneColourIsEmpty)
{
    EXPECT_TRUE(IsEmpty({}));
    EXPECT_TRUE(IsEmpty({7, 7, 7}));
    EXPECT_FALSE(IsEmpty({7, 7, 8}));
}

TEST(Picture, HasTheColoursThatAreSeen)
{
    CWnd window;
    ASSERT_TRUE(window.CreateEx(0, nullptr, L"the window", WS_POPUP | WS_VISIBLE,
                                CRect(0, 0, 20, 10), nullptr, 0));
    {
        CClientDC dc(&window);
        dc.FillSolidRect(0, 0, 20, 10, RGB(1, 2, 3));
        dc.FillSolidRect(19, 9, 1, 1, RGB(250, 0, 0));
    }
    const auto pixels = PixelsOf(Capture(window.GetSafeHwnd(), CRect(0, 0, 20, 10)).get());
    ASSERT_EQ(pixels.size(), 200u);
    EXPECT_EQ(std::ranges::count(pixels, 0x010203u), 199);
    EXPECT_EQ(pixels.back(), 0xFA0000u);
}

TEST(TourReport, FailsByOneStepThatDidNotHold)
{
    TourReport report;
    EXPECT_FALSE(report.Close()) << "no step at all";
    report.Step(true, L"one");
    EXPECT_TRUE(report.Close());
    report.Step(false, L"another");
    EXPECT_FALSE(report.Close());
}

TEST(TourReport, FailsByWhatIsSeen)
{
    TourReport report;
    report.look = [](std::wstring&) { return L"nothing is seen"; };
    report.Step(true, L"one");
    EXPECT_FALSE(report.Close());
}

TEST(TourReport, FailsByAStepThatWorksTooLong)
{
    TourReport report(std::chrono::milliseconds(300));
    report.Step(true, L"one");
    EXPECT_TRUE(report.Close());
    for (const std::int64_t begin = ThreadTime(); ThreadTime() - begin < 500;) {
    }
    report.Step(true, L"another");
    EXPECT_FALSE(report.Close());
}

TEST(TourReport, FailsByAStepThatWaitsMuchTooLong)
{
    TourReport report(std::chrono::milliseconds(500));
    std::this_thread::sleep_for(std::chrono::milliseconds(600)); // which a busy machine may take
    report.Step(true, L"one");
    EXPECT_TRUE(report.Close());
    std::this_thread::sleep_for(std::chrono::milliseconds(3200));
    report.Step(true, L"another");
    EXPECT_FALSE(report.Close());
}

TEST(TourReport, KeepsWhatAStepWasMadeOf)
{
    const TemporaryFolder folder;
    TourReport report;
    report.WriteTo(folder / L"steps.txt");
    report.look = [](std::wstring& picture) {
        picture = L"1.png";
        return L"";
    };
    report.Do(L"key F");
    report.Do(L"mouse");
    report.Step(true, L"a frame of 5 \u00B5m");
    const std::string line =
        base::ReadFileWhole((folder / L"steps.txt").c_str(), 1000).value_or("");
    EXPECT_TRUE(line.starts_with("1\t")) << line;
    EXPECT_TRUE(line.ends_with("\ttour_screen_test.cpp\tTestBody\tkey F, mouse\t"
                               "a frame of 5 \xC2\xB5m\t1.png\n"))
        << line;
}

} // namespace
