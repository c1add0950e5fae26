// The matrix routines one by one: known results, and the status they report.
#include "MatrixFixture.h"

#include <string>
#include <utility>

namespace {

using plain::Array;

TEST(MatrixInverseTest, SolvesAndInvertsAKnownMatrix)
{
    const double a[] = {4.0, 7.0, 2.0, 6.0};
    double b[] = {15.0, 10.0}, out[4];
    MAT_InvertMatrix(a, 2, b, out);
    const double expected[] = {0.6, -0.7, -0.2, 0.4};
    for (int i = 0; i < 4; ++i)
        EXPECT_NEAR(out[i], expected[i], 1e-15);
    EXPECT_NEAR(b[0], 2.0, 1e-14);
    EXPECT_NEAR(b[1], 1.0, 1e-14);
}

TEST(MatrixInverseTest, DoesNotPivot)
{
    const double a[] = {0.0, 1.0, 1.0, 0.0};
    double b[] = {1.0, 2.0}, out[4];
    MAT_InvertMatrix(a, 2, b, out);
    for (const double value : out)
        EXPECT_FALSE(std::isfinite(value));
    EXPECT_FALSE(std::isfinite(b[0]) && std::isfinite(b[1]));
}

TEST(MatrixInverseTest, MayOverwriteItsArgument)
{
    Sources sources(5);
    const Array a = Filled(7, 7, [&] { return sources.PlainNumber(); });
    Array inPlace = a, b(7, 1.0), sameB = b;
    MAT_InvertMatrix(inPlace.data(), 7, b.data(), inPlace.data());
    EXPECT_TRUE(IsSame(inPlace, plain::Invert(a, 7, sameB)));
    EXPECT_TRUE(IsSame(b, sameB));
}

// The native build would notice arithmetic on the null arrays.
TEST(LeastSquaresTest, NoRowsNeedNoArraysWhateverTheNumberOfColumns)
{
    for (int n = 1; n <= 9; ++n) {
        Array x(static_cast<std::size_t>(n), 1.0);
        MAT_LeastSquares(nullptr, 0, n, nullptr, x.data());
        for (const double value : x)
            EXPECT_TRUE(std::isnan(value)) << n;
    }
}

TEST(LeastSquaresTest, MayOverwriteTheRightSide)
{
    Sources sources(6);
    const Array a = Filled(20, 5, [&] { return sources.PlainNumber(); });
    Array y = Filled(20, 1, [&] { return sources.PlainNumber(); });
    const Array expected = plain::LeastSquares(a, 20, 5, y);
    MAT_LeastSquares(a.data(), 20, 5, y.data(), y.data());
    y.resize(5);
    EXPECT_TRUE(IsSame(y, expected));
}

TEST(MatrixElementTest, StoresInsideAndReportsOutside)
{
    Fenced m(2, 3);
    testing::internal::CaptureStdout();
    MAT_SetMatrixElement(1, 2, 2, 3, m.data(), 5.0);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(m.Values()[5], 5.0);
    Fenced untouched(2, 3);
    for (const auto& [row, col] : {std::pair(2, 0), std::pair(0, 3), std::pair(7, 7)}) {
        testing::internal::CaptureStdout();
        MAT_SetMatrixElement(row, col, 2, 3, untouched.data(), 5.0);
        std::string text = testing::internal::GetCapturedStdout();
        std::erase(text, '\r');
        EXPECT_EQ(text, "\nERROR in SetMatrixElement() !\n");
    }
    EXPECT_TRUE(untouched.IsUntouched());
}

TEST(MatrixElementTest, NegativeIndicesAreNotRejected)
{
    Array m(6, 0.0);
    MAT_SetMatrixElement(1, -1, 2, 3, m.data(), 5.0);
    EXPECT_EQ(m[2], 5.0);
    MAT_SetMatrixElement(-1, 0, 2, 3, m.data() + 3, 6.0);
    EXPECT_EQ(m[0], 6.0);
}

TEST(MatrixVectorTest, ReportsAWrongLengthAndComputesAllTheSame)
{
    const double m[] = {1.0, 2.0, 3.0, 4.0}, v[] = {10.0, 100.0};
    double out[2];
    testing::internal::CaptureStdout();
    MAT_MatrixVectorProduct(m, 2, 2, v, 1, out);
    std::string text = testing::internal::GetCapturedStdout();
    std::erase(text, '\r');
    EXPECT_EQ(text, "\nMatrix vector product incorrect sizes\n");
    EXPECT_EQ(out[0], 210.0);
    EXPECT_EQ(out[1], 430.0);
}

TEST(RotationMatrixTest, RotatesAndTranslates)
{
    Fenced m(3, 3);
    MAT_GenerateRotationMatrix(5, -6, 300, m.data());
    const double a = 300 * 0.1 * 0.017453292519444;
    EXPECT_TRUE(IsSame(m.Values(), {std::cos(a), -std::sin(a), 5.0, std::sin(a), std::cos(a), -6.0,
                                    0.0, 0.0, 1.0}));
    EXPECT_TRUE(m.IsFenceWhole());
}

TEST(RotationMatrixTest, AQuarterTurnIsNotExact)
{
    double m[9];
    MAT_GenerateRotationMatrix(0, 0, 900, m);
    EXPECT_NEAR(m[0], 4.5e-11, 0.05e-11);
    EXPECT_EQ(m[3], 1.0);
    constexpr int largest = std::numeric_limits<int>::max(),
                  least = std::numeric_limits<int>::min();
    MAT_GenerateRotationMatrix(largest, least, least, m);
    EXPECT_EQ(m[2], largest);
    EXPECT_EQ(m[5], least);
}

class TransformTest : public testing::Test
{
protected:
    void Transform(const double* p1, const double* p2, const double* p3, const double* p4)
    {
        MAT_Transform(&maxX, &minX, &maxY, &minY, p1, p2, p3, p4, m_first, m_second, m_product);
    }

