// The places of dialogs and of the imaging area.
#include <gtest/gtest.h>
#include <test_support/ExamWindow.h>
#include <test_support/TemporaryRegistryKey.h>
#include <Utils_Statics/utilsExam.h>

using test_support::AsMainWindow;
using test_support::ExamWindow;

CWinApp theApplication(L"screen test");

namespace {

// Starts and ends with the environment's flags of a fresh process.
class ScreenTest : public testing::Test
{
protected:
    ScreenTest()
    {
        Reset();
        ShowWindow(window.Handle(), SW_HIDE); // a hidden window has places too
    }
    ~ScreenTest() override { Reset(); }

    static void Reset()
    {
        utilsExam::SetConsoleType(eConsoleUnknown);
        utilsExam::SetFullscreen(false);
        utilsExam::SetLayoutLeft(false);
    }
    // Puts the main window at this place, without a frame.
    void Place(int x, int y, int width, int height)
    {
        SetWindowPos(window.Handle(), nullptr, x, y, width, height, SWP_NOZORDER | SWP_NOACTIVATE);
        CRect rect;
        GetWindowRect(window.Handle(), &rect);
        ASSERT_EQ(rect, CRect(x, y, x + width, y + height));
    }

    ExamWindow window;
};

TEST_F(ScreenTest, TheScreenIsAlways1024By768)
{
    EXPECT_EQ(utilsExam::GetMainScreenSize(), CSize(1024, 768));
}

TEST_F(ScreenTest, TheImagingAreaIsTheWholeScreenWhenFullscreen)
{
    EXPECT_EQ(utilsExam::GetImagingSize(), CSize(800, 600));
    utilsExam::SetFullscreen(true);
    EXPECT_EQ(utilsExam::GetImagingSize(), CSize(1024, 768));
}

TEST_F(ScreenTest, ADialogCoversTheScreenWithoutAMainWindow)
{
    EXPECT_EQ(utilsExam::CalculateDialogRect(), CRect(0, 0, 1024, 768));
    utilsExam::SetConsoleType(eConsoleTavren);
    EXPECT_EQ(utilsExam::CalculateDialogRect(), CRect(0, 0, 1024, 600));
}

TEST_F(ScreenTest, ADialogIsCentredOnTheMainWindow)
{
    const AsMainWindow main(window);
    Place(20, 30, 1100, 800);
    EXPECT_EQ(utilsExam::CalculateDialogRect(), CRect(58, 46, 1082, 814));
    Place(20, 30, 401, 301);
    EXPECT_EQ(utilsExam::CalculateDialogRect(), CRect(-291, -203, 733, 565)) << "towards zero";
    utilsExam::SetConsoleType(eConsoleTavren);
    EXPECT_EQ(utilsExam::CalculateDialogRect().Height(), 600);
    EXPECT_EQ(utilsExam::CalculateDialogRect().top, -203) << "centred as if it were higher";
}

TEST_F(ScreenTest, AnImageIsCentredAndRaised)
{
    const AsMainWindow main(window);
    Place(0, 0, 1024, 768);
    EXPECT_EQ(utilsExam::CalculateSystemOrigin(CSize(800, 600)), CPoint(112, 34));
    Place(0, 0, 1100, 800);
    EXPECT_EQ(utilsExam::CalculateSystemOrigin(CSize(800, 600)), CPoint(38 + 112, 16 + 34));
    Place(5, 6, 900, 700);
    EXPECT_EQ(utilsExam::CalculateSystemOrigin(CSize(800, 600)), CPoint(-62 + 50, -34 + 0));
}

TEST_F(ScreenTest, AnImageThatIsNotSmallerBothWaysLiesAtTheCorner)
{
    const AsMainWindow main(window);
    Place(0, 0, 1100, 800);
    for (const CSize size : {CSize(1024, 600), CSize(800, 768), CSize(1024, 768), CSize(5000, 10)})
        EXPECT_EQ(utilsExam::CalculateSystemOrigin(size), CPoint(38, 16));
    EXPECT_EQ(utilsExam::CalculateSystemOrigin(CSize(1023, 767)), CPoint(38, 16 - 50));
}

TEST_F(ScreenTest, ANegativeSizeStandsForTheImagingArea)
{
    const AsMainWindow main(window);
    Place(0, 0, 1024, 768);
    for (const CSize size : {CSize(-1, 10), CSize(10, -1), CSize(-5, -5)})
        EXPECT_EQ(utilsExam::CalculateSystemOrigin(size), CPoint(112, 34));
    utilsExam::SetFullscreen(true);
    EXPECT_EQ(utilsExam::CalculateSystemOrigin(CSize(-1, -1)), CPoint(0, 0));
    EXPECT_EQ(utilsExam::CalculateSystemOrigin(CSize(0, 0)), CPoint(512, 334)) << "0 is a size";
}

TEST_F(ScreenTest, OnTavrenTheImageLiesAtTheRightEdgeUnlessTheLayoutIsLeft)
{
    const AsMainWindow main(window);
    utilsExam::SetConsoleType(eConsoleTavren);
    Place(0, 0, 1100, 800);
    EXPECT_EQ(utilsExam::CalculateSystemOrigin(CSize(800, 600)), CPoint(38 + 1024 - 800, 16));
    EXPECT_EQ(utilsExam::CalculateSystemOrigin(CSize(2000, 600)), CPoint(38 + 1024 - 2000, 16));
    Place(0, 0, 900, 700);
    EXPECT_EQ(utilsExam::CalculateSystemOrigin(CSize(800, 600)), CPoint(-62 + 900 - 800, -34));
    utilsExam::SetLayoutLeft(true);
    EXPECT_EQ(utilsExam::CalculateSystemOrigin(CSize(800, 600)), CPoint(-62 + 50, -34));
}

TEST_F(ScreenTest, WithoutAMainWindowTheScreenIsTheWindow)
{
    EXPECT_EQ(utilsExam::CalculateSystemOrigin(CSize(800, 600)), CPoint(112, 34));
}

// ---- The capture buttons

class CaptureButtons : public testing::Test
{
protected:
    CaptureButtons()
    {
        theApplication.SetRegistryKey(m_key.Path().c_str() + std::wstring(L"Software\\").size());
    }

