#pragma once

#include <cstddef>
#include <random>

namespace test_support {

// Random numbers, the same in every run.
class Random
{
public:
    explicit Random(unsigned int seed) : m_engine(seed) {}

    // The bounds are included.
    int Int(int low, int high) { return std::uniform_int_distribution<int>(low, high)(m_engine); }
    double Real(double low, double high)
    {
        return std::uniform_real_distribution<double>(low, high)(m_engine);
    }
    bool OneIn(int n) { return Int(1, n) == 1; }
    // One of the values.
    template <class Value, std::size_t count>
    const Value& Of(const Value (&values)[count])
    {
        return values[Int(0, static_cast<int>(count) - 1)];
    }

private:
    std::mt19937 m_engine;
};

} // namespace test_support
