// This compares the matrix routines with Eigen, which does the same job in double precision on the
// same row-by-row arrays, with sizes known at run time only. It ends with the ratios.
#include "RatioReporter.h"

#include <benchmark/benchmark.h>
#include <Eigen/Dense>
#include <Utils_Statics/MatrixRoutines.h>

#include <random>
#include <string>
#include <vector>

namespace {

using Matrix = Eigen::Matrix<double, Eigen::Dynamic, Eigen::Dynamic, Eigen::RowMajor>;
using MatrixView = Eigen::Map<Matrix>;
using VectorView = Eigen::Map<Eigen::VectorXd>;

constexpr int observations = 1000;

class Numbers
{
public:
    std::vector<double> Make(int count)
    {
        std::vector<double> values(static_cast<std::size_t>(count));
        for (double& value : values)
            value = m_distribution(m_random);
        return values;
    }

    // A matrix that needs no pivoting.
    std::vector<double> MakeDominant(int n)
    {
        std::vector<double> values = Make(n * n);
        for (int i = 0; i < n; ++i)
            values[static_cast<std::size_t>(i * n + i)] += n;
        return values;
    }

private:
    std::mt19937 m_random{1};
    std::uniform_real_distribution<double> m_distribution{-1.0, 1.0};
};

int Size(const benchmark::State& state)
{
    return static_cast<int>(state.range(0));
}

void ProductOurs(benchmark::State& state)
{
    const int n = Size(state);
    Numbers numbers;
    const auto a = numbers.Make(n * n), b = numbers.Make(n * n);
    std::vector<double> out(a.size());
    for (auto _ : state) {
        MAT_MatrixProduct(a.data(), b.data(), n, out.data());
        benchmark::ClobberMemory();
    }
}

void ProductEigen(benchmark::State& state)
{
    const int n = Size(state);
    Numbers numbers;
    auto a = numbers.Make(n * n), b = numbers.Make(n * n);
    std::vector<double> out(a.size());
    MatrixView A(a.data(), n, n), B(b.data(), n, n), C(out.data(), n, n);
    for (auto _ : state) {
        C.noalias() = A * B;
        benchmark::ClobberMemory();
    }
}

void InvertOurs(benchmark::State& state)
{
    const int n = Size(state);
    Numbers numbers;
    const auto a = numbers.MakeDominant(n);
    auto b = numbers.Make(n);
    std::vector<double> out(a.size());
    for (auto _ : state) {
        MAT_InvertMatrix(a.data(), n, b.data(), out.data());
        benchmark::ClobberMemory();
    }
}

void InvertEigen(benchmark::State& state)
{
    const int n = Size(state);
    Numbers numbers;
    auto a = numbers.MakeDominant(n), b = numbers.Make(n);
    std::vector<double> out(a.size());
    MatrixView A(a.data(), n, n), inverse(out.data(), n, n);
    VectorView right(b.data(), n);
    for (auto _ : state) {
        const Eigen::PartialPivLU<Matrix> lu(A);
        inverse = lu.inverse();
        right = lu.solve(right).eval();
        benchmark::ClobberMemory();
    }
}

void LeastSquaresOurs(benchmark::State& state)
{
    const int n = Size(state);
    Numbers numbers;
    const auto a = numbers.Make(observations * n), y = numbers.Make(observations);
    std::vector<double> x(static_cast<std::size_t>(n));
    for (auto _ : state) {
        MAT_LeastSquares(a.data(), observations, n, y.data(), x.data());
        benchmark::ClobberMemory();
    }
}

void LeastSquaresEigen(benchmark::State& state)
{
    const int n = Size(state);
    Numbers numbers;
    auto a = numbers.Make(observations * n), y = numbers.Make(observations);
    std::vector<double> out(static_cast<std::size_t>(n));
    MatrixView A(a.data(), observations, n);
    VectorView right(y.data(), observations), x(out.data(), n);
    for (auto _ : state) {
        x = (A.transpose() * A).ldlt().solve(A.transpose() * right);
        benchmark::ClobberMemory();
    }
}

#define SIZES                                                                                      \
    Arg(3)->Arg(6)->Arg(12)->Arg(24)->Arg(49)->UseRealTime() // processor times are too coarse
BENCHMARK(ProductOurs)->Name("MatrixProduct/ours")->SIZES;
BENCHMARK(ProductEigen)->Name("MatrixProduct/Eigen")->SIZES;
BENCHMARK(InvertOurs)->Name("InvertMatrix/ours")->SIZES;
BENCHMARK(InvertEigen)->Name("InvertMatrix/Eigen")->SIZES;
BENCHMARK(LeastSquaresOurs)->Name("LeastSquares1000/ours")->SIZES;
BENCHMARK(LeastSquaresEigen)->Name("LeastSquares1000/Eigen")->SIZES;

void PrintRatios(const RatioReporter& reporter)
{
    for (const std::string routine : {"MatrixProduct", "InvertMatrix", "LeastSquares1000"})
        for (const int n : {3, 6, 12, 24, 49})
            reporter.PrintRatioAt(n, routine + "/ours", routine + "/Eigen", n <= 12 ? -1.5 : 0);
}

} // namespace

int main(int argc, char** argv)
{
    return RatioReporter::RunAll(argc, argv, PrintRatios);
}