    void Set(const wchar_t* name, DWORD number) const
    {
        m_key.SetNumber(L"screen test\\Settings\\Capture", name, number);
    }

private:
    test_support::TemporaryRegistryKey m_key;
};

TEST_F(CaptureButtons, HaveDefaults)
{
    const unsigned int flags[] = {1, 13, 64, 3, 3};
    for (unsigned int n = 0; n < 5; ++n) {
        EXPECT_EQ(utilsExam::GetPrintButtonFlags(n), flags[n]);
        EXPECT_EQ(utilsExam::GetPrintButtonAction(n), 18u);
    }
    EXPECT_EQ(utilsExam::GetPrintButtonFlags(0xFFFFFFFF), 3u);
    EXPECT_EQ(utilsExam::GetPrintButtonAction(0xFFFFFFFF), 18u);
}

TEST_F(CaptureButtons, AreReadFromTheProfileByTheirNumber)
{
    Set(L"PrintButton1", 77);
    Set(L"PrintButton1_Action", 78);
    Set(L"PrintButton12", 0);
    Set(L"PrintButton2", 0xFFFFFFFF);
    Set(L"PrintButton-1", 5);
    EXPECT_EQ(utilsExam::GetPrintButtonFlags(1), 77u);
    EXPECT_EQ(utilsExam::GetPrintButtonAction(1), 78u);
    EXPECT_EQ(utilsExam::GetPrintButtonFlags(12), 0u);
    EXPECT_EQ(utilsExam::GetPrintButtonAction(12), 18u);
    EXPECT_EQ(utilsExam::GetPrintButtonFlags(2), 0xFFFFFFFFu);
    EXPECT_EQ(utilsExam::GetPrintButtonFlags(0), 1u);
    EXPECT_EQ(utilsExam::GetPrintButtonFlags(0xFFFFFFFF), 5u) << "written as a signed number";
}

} // namespace
