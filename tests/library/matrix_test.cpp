// The matrix routines: against plain loops bit by bit, at the sizes that must not write anywhere else, and by name.
#include <Utils_Statics/MatrixRoutines.h>

#include "PlainMatrix.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <functional>
#include <limits>
#include <random>
#include <string>
#include <vector>

namespace {

using plain::Array;

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double nan = std::numeric_limits<double>::quiet_NaN();

// The same bits, where any NaN stands for every other: which of two NaNs a sum keeps is the processor's choice.
bool isSame(double a, double b)
{
    if (std::isnan(a) || std::isnan(b)) return std::isnan(a) && std::isnan(b);
    return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b);
}

testing::AssertionResult isSame(const Array& a, const Array& b)
{
    if (a.size() != b.size()) return testing::AssertionFailure() << "sizes " << a.size() << " and " << b.size();
    for (std::size_t i = 0; i < a.size(); ++i)
        if (!isSame(a[i], b[i]))
            return testing::AssertionFailure() << "element " << i << ": " << a[i] << " and " << b[i];
    return testing::AssertionSuccess();
}

// Fills arrays with one kind of numbers.
using Source = std::function<double()>;

class Sources
{
public:
    explicit Sources(unsigned seed) : m_random(seed) {}

    double plainNumber() { return std::uniform_real_distribution<double>(-10.0, 10.0)(m_random); }
    double smallInteger() { return static_cast<double>(static_cast<int>(m_random() % 7) - 3); }
    double anyBits() { return std::bit_cast<double>((std::uint64_t{m_random()} << 32) | m_random()); }
    double denormal() { return std::bit_cast<double>(std::uint64_t{m_random()} | std::uint64_t{m_random() % 2} << 63); }

    double oftenSpecial()
    {
        static constexpr double special[] = {0.0, -0.0, infinity, -infinity, nan, 1e308, -1e-308, 5e-324, 1.0};
        return m_random() % 4 == 0 ? special[m_random() % std::size(special)] : plainNumber();
    }

    std::vector<Source> all()
    {
        return {[this] { return plainNumber(); }, [this] { return smallInteger(); }, [this] { return anyBits(); },
                [this] { return denormal(); }, [this] { return oftenSpecial(); }};
    }

private:
    std::mt19937 m_random;
};

Array filled(int rows, int cols, const Source& source)
{
    Array array = plain::matrix(rows, cols);
    std::generate(array.begin(), array.end(), source);
    return array;
}

// An output array between fields that nobody may write to.
class Fenced
{
public:
    explicit Fenced(int rows, int cols = 1)
        : m_size(static_cast<std::size_t>(std::max(rows, 0)) * static_cast<std::size_t>(std::max(cols, 0))),
          m_all(m_size + 2 * fence, mark)
    {
    }

    double* data() { return m_all.data() + fence; }
    Array values() const { return Array(m_all.begin() + fence, m_all.end() - fence); }

    bool isFenceWhole() const
    {
        const auto isMark = [](double value) { return value == mark; };
        return std::all_of(m_all.begin(), m_all.begin() + fence, isMark) &&
               std::all_of(m_all.end() - fence, m_all.end(), isMark);
    }

    bool isUntouched() const
    {
        return std::all_of(m_all.begin(), m_all.end(), [](double value) { return value == mark; });
    }

private:
    static constexpr std::ptrdiff_t fence = 64;
    static constexpr double mark = 1234.5678;

    std::size_t m_size;
    Array m_all;
};

// ---- the names

TEST(MatrixExportTest, TheRoutinesHaveTheirPlainNames)
{
    const HMODULE library = GetModuleHandleW(L"Utils_Statics.dll");
    ASSERT_NE(library, nullptr);
    for (const char* name :
         {"MAT_AT_Times_A", "MAT_SetMatrixElement", "MAT_MatrixVectorProduct", "MAT_MakeIdentity", "MAT_MatrixProduct",
          "MAT_InvertMatrix", "MAT_LeastSquares", "MAT_Transform", "MAT_GenerateRotationMatrix"})
        EXPECT_NE(GetProcAddress(library, name), nullptr) << name;
    EXPECT_EQ(GetProcAddress(library, "_MAT_MakeIdentity"), nullptr);
}

// ---- against the plain loops

class MatrixReferenceTest : public testing::TestWithParam<int>
{
protected:
    int n() const { return GetParam(); }
    Sources m_sources{static_cast<unsigned>(GetParam()) + 1};
};

TEST_P(MatrixReferenceTest, ProductHasTheSameBits)
{
    for (const Source& source : m_sources.all()) {
        const Array a = filled(n(), n(), source), b = filled(n(), n(), source);
        Fenced out(n(), n());
        MAT_MatrixProduct(a.data(), b.data(), n(), out.data());
        EXPECT_TRUE(isSame(out.values(), plain::product(a, b, n())));
        EXPECT_TRUE(out.isFenceWhole());
    }
}

