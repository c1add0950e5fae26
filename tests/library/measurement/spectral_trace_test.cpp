// Views of spectral trace blocks.
#include <gtest/gtest.h>
#include <Utils_Statics/spectralTraceData.h>

#include <limits>
#include <vector>

namespace {

eTraceType Type(int value)
{
    return static_cast<eTraceType>(value);
}

class SpectralTraceTest : public testing::Test
{
protected:
    std::vector<unsigned char> m_bytes = std::vector<unsigned char>(1000);
    spectralTraceData m_view;
};

TEST_F(SpectralTraceTest, StartsEmpty)
{
    EXPECT_TRUE(m_view.isEmpty());
    EXPECT_EQ(m_view.getData(), nullptr);
    EXPECT_EQ(m_view.getSize(), 0);
    EXPECT_EQ(m_view.getSetSize(), 0);
    for (int i = -1; i < 6; ++i)
        EXPECT_EQ(m_view.getDataSet(Type(i)), nullptr);
}

TEST_F(SpectralTraceTest, TracesLieBackToBack)
{
    m_view.setData(m_bytes.data(), 1000, 4);
    EXPECT_FALSE(m_view.isEmpty());
    EXPECT_EQ(m_view.getData(), m_bytes.data());
    EXPECT_EQ(m_view.getSize(), 1000);
    EXPECT_EQ(m_view.getSetSize(), 250);
    EXPECT_EQ(m_view.getDataSet(eTraceEnvelopeForward), m_bytes.data());
    EXPECT_EQ(m_view.getDataSet(eTraceEnvelopeReverse), m_bytes.data() + 250);
    EXPECT_EQ(m_view.getDataSet(eTraceMeanForward), m_bytes.data() + 500);
    EXPECT_EQ(m_view.getDataSet(eTraceMeanReverse), m_bytes.data() + 750);
}

TEST_F(SpectralTraceTest, TheSetSizeIsRoundedTowardZero)
{
    m_view.setData(m_bytes.data(), 1000, 3);
    EXPECT_EQ(m_view.getSetSize(), 333);
    EXPECT_EQ(m_view.getDataSet(Type(3)), m_bytes.data() + 999);
    m_view.setData(m_bytes.data(), 1000, -3);
    EXPECT_EQ(m_view.getSetSize(), -333);
}

TEST_F(SpectralTraceTest, AnotherTypeIsTheFirstTrace)
{
    m_view.setData(m_bytes.data(), 1000, 4);
    for (const int other :
         {-1, 4, 100, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()})
        EXPECT_EQ(m_view.getDataSet(Type(other)), m_bytes.data());
}

TEST_F(SpectralTraceTest, WithoutSetsEveryTraceStartsTheBlock)
{
    m_view.setData(m_bytes.data(), 1000, 0);
    EXPECT_EQ(m_view.getSetSize(), 0);
    EXPECT_FALSE(m_view.isEmpty());
    EXPECT_EQ(m_view.getDataSet(Type(3)), m_bytes.data());
}

TEST_F(SpectralTraceTest, IsEmptyWithoutDataOrSize)
{
    m_view.setData(nullptr, 1000, 4);
    EXPECT_TRUE(m_view.isEmpty());
    EXPECT_EQ(m_view.getSetSize(), 250);
    EXPECT_EQ(m_view.getDataSet(Type(2)), nullptr);
    m_view.setData(m_bytes.data(), 0, 4);
    EXPECT_TRUE(m_view.isEmpty());
    EXPECT_EQ(m_view.getDataSet(Type(2)), nullptr);
}

TEST_F(SpectralTraceTest, ExtremeSizesAreDefined)
{
    m_view.setData(m_bytes.data(), std::numeric_limits<int>::min(), -1);
    EXPECT_EQ(m_view.getSetSize(), std::numeric_limits<int>::min());
    m_view.getDataSet(Type(3)); // an address outside the block that is only computed
    m_view.setData(m_bytes.data(), std::numeric_limits<int>::max(), 1);
    m_view.getDataSet(Type(3));
    EXPECT_EQ(m_view.getDataSet(Type(0)), m_bytes.data());
}

TEST_F(SpectralTraceTest, CopiesViewTheSameBlock)
{
    m_view.setData(m_bytes.data(), 1000, 4);
    spectralTraceData copy = m_view;
    m_view.close();
    EXPECT_TRUE(m_view.isEmpty());
    EXPECT_EQ(copy.getDataSet(Type(1)), m_bytes.data() + 250);
    copy.getDataSet(Type(1))[0] = 7;
    EXPECT_EQ(m_bytes[250], 7);
}

} // namespace
