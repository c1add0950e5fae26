#pragma once

#include "PlainMatrix.h"

#include <gtest/gtest.h>
#include <Utils_Statics/MatrixRoutines.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <iterator>
#include <limits>
#include <random>
#include <vector>

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

// True when the bits are the same. Any NaN equals every other, because the processor chooses which
// of two NaNs a sum keeps.
inline bool IsSame(double a, double b)
{
    if (std::isnan(a) || std::isnan(b)) return std::isnan(a) && std::isnan(b);
    return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b);
}

inline testing::AssertionResult IsSame(const plain::Array& a, const plain::Array& b)
{
    if (a.size() != b.size())
        return testing::AssertionFailure() << "sizes " << a.size() << " and " << b.size();
    for (std::size_t i = 0; i < a.size(); ++i)
        if (!IsSame(a[i], b[i]))
            return testing::AssertionFailure()
                   << "element " << i << ": " << a[i] << " and " << b[i];
    return testing::AssertionSuccess();
}

// Fills arrays with one kind of numbers.
using Source = std::function<double()>;

class Sources
{
public:
    explicit Sources(unsigned seed) : m_random(seed) {}

    double PlainNumber() { return std::uniform_real_distribution<double>(-10.0, 10.0)(m_random); }
    double SmallInteger() { return static_cast<double>(static_cast<int>(m_random() % 7) - 3); }
    double AnyBits()
    {
        return std::bit_cast<double>((std::uint64_t{m_random()} << 32) | m_random());
    }
    double Denormal()
    {
        return std::bit_cast<double>(std::uint64_t{m_random()} | std::uint64_t{m_random() % 2}
                                                                     << 63);
    }

    double OftenSpecial()
    {
        static constexpr double special[] = {0.0,   -0.0,    infinity, -infinity, notANumber,
                                             1e308, -1e-308, 5e-324,   1.0};
        return m_random() % 4 == 0 ? special[m_random() % std::size(special)] : PlainNumber();
    }

    std::vector<Source> All()
    {
        return {[this] { return PlainNumber(); }, [this] { return SmallInteger(); },
                [this] { return AnyBits(); }, [this] { return Denormal(); },
                [this] { return OftenSpecial(); }};
    }

private:
    std::mt19937 m_random;
};

inline plain::Array Filled(int rows, int cols, const Source& source)
{
    plain::Array array = plain::Matrix(rows, cols);
    std::generate(array.begin(), array.end(), source);
    return array;
}

// An output array between fences that nobody may write to.
class Fenced
{
public:
    explicit Fenced(int rows, int cols = 1)
        : m_size(static_cast<std::size_t>(std::max(rows, 0)) *
                 static_cast<std::size_t>(std::max(cols, 0))),
          m_all(m_size + 2 * fence, mark)
    {
    }

    double* data() { return m_all.data() + fence; }
    plain::Array Values() const { return plain::Array(m_all.begin() + fence, m_all.end() - fence); }

    bool IsFenceWhole() const
    {
        const auto isMark = [](double value) { return value == mark; };
        return std::all_of(m_all.begin(), m_all.begin() + fence, isMark) &&
               std::all_of(m_all.end() - fence, m_all.end(), isMark);
    }

    bool IsUntouched() const
    {
        return std::all_of(m_all.begin(), m_all.end(), [](double value) { return value == mark; });
    }

private:
    static constexpr std::ptrdiff_t fence = 64;
    static constexpr double mark = 1234.5678;

    std::size_t m_size;
    plain::Array m_all;
};