TEST_P(MatrixReferenceTest, TransposedTimesSelfHasTheSameBits)
{
    for (const int m : {0, 1, 2, n(), n() + 3, 700})
        for (const Source& source : m_sources.all()) {
            const Array a = filled(m, n(), source);
            Fenced out(n(), n());
            int size = -7;
            MAT_AT_Times_A(a.data(), m, n(), out.data(), &size);
            EXPECT_EQ(size, n());
            EXPECT_TRUE(isSame(out.values(), plain::transposedTimesSelf(a, m, n()))) << m;
            EXPECT_TRUE(out.isFenceWhole());
        }
}

TEST_P(MatrixReferenceTest, VectorProductHasTheSameBits)
{
    for (const int rows : {1, 2, 3, 4, 5, 8, 11})
        for (const Source& source : m_sources.all()) {
            const Array a = filled(rows, n(), source), v = filled(n(), 1, source);
            Fenced out(rows);
            MAT_MatrixVectorProduct(a.data(), rows, n(), v.data(), n(), out.data());
            EXPECT_TRUE(isSame(out.values(), plain::matrixVector(a, rows, n(), v)));
            EXPECT_TRUE(out.isFenceWhole());
        }
}

TEST_P(MatrixReferenceTest, InverseHasTheSameBits)
{
    for (const Source& source : m_sources.all())
        for (int round = 0; round < 3; ++round) {
            const Array a = filled(n(), n(), source), before = a;
            const Array right = filled(n(), 1, source);
            Fenced b(n()), out(n(), n());
            std::copy(right.begin(), right.end(), b.data());
            MAT_InvertMatrix(a.data(), n(), b.data(), out.data());
            Array solution = right;
            const Array inverse = plain::invert(a, n(), solution);
            EXPECT_TRUE(isSame(out.values(), inverse));
            EXPECT_TRUE(isSame(b.values(), solution));
            EXPECT_TRUE(isSame(a, before));
            EXPECT_TRUE(out.isFenceWhole() && b.isFenceWhole());
        }
}

TEST_P(MatrixReferenceTest, LeastSquaresHasTheSameBits)
{
    for (const int m : {0, 1, n(), n() + 3, 700})
        for (const Source& source : m_sources.all()) {
            const Array a = filled(m, n(), source), y = filled(m, 1, source);
            Fenced x(n());
            MAT_LeastSquares(a.data(), m, n(), y.data(), x.data());
            EXPECT_TRUE(isSame(x.values(), plain::leastSquares(a, m, n(), y))) << m;
            EXPECT_TRUE(x.isFenceWhole());
        }
}

TEST_P(MatrixReferenceTest, IdentityIsComplete)
{
    Fenced out(n(), n());
    MAT_MakeIdentity(out.data(), n());
    const Array values = out.values();
    for (int i = 0; i < n(); ++i)
        for (int j = 0; j < n(); ++j)
            EXPECT_TRUE(isSame(plain::View(values, n())(i, j), i == j ? 1.0 : 0.0));
    EXPECT_TRUE(out.isFenceWhole());
}

INSTANTIATE_TEST_SUITE_P(Sizes, MatrixReferenceTest,
                         testing::Values(1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 16, 21, 22, 31, 48, 49));
// Beyond what the routines were made for.
INSTANTIATE_TEST_SUITE_P(LargerSizes, MatrixReferenceTest, testing::Values(50, 51, 64, 100));

// ---- sizes without elements, null arrays, absurd sizes

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
            ASSERT_TRUE(x.isFenceWhole() && normal.isFenceWhole()) << n << " " << m;
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
        EXPECT_TRUE(out.isUntouched() && b.isUntouched()) << n;
    }
}

TEST(MatrixSizeTest, EmptySumsAreZeroAndTheirSolutionIsNotANumber)
{
    for (const int m : {0, -3, std::numeric_limits<int>::min()}) {
        Fenced out(3, 3), x(3);
        int size = 0;
        MAT_AT_Times_A(nullptr, m, 3, out.data(), &size);
        MAT_LeastSquares(nullptr, m, 3, nullptr, x.data());
        EXPECT_TRUE(isSame(out.values(), Array(9, 0.0)));
        EXPECT_TRUE(isSame(x.values(), Array(3, nan)));
    }
    Fenced product(5);
    MAT_MatrixVectorProduct(nullptr, 5, 0, nullptr, 0, product.data());
    EXPECT_TRUE(isSame(product.values(), Array(5, 0.0)));
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
        EXPECT_TRUE(out.isUntouched() && b.isUntouched()) << n;
    }
    Fenced x(4);
    if (sizeof(void*) == 4) {
        MAT_LeastSquares(a.data(), std::numeric_limits<int>::max(), 4, a.data(), x.data());
        EXPECT_TRUE(x.isUntouched());
    }
}

