// The least-squares routine on published problems with certified solutions.
// docs/least-squares-accuracy.md has the table; the digits here and there are the same.
#include "CertifiedRegression.h"

#include <gtest/gtest.h>
#include <Utils_Statics/MatrixRoutines.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

namespace {

using certified_regression::Problem;

// The certified values are given to 15 digits.
constexpr double mostDigits = 15.0;

// Correct decimal digits: the negative logarithm of the relative error (none of the certified
// values is 0).
double Digits(double value, double certified)
{
    const double error = std::fabs(value - certified) / std::fabs(certified);
    if (!std::isfinite(error)) return 0.0;
    return error == 0.0 ? mostDigits : std::clamp(-std::log10(error), 0.0, mostDigits);
}

// The digits of the worst coefficient, cut after one decimal.
double WorstDigits(const Problem& problem)
{
    std::vector<double> x(problem.coefficients);
    MAT_LeastSquares(problem.design.data(), static_cast<int>(problem.y.size()),
                     static_cast<int>(problem.coefficients), problem.y.data(), x.data());
    double worst = mostDigits;
    for (std::size_t i = 0; i < x.size(); ++i)
        worst = std::min(worst, Digits(x[i], problem.certified[i]));
    return std::floor(worst * 10.0) / 10.0;
}

struct Expectation
{
    Problem (*problem)();
    double digits;
};

void PrintTo(const Expectation& expectation, std::ostream* out)
{
    *out << expectation.problem().name;
}

class CertifiedRegressionTest : public testing::TestWithParam<Expectation>
{
};

// The arithmetic is the same on every machine, so the digits are too. More digits would be as
// surprising as fewer.
TEST_P(CertifiedRegressionTest, ReachesTheDocumentedDigits)
{
    const Problem problem = GetParam().problem();
    ASSERT_EQ(problem.design.size(), problem.y.size() * problem.coefficients);
    ASSERT_EQ(problem.certified.size(), problem.coefficients);
    EXPECT_DOUBLE_EQ(WorstDigits(problem), GetParam().digits);
}

INSTANTIATE_TEST_SUITE_P(Problems, CertifiedRegressionTest,
                         testing::Values(Expectation{certified_regression::Norris, 12.2},
                                         Expectation{certified_regression::Pontius, 11.3},
                                         Expectation{certified_regression::NoInt1, 14.7},
                                         Expectation{certified_regression::NoInt2, 15.0},
                                         Expectation{certified_regression::Filip, 0.0},
                                         Expectation{certified_regression::Longley, 8.4},
                                         Expectation{certified_regression::Wampler1, 6.6},
                                         Expectation{certified_regression::Wampler2, 9.3},
                                         Expectation{certified_regression::Wampler3, 6.6},
                                         Expectation{certified_regression::Wampler4, 6.6},
                                         Expectation{certified_regression::Wampler5, 6.6}),
                         [](const auto& test) { return test.param.problem().name; });

} // namespace
