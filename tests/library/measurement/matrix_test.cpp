// The matrix routines against plain loops, bit by bit.
#include "MatrixFixture.h"

namespace {

using plain::Array;

class MatrixReferenceTest : public testing::TestWithParam<int>
{
protected:
    int n() const { return GetParam(); }
    Sources m_sources{static_cast<unsigned>(GetParam()) + 1};
};

TEST_P(MatrixReferenceTest, ProductHasTheSameBits)
{
    for (const Source& source : m_sources.All()) {
        const Array a = Filled(n(), n(), source), b = Filled(n(), n(), source);
        Fenced out(n(), n());
        MAT_MatrixProduct(a.data(), b.data(), n(), out.data());
        EXPECT_TRUE(IsSame(out.Values(), plain::Product(a, b, n())));
        EXPECT_TRUE(out.IsFenceWhole());
    }
}

TEST_P(MatrixReferenceTest, TransposedTimesSelfHasTheSameBits)
{
    for (const int m : {0, 1, 2, n(), n() + 3, 700})
        for (const Source& source : m_sources.All()) {
            const Array a = Filled(m, n(), source);
            Fenced out(n(), n());
            int size = -7;
            MAT_AT_Times_A(a.data(), m, n(), out.data(), &size);
            EXPECT_EQ(size, n());
            EXPECT_TRUE(IsSame(out.Values(), plain::TransposedTimesSelf(a, m, n()))) << m;
            EXPECT_TRUE(out.IsFenceWhole());
        }
}

TEST_P(MatrixReferenceTest, VectorProductHasTheSameBits)
{
    for (const int rows : {1, 2, 3, 4, 5, 8, 11})
        for (const Source& source : m_sources.All()) {
            const Array a = Filled(rows, n(), source), v = Filled(n(), 1, source);
            Fenced out(rows);
            MAT_MatrixVectorProduct(a.data(), rows, n(), v.data(), n(), out.data());
            EXPECT_TRUE(IsSame(out.Values(), plain::MatrixVector(a, rows, n(), v)));
            EXPECT_TRUE(out.IsFenceWhole());
        }
}

TEST_P(MatrixReferenceTest, InverseHasTheSameBits)
{
    for (const Source& source : m_sources.All())
        for (int round = 0; round < 3; ++round) {
            const Array a = Filled(n(), n(), source), before = a;
            const Array right = Filled(n(), 1, source);
            Fenced b(n()), out(n(), n());
            std::copy(right.begin(), right.end(), b.data());
            MAT_InvertMatrix(a.data(), n(), b.data(), out.data());
            Array solution = right;
            const Array inverse = plain::Invert(a, n(), solution);
            EXPECT_TRUE(IsSame(out.Values(), inverse));
            EXPECT_TRUE(IsSame(b.Values(), solution));
            EXPECT_TRUE(IsSame(a, before));
            EXPECT_TRUE(out.IsFenceWhole() && b.IsFenceWhole());
        }
}

TEST_P(MatrixReferenceTest, LeastSquaresHasTheSameBits)
{
    for (const int m : {0, 1, n(), n() + 3, 700})
        for (const Source& source : m_sources.All()) {
            const Array a = Filled(m, n(), source), y = Filled(m, 1, source);
            Fenced x(n());
            MAT_LeastSquares(a.data(), m, n(), y.data(), x.data());
            EXPECT_TRUE(IsSame(x.Values(), plain::LeastSquares(a, m, n(), y))) << m;
            EXPECT_TRUE(x.IsFenceWhole());
        }
}

TEST_P(MatrixReferenceTest, IdentityIsComplete)
{
    Fenced out(n(), n());
    MAT_MakeIdentity(out.data(), n());
    const Array values = out.Values();
    for (int i = 0; i < n(); ++i)
        for (int j = 0; j < n(); ++j)
            EXPECT_TRUE(IsSame(plain::View(values, n())(i, j), i == j ? 1.0 : 0.0));
    EXPECT_TRUE(out.IsFenceWhole());
}

INSTANTIATE_TEST_SUITE_P(Sizes, MatrixReferenceTest,
                         testing::Values(1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 16, 21, 22, 31,
                                         48, 49));
// These sizes are beyond those that the routines were made for.
INSTANTIATE_TEST_SUITE_P(LargerSizes, MatrixReferenceTest, testing::Values(50, 51, 64, 100));

// The matrix routines at the sizes and with the arrays that they must leave alone.

using plain::Array;

TEST(MatrixSizeTest, NoSizeWritesOutsideItsArrays)
{
    for (int n = 0; n <= 60; ++n)
        for (int m = -1; m <= n + 2; m += 3) {
            const Array a(static_cast<std::size_t>(std::max(m, 1) * std::max(n, 1)), 0.5),
                y(static_cast<std::size_t>(std::max(m, 1)), 1.0);
            Fenced x(n), normal(n, n);
            int size = 0;
            MAT_LeastSquares(a.data(), m, n, y.data(), x.data());
            MAT_AT_Times_A(a.data(), m, n, normal.data(), &size);
            ASSERT_TRUE(x.IsFenceWhole() && normal.IsFenceWhole()) << n << " " << m;
            ASSERT_EQ(size, n);
        }
}

TEST(MatrixSizeTest, NothingIsDoneForSizesBelowOne)
{
    const Array a(16, 1.0);
    for (const int n : {0, -1, -49, std::numeric_limits<int>::min()}) {
        Fenced out(4, 4), b(4);
        int size = 5;
        MAT_AT_Times_A(a.data(), 4, n, out.data(), &size);
        EXPECT_EQ(size, n);
        MAT_MakeIdentity(out.data(), n);
        MAT_MatrixProduct(a.data(), a.data(), n, out.data());
        MAT_InvertMatrix(a.data(), n, b.data(), out.data());
        MAT_LeastSquares(a.data(), 4, n, a.data(), b.data());
        MAT_MatrixVectorProduct(a.data(), n, 4, a.data(), 4, out.data());
        EXPECT_TRUE(out.IsUntouched() && b.IsUntouched()) << n;
    }
}

TEST(MatrixSizeTest, EmptySumsAreZeroAndTheirSolutionIsNotANumber)
{
    for (const int m : {0, -3, std::numeric_limits<int>::min()}) {
        Fenced out(3, 3), x(3);
        int size = 0;
        MAT_AT_Times_A(nullptr, m, 3, out.data(), &size);
        MAT_LeastSquares(nullptr, m, 3, nullptr, x.data());
        EXPECT_TRUE(IsSame(out.Values(), Array(9, 0.0)));
        EXPECT_TRUE(IsSame(x.Values(), Array(3, notANumber)));
    }
    Fenced product(5);
    MAT_MatrixVectorProduct(nullptr, 5, 0, nullptr, 0, product.data());
    EXPECT_TRUE(IsSame(product.Values(), Array(5, 0.0)));
}

TEST(MatrixSizeTest, SizesThatCannotExistAreLeftAlone)
{
    const Array a(16, 1.0);
    for (const int n : {46341, 65536, 1 << 20, std::numeric_limits<int>::max()}) {
        Fenced out(4, 4), b(4);
        int size = 0;
        if (sizeof(void*) == 4 || n > (1 << 20)) {
            MAT_MakeIdentity(out.data(), n);
            MAT_MatrixProduct(a.data(), a.data(), n, out.data());
            MAT_AT_Times_A(a.data(), 4, n, out.data(), &size);
            EXPECT_EQ(size, n);
        }
        if (n > (1 << 20)) {
            MAT_InvertMatrix(a.data(), n, b.data(), out.data());
            MAT_LeastSquares(a.data(), 4, n, a.data(), b.data());
        }
        EXPECT_TRUE(out.IsUntouched() && b.IsUntouched()) << n;
    }
    Fenced x(4);
    if (sizeof(void*) == 4) {
        MAT_LeastSquares(a.data(), std::numeric_limits<int>::max(), 4, a.data(), x.data());
        EXPECT_TRUE(x.IsUntouched());
    }
}

// The memory needed is more than any address space, although its size can be computed.
TEST(MatrixSizeTest, WantOfScratchMemoryLeavesTheResultsAlone)
{
    const int n = sizeof(void*) == 4 ? 16000 : 6000000; // 4 GB; more than the address space
    const Array a(16, 1.0);
    Fenced out(4, 4), b(4);
    MAT_InvertMatrix(a.data(), n, b.data(), out.data());
    EXPECT_TRUE(out.IsUntouched() && b.IsUntouched());
}

TEST(MatrixSizeTest, NullArraysAreLeftAlone)
{
    const Array a(9, 1.0);
    Fenced out(3, 3), b(3);
    int size = 0;
    MAT_AT_Times_A(nullptr, 3, 3, out.data(), &size);
    MAT_AT_Times_A(a.data(), 3, 3, nullptr, &size);
    MAT_MakeIdentity(nullptr, 3);
    MAT_MatrixProduct(nullptr, a.data(), 3, out.data());
    MAT_MatrixProduct(a.data(), nullptr, 3, out.data());
    MAT_MatrixProduct(a.data(), a.data(), 3, nullptr);
    MAT_InvertMatrix(nullptr, 3, b.data(), out.data());
    MAT_InvertMatrix(a.data(), 3, nullptr, out.data());
    MAT_InvertMatrix(a.data(), 3, b.data(), nullptr);
    MAT_LeastSquares(nullptr, 3, 3, a.data(), b.data());
    MAT_LeastSquares(a.data(), 3, 3, nullptr, b.data());
    MAT_LeastSquares(a.data(), 3, 3, a.data(), nullptr);
    MAT_MatrixVectorProduct(nullptr, 3, 3, a.data(), 3, out.data());
    MAT_MatrixVectorProduct(a.data(), 3, 3, nullptr, 3, out.data());
    MAT_MatrixVectorProduct(a.data(), 3, 3, a.data(), 3, nullptr);
    MAT_SetMatrixElement(0, 0, 3, 3, nullptr, 1.0);
    MAT_GenerateRotationMatrix(0, 0, 0, nullptr);
    EXPECT_TRUE(out.IsUntouched() && b.IsUntouched());
    MAT_AT_Times_A(a.data(), 3, 3, out.data(), nullptr);
    EXPECT_TRUE(IsSame(out.Values(), Array(9, 3.0)));
}

} // namespace