// More than any address space holds, though its size can be told.
TEST(MatrixSizeTest, WantOfScratchMemoryLeavesTheResultsAlone)
{
    const int n = sizeof(void*) == 4 ? 16000 : 6000000; // 4 GB; more than the address space
    const Array a(16, 1.0);
    Fenced out(4, 4), b(4);
    MAT_InvertMatrix(a.data(), n, b.data(), out.data());
    EXPECT_TRUE(out.isUntouched() && b.isUntouched());
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
    EXPECT_TRUE(out.isUntouched() && b.isUntouched());
    MAT_AT_Times_A(a.data(), 3, 3, out.data(), nullptr);
    EXPECT_TRUE(isSame(out.values(), Array(9, 3.0)));
}

// ---- single routines

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
    const Array a = filled(7, 7, [&] { return sources.plainNumber(); });
    Array inPlace = a, b(7, 1.0), sameB = b;
    MAT_InvertMatrix(inPlace.data(), 7, b.data(), inPlace.data());
    EXPECT_TRUE(isSame(inPlace, plain::invert(a, 7, sameB)));
    EXPECT_TRUE(isSame(b, sameB));
}

TEST(LeastSquaresTest, MayOverwriteTheRightSide)
{
    Sources sources(6);
    const Array a = filled(20, 5, [&] { return sources.plainNumber(); });
    Array y = filled(20, 1, [&] { return sources.plainNumber(); });
    const Array expected = plain::leastSquares(a, 20, 5, y);
    MAT_LeastSquares(a.data(), 20, 5, y.data(), y.data());
    y.resize(5);
    EXPECT_TRUE(isSame(y, expected));
}

TEST(MatrixElementTest, StoresInsideAndReportsOutside)
{
    Fenced m(2, 3);
    testing::internal::CaptureStdout();
    MAT_SetMatrixElement(1, 2, 2, 3, m.data(), 5.0);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(m.values()[5], 5.0);
    Fenced untouched(2, 3);
    for (const auto& [row, col] : {std::pair(2, 0), std::pair(0, 3), std::pair(7, 7)}) {
        testing::internal::CaptureStdout();
        MAT_SetMatrixElement(row, col, 2, 3, untouched.data(), 5.0);
        std::string text = testing::internal::GetCapturedStdout();
        std::erase(text, '\r');
        EXPECT_EQ(text, "\nERROR in SetMatrixElement() !\n");
    }
    EXPECT_TRUE(untouched.isUntouched());
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
    EXPECT_TRUE(isSame(m.values(), {std::cos(a), -std::sin(a), 5.0, std::sin(a), std::cos(a), -6.0, 0.0, 0.0, 1.0}));
    EXPECT_TRUE(m.isFenceWhole());
}

TEST(RotationMatrixTest, AQuarterTurnIsNotExact)
{
    double m[9];
    MAT_GenerateRotationMatrix(0, 0, 900, m);
    EXPECT_NEAR(m[0], 4.5e-11, 0.05e-11);
    EXPECT_EQ(m[3], 1.0);
    constexpr int largest = std::numeric_limits<int>::max(), least = std::numeric_limits<int>::min();
    MAT_GenerateRotationMatrix(largest, least, least, m);
    EXPECT_EQ(m[2], largest);
    EXPECT_EQ(m[5], least);
}

class TransformTest : public testing::Test
{
protected:
    void transform(const double* p1, const double* p2, const double* p3, const double* p4)
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
    transform(p1, p2, p3, p4);
    const double c = std::sqrt(0.75), s = 0.5;
    EXPECT_NEAR(maxX, 100 * c + 50 * s, 1e-6);
    EXPECT_NEAR(minX, -maxX, 1e-6);
    EXPECT_NEAR(maxY, 100 * s + 50 * c, 1e-6);
    EXPECT_NEAR(minY, -maxY, 1e-6);
    const Array expected = plain::product(Array(m_first, m_first + 9), Array(m_second, m_second + 9), 3);
    EXPECT_TRUE(isSame(Array(m_product, m_product + 9), expected));
}

TEST_F(TransformTest, ABoxBeyondTheStartingValuesIsCutThere)
{
    const double left[] = {-2e8, 5, 1}, top[] = {-3e8, 2e8, 1};
    transform(left, left, left, left);
    EXPECT_EQ(maxX, -1e8);
    EXPECT_EQ(minX, -2e8);
    EXPECT_EQ(maxY, 5.0);
    EXPECT_EQ(minY, 5.0);
    transform(top, top, top, top);
    EXPECT_EQ(minY, 1e8);
}

TEST_F(TransformTest, NotANumberIsPassedOver)
{
    const double bad[] = {nan, nan, 1}, good[] = {3, 4, 1};
    transform(bad, bad, bad, bad);
    EXPECT_EQ(maxX, -1e8);
    EXPECT_EQ(minY, 1e8);
    m_first[1] = m_first[3] = 0.0;
    transform(bad, good, bad, bad);
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
