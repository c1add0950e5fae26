// The page of the status row and its icons fit screens of several resolutions. There is one status
// display in the life of a process, and so one test.
#include "app/SampleTree.h"
#include "base/Dpi.h"
#include "status/StatusDisplay.h"
#include "window/MainWindow.h"
#include "WrittenTexts.h"

#include <test_support/TemporaryFolder.h>
#include <Utils_Statics/CStatusStreaming.h>
#include <Utils_Statics/utilsExam.h>
#include <zel_string_convert/TableLoading.h>

#include <cstdlib>
#include <filesystem>

using namespace exam;

namespace {

CWinApp s_app; // the settings are read through it

int Scaled(const Screen& screen, int pixels)
{
    return MulDiv(pixels, screen.dpi, 96);
}

void LookAtPage(StatusPage& page, const Screen& screen)
{
    ExpectWholeControls(page.GetSafeHwnd(), Scaled(screen, 20));
    CRect client;
    page.GetClientRect(&client);
    const std::vector<WrittenText> texts =
        TextsDrawn(client.Size(), [&](CDC& dc) { page.Draw(dc); });
    EXPECT_EQ(texts.size(), 3u);
    for (const WrittenText& text : texts)
        EXPECT_TRUE(text.IsWhole()) << text;
    EXPECT_LE(client.Width(), screen.size.cx);
    EXPECT_LE(client.Height(), screen.size.cy);
}

void LookAtIcons(StatusDisplay& status, const Screen& screen)
{
    for (const bool isLarge : {false, true}) {
        status.UseLargeIcons(isLarge);
        status.Row().RedrawWindow();
        CRect row;
        status.Row().GetClientRect(&row);
        EXPECT_EQ(row.Width() - status.Row().PaintedFrom(),
                  Scaled(screen, isLarge ? 32 : 24) + 2 * Scaled(screen, 6));
    }
}

} // namespace

TEST(StatusPage, IsWholeAndTheIconsAreThoseOfTheResolution)
{
    const test_support::TemporaryFolder folder;
    InstallStores(folder.Path());
    ASSERT_TRUE(zel_string_convert::LoadTable(StringTableFolder()));
    std::free(const_cast<wchar_t*>(s_app.m_pszProfileName));
    s_app.m_pszProfileName = _wcsdup((folder / L"exam.ini").c_str());
    for (const StatusSetting& setting : StatusSettings())
        SetWanted(setting, std::wstring(setting.entry) == L"Streaming");
    ExamState state;
    MainWindow window(state, folder.Path());
    ASSERT_TRUE(window.Open(WindowForm::console));
    {
        StatusDisplay status(window, window.Exam());
        ASSERT_TRUE(status.Open());
        CStatusStreaming::setState(CStatusStreaming::StreamingToDisk);
        for (const Screen& screen : screens) {
            AssumeDpi(screen.dpi);
            window.TakeForm(WindowForm::window, CRect(CPoint(0, 0), screen.size));
            LookAtIcons(status, screen);
            status.OpenPage();
            for (int language = 0; language < 2; ++language) {
                LookAtPage(status.Page(), screen);
                state.NextLanguage();
            }
            status.Page().DestroyWindow();
        }
        EXPECT_TRUE(std::filesystem::exists(utilsExam::GetImage(L"curved.cine")));
        CStatusStreaming::setState(CStatusStreaming::StreamingOff);
        window.DestroyWindow(); // it tells the display that nothing is recorded
    }
    AssumeDpi(0);
}
