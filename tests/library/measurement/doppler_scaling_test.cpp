// The scale of the spectral Doppler display.
#include <gtest/gtest.h>
#include <test_support/ChildTest.h>
#include <Utils_Statics/CDopplerScaling.h>

#include <cmath>
#include <limits>
#include <random>

namespace {

class DopplerScalingTest : public testing::Test
{
protected:
    ~DopplerScalingTest() override
    {
        Set(0, 0, 0, 0, 0);
        CDopplerScaling::SetPWLRP(0);
        CDopplerScaling::SetVecDopScaleFactor(1.0);
        CDopplerScaling::SetBaselineStartPos(0.0);
    }

    static void Set(long prp, long freq, long nfft, long angle, long height)
    {
        CDopplerScaling::SetPWPRP(prp);
        CDopplerScaling::SetPWFreq(freq);
        CDopplerScaling::SetPWFFT(nfft);
        CDopplerScaling::SetPWVesselAngle(angle);
        CDopplerScaling::SetPWDisplayHeight(height);
    }
};

// Checks the values before any is set, in a process of its own.
TEST(DopplerScalingChild, DISABLED_EverythingStartsAtNothing)
{
    EXPECT_EQ(CDopplerScaling::GetPWPRP(), 0);
    EXPECT_EQ(CDopplerScaling::GetPWFreq(), 0);
    EXPECT_EQ(CDopplerScaling::GetPWFFT(), 0);
    EXPECT_EQ(CDopplerScaling::GetPWVesselAngle(), 0);
    EXPECT_EQ(CDopplerScaling::GetPWDisplayHeight(), 0);
    EXPECT_EQ(CDopplerScaling::GetPWLRP(), 0);
    EXPECT_EQ(CDopplerScaling::GetVecDopScaleFactor(), 1.0);
    EXPECT_EQ(CDopplerScaling::GetBaselineStartPos(), 0.0);
    EXPECT_EQ(CDopplerScaling::GetVelPerPixel(), 0.0);
    EXPECT_EQ(CDopplerScaling::GetPixelBaseline(10), 0.0);
}

TEST_F(DopplerScalingTest, EverythingStartsAtNothing)
{
    test_support::ChildTest child("DopplerScalingChild.DISABLED_EverythingStartsAtNothing");
    EXPECT_EQ(child.Wait(60000), 0u);
}

TEST_F(DopplerScalingTest, SettersStoreWhatTheyAreGiven)
{
    constexpr long least = std::numeric_limits<long>::min();
    Set(least, -2, 3, -4, 5);
    CDopplerScaling::SetPWLRP(-6);
    CDopplerScaling::SetVecDopScaleFactor(-7.5);
    CDopplerScaling::SetBaselineStartPos(8.25);
    EXPECT_EQ(CDopplerScaling::GetPWPRP(), least);
    EXPECT_EQ(CDopplerScaling::GetPWFreq(), -2);
    EXPECT_EQ(CDopplerScaling::GetPWFFT(), 3);
    EXPECT_EQ(CDopplerScaling::GetPWVesselAngle(), -4);
    EXPECT_EQ(CDopplerScaling::GetPWDisplayHeight(), 5);
    EXPECT_EQ(CDopplerScaling::GetPWLRP(), -6);
    EXPECT_EQ(CDopplerScaling::GetVecDopScaleFactor(), -7.5);
    EXPECT_EQ(CDopplerScaling::GetBaselineStartPos(), 8.25);
}

TEST_F(DopplerScalingTest, VelocityPerPixelOfAKnownSetting)
{
    Set(200, 5000000, 128, 0, 256);
    EXPECT_DOUBLE_EQ(CDopplerScaling::GetVelPerPixel(), 0.77 / 256);
    const double straight = CDopplerScaling::GetVelPerPixel();
    CDopplerScaling::SetPWVesselAngle(60000);
    EXPECT_NEAR(CDopplerScaling::GetVelPerPixel(), 2.0 * straight, 1e-15);
    CDopplerScaling::SetPWFFT(0);
    EXPECT_NEAR(CDopplerScaling::GetVelPerPixel(), 2.0 * straight, 1e-15);
    CDopplerScaling::SetVecDopScaleFactor(4.0);
    EXPECT_NEAR(CDopplerScaling::GetVelPerPixel(), 0.5 * straight, 1e-15);
}

TEST_F(DopplerScalingTest, AZeroParameterGivesZero)
{
    EXPECT_EQ(CDopplerScaling::GetVelPerPixel(0.0, 1.0, 1.0, 0.0, 1.0), 0.0);
    EXPECT_EQ(CDopplerScaling::GetVelPerPixel(1.0, -0.0, 1.0, 0.0, 1.0), 0.0);
    EXPECT_EQ(CDopplerScaling::GetVelPerPixel(1.0, 1.0, 0.0, 0.0, 1.0), 0.0);
    EXPECT_EQ(CDopplerScaling::GetVelPerPixel(1.0, 1.0, 1.0, 0.0, 0.0), 0.0);
    EXPECT_NE(CDopplerScaling::GetVelPerPixel(1.0, 1.0, 1.0, 0.0, 1.0), 0.0);
}

TEST_F(DopplerScalingTest, ARightAngleIsNotLimited)
{
    EXPECT_GT(CDopplerScaling::GetVelPerPixel(200.0, 5e6, 256.0, 90000.0, 1.0), 1e13);
    EXPECT_LT(CDopplerScaling::GetVelPerPixel(200.0, 5e6, 256.0, 180000.0, 1.0), 0.0);
}

TEST_F(DopplerScalingTest, NotANumberPassesThrough)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_TRUE(std::isnan(CDopplerScaling::GetVelPerPixel(nan, 1.0, 1.0, 0.0, 1.0)));
    EXPECT_TRUE(std::isnan(CDopplerScaling::GetVelPerPixel(1.0, 1.0, 1.0, nan, 1.0)));
    EXPECT_TRUE(std::isnan(CDopplerScaling::GetVelPerPixel(
        1.0, 1.0, 1.0, std::numeric_limits<double>::infinity(), 1.0)));
}

