// The status row asks its items for what it shows.
#include "status/StatusRow.h"
#include "status/StatusSimulators.h"

#include <base/GdiPlusSession.h>
#include <test_support/LogCapture.h>
#include <Utils_Statics/CStatusFactory.h>
#include <Utils_Statics/CStatusProbeSensor.h>

#include <algorithm>

using namespace exam;

namespace {

CWinApp s_app; // the settings are read through it

class StatusRowTest : public testing::Test
{
protected:
    // The process has one item, which the factory deletes.
    static void SetUpTestSuite() { CStatusFactory::addItem(CStatusProbeSensor::getInstance()); }
    static void TearDownTestSuite() { CStatusFactory::destroyInstance(); }

    StatusRowTest()
    {
        m_parent.CreateEx(0, nullptr, L"parent", WS_POPUP | WS_VISIBLE, CRect(0, 0, 460, 44),
                          nullptr, 0);
        EXPECT_TRUE(m_row.Open(m_parent, CRect(0, 0, 460, 44)));
        m_probe.Plug(true);
    }
    ~StatusRowTest() override { m_parent.DestroyWindow(); }

    // The lines that the sensor's item logs for some paintings of the row.
    std::ptrdiff_t LinesOf(int paintings)
    {
        test_support::LogCapture log;
        for (int i = 0; i < paintings; ++i)
            m_row.RedrawWindow();
        const auto lines = log.Take();
        return std::count_if(lines.begin(), lines.end(), [](const auto& line) {
            return line.source == "Utils_Statics/StatusProbeSensor";
        });
    }

    base::GdiPlusSession m_gdiPlus;
    CWnd m_parent;
    StatusRow m_row{[] {}};
    ProbeSimulator m_probe;
};

} // namespace

TEST_F(StatusRowTest, LetsTheProbesItemDrawOnceForEachReading)
{
    const std::ptrdiff_t once = LinesOf(1);
    EXPECT_GT(once, 0);
    EXPECT_LT(m_row.PaintedFrom(), 460);
    EXPECT_EQ(LinesOf(20), 0);
    m_probe.Advance(1);
    EXPECT_EQ(LinesOf(20), once);
    m_row.ReadSettings(); // the language may be another one
    EXPECT_EQ(LinesOf(20), once);
}

TEST_F(StatusRowTest, IsAskedForARepaintAfterARowThatTookItsMessageAway)
{
    m_probe.Advance(1); // posts a message
    m_row.DestroyWindow();
    ASSERT_TRUE(m_row.Open(m_parent, CRect(0, 0, 460, 44)));
    m_probe.Advance(1);
    MSG message;
    EXPECT_TRUE(PeekMessageW(&message, m_row.GetSafeHwnd(), WM_APP, 0xBFFF, PM_NOREMOVE));
}

TEST_F(StatusRowTest, PaintsAKeptReadingAsTheItemDrewIt)
{
    const auto pixels = [this] {
        m_row.RedrawWindow();
        CClientDC dc(&m_row);
        std::vector<COLORREF> colours;
        for (int x = 340; x < 454; ++x)
            for (int y = 0; y < 44; ++y)
                colours.push_back(dc.GetPixel(x, y));
        return colours;
    };
    const std::vector<COLORREF> drawn = pixels();
    EXPECT_NE(std::count_if(drawn.begin(), drawn.end(),
                            [&](COLORREF colour) { return colour != drawn.front(); }),
              0);
    EXPECT_EQ(pixels(), drawn);
}

TEST_F(StatusRowTest, LogsLittleWhileAProbeIsPluggedIn)
{
    const auto lines = static_cast<double>(LinesOf(1));
    EXPECT_GT(lines, 0);
    EXPECT_LE(60 / StatusRow::tickSeconds * lines, 30); // a minute
}
