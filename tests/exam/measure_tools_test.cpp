#include "measure/MeasureTools.h"
#include "SyntheticCine.h"

#include <gtest/gtest.h>

using namespace synthetic_cine;

namespace {

// Tools on an image whose upper left corner is that of the client area.
class MeasureToolsTest : public testing::Test
{
protected:
    void ShowImage(const CineDescription& cine)
    {
        Show(cine, m_view);
        m_tools.Follow({++m_shown, 0});
    }

    bool AllPointsAreImaged() const
    {
        for (const ImageTool* const tool : m_tools.All())
            for (const CPoint& point : tool->Points())
                if (m_view.Grey(point) == 0) return false; // edges are blended
        return true;
    }

    ImageView m_view;
    std::size_t m_shown = 0;
    MeasureTools m_tools{m_view, CRect(0, 0, 300, 280)};
};

} // namespace

TEST_F(MeasureToolsTest, BeginInsideTheImageRegion)
{
    for (const CineDescription& cine : {Linear(), Curved()}) {
        ShowImage(cine);
        EXPECT_TRUE(AllPointsAreImaged());
    }
}

TEST_F(MeasureToolsTest, KeepTheirPointsInsideTheImageRegion)
{
    for (const CineDescription& cine : {Linear(), Curved()}) {
        ShowImage(cine);
        for (const CPoint corner : {CPoint(0, 0), CPoint(299, 0), CPoint(299, 279), CPoint(0, 279),
                                    CPoint(-5000, 5000), CPoint(150, 0)}) {
            m_tools.Distance().SetPoints({corner, corner});
            m_tools.Angle().SetPoints({corner, corner, corner});
            m_tools.Region().SetPoints({corner, corner});
            EXPECT_TRUE(AllPointsAreImaged()) << corner.x << ", " << corner.y;
        }
    }
}

TEST_F(MeasureToolsTest, LeaveAPointWhereItIsInsideTheRegion)
{
    ShowImage(Curved());
    const CPoint inside = m_view.Parameters().Pixel(20, 300);
    m_tools.Distance().SetPoints({inside, inside + CPoint(3, 4)});
    EXPECT_EQ(m_tools.Distance().Points()[0], inside);
    EXPECT_EQ(m_tools.Distance().Points()[1], inside + CPoint(3, 4));
}

TEST_F(MeasureToolsTest, MoveAPointBesideTheRegionToTheNearestPlaceInIt)
{
    ShowImage(Linear());
    const CPoint edge = m_view.Parameters().Pixel(lines - 1, samples / 2);
    m_tools.Distance().SetPoints({edge + CPoint(40, 0), edge});
    EXPECT_NEAR(m_tools.Distance().Points()[0].x, edge.x, 4);
    EXPECT_EQ(m_tools.Distance().Points()[0].y, edge.y);
}