TEST_F(DopplerScalingTest, TheOrderOfTheOperationsIsFixed)
{
    std::mt19937 random(1);
    std::uniform_real_distribution<double> positive(1.0, 1e4), angle(-85000.0, 85000.0);
    for (int i = 0; i < 10000; ++i) {
        const volatile double prp = positive(random), freq = positive(random) * 1000.0,
                              height = positive(random);
        const volatile double vessel = angle(random), scale = positive(random);
        const double range = (1000000.0 / prp) * 1540.0 / (2.0 * freq);
        const double expected =
            range / height / std::cos(vessel * 0.001 * 0.017453292519943295) / scale;
        ASSERT_EQ(CDopplerScaling::GetVelPerPixel(prp, freq, height, vessel, scale), expected);
    }
}

TEST_F(DopplerScalingTest, BaselineMapsBinsToPixels)
{
    Set(0, 0, 128, 0, 256);
    CDopplerScaling::SetBaselineStartPos(10.5);
    EXPECT_EQ(CDopplerScaling::GetPixelBaseline(0), 10.5);
    EXPECT_EQ(CDopplerScaling::GetPixelBaseline(64), 138.5);
    EXPECT_EQ(CDopplerScaling::GetPixelBaseline(-1), 8.5);
    CDopplerScaling::SetPWFFT(3);
    EXPECT_EQ(CDopplerScaling::GetPixelBaseline(1), 10.5 + 256.0 / 3.0);
    CDopplerScaling::SetPWFFT(0);
    EXPECT_EQ(CDopplerScaling::GetPixelBaseline(64), 0.0);
}

TEST_F(DopplerScalingTest, BaselineDoesNotOverflow)
{
    constexpr int largest = std::numeric_limits<int>::max();
    Set(0, 0, 1, 0, largest);
    EXPECT_EQ(CDopplerScaling::GetPixelBaseline(largest), static_cast<double>(largest) * largest);
}

TEST_F(DopplerScalingTest, AnglePerPixelIsNotGuarded)
{
    Set(0, 0, 0, 0, 180);
    EXPECT_EQ(CDopplerScaling::GetVecAnglePerPixel(), 2.0);
    CDopplerScaling::SetPWDisplayHeight(0);
    EXPECT_EQ(CDopplerScaling::GetVecAnglePerPixel(), std::numeric_limits<double>::infinity());
}

} // namespace
