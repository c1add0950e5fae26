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

} // namespace