    double maxX = 0, minX = 0, maxY = 0, minY = 0;
    double m_first[9] = {1, 0, 0, 0, 1, 0, 0, 0, 1};
    double m_second[9] = {1, 0, 0, 0, 1, 0, 0, 0, 1};
    double m_product[9] = {};
};

TEST_F(TransformTest, GivesTheBoxOfARotatedImage)
{
    const double p1[] = {0, 0, 1}, p2[] = {200, 0, 1}, p3[] = {200, 100, 1}, p4[] = {0, 100, 1};
    MAT_GenerateRotationMatrix(0, 0, 300, m_first);
    MAT_GenerateRotationMatrix(-100, -50, 0, m_second);
    Transform(p1, p2, p3, p4);
    const double c = std::sqrt(0.75), s = 0.5;
    EXPECT_NEAR(maxX, 100 * c + 50 * s, 1e-6);
    EXPECT_NEAR(minX, -maxX, 1e-6);
    EXPECT_NEAR(maxY, 100 * s + 50 * c, 1e-6);
    EXPECT_NEAR(minY, -maxY, 1e-6);
    const Array expected =
        plain::Product(Array(m_first, m_first + 9), Array(m_second, m_second + 9), 3);
    EXPECT_TRUE(IsSame(Array(m_product, m_product + 9), expected));
}

TEST_F(TransformTest, ABoxBeyondTheStartingValuesIsCutThere)
{
    const double left[] = {-2e8, 5, 1}, top[] = {-3e8, 2e8, 1};
    Transform(left, left, left, left);
    EXPECT_EQ(maxX, -1e8);
    EXPECT_EQ(minX, -2e8);
    EXPECT_EQ(maxY, 5.0);
    EXPECT_EQ(minY, 5.0);
    Transform(top, top, top, top);
    EXPECT_EQ(minY, 1e8);
}

TEST_F(TransformTest, NotANumberIsPassedOver)
{
    const double bad[] = {notANumber, notANumber, 1}, good[] = {3, 4, 1};
    Transform(bad, bad, bad, bad);
    EXPECT_EQ(maxX, -1e8);
    EXPECT_EQ(minY, 1e8);
    m_first[1] = m_first[3] = 0.0;
    Transform(bad, good, bad, bad);
    EXPECT_EQ(maxX, 3.0);
    EXPECT_EQ(minY, 4.0);
}

TEST_F(TransformTest, NullArgumentsAreLeftAlone)
{
    const double p[] = {3, 4, 1};
    MAT_Transform(nullptr, &minX, &maxY, &minY, p, p, p, p, m_first, m_second, m_product);
    MAT_Transform(&maxX, &minX, &maxY, &minY, p, p, nullptr, p, m_first, m_second, m_product);
    MAT_Transform(&maxX, &minX, &maxY, &minY, p, p, p, p, m_first, m_second, nullptr);
    EXPECT_EQ(minX, 0.0);
    EXPECT_EQ(m_product[0], 0.0);
}

} // namespace
