#pragma once

#include <cmath>
#include <limits>
#include <numbers>

// The transcendental functions that the phantom needs. Those of the platforms' libraries differ in
// their last bits; these are made of operations that IEEE 754 rounds exactly, so that the results
// are the same bits everywhere. Their errors lie below 1e-10.
namespace simulation {

// Rounds to a whole number. The sum has no bits below 1, so the processor rounds it.
constexpr double RoundToWhole(double value)
{
    constexpr double big = 6755399441055744.0; // 1.5 x 2^52
    return value + big - big;
}

// The largest whole number that is not above the value.
constexpr double WholeBelow(double value)
{
    const double whole = RoundToWhole(value);
    return whole > value ? whole - 1 : whole;
}

struct SineCosine
{
    double sine;
    double cosine;
};

// The sine and the cosine of an angle in turns, by their power series about the nearest quarter.
constexpr SineCosine OfTurns(double turns)
{
    const double quarter = RoundToWhole(4 * turns);
    const double r = (turns - quarter / 4) * (2 * std::numbers::pi);
    const double q = r * r;
    const double sine =
        r * (1 - q / 6 * (1 - q / 20 * (1 - q / 42 * (1 - q / 72 * (1 - q / 110)))));
    const double cosine =
        1 - q / 2 * (1 - q / 12 * (1 - q / 30 * (1 - q / 56 * (1 - q / 90 * (1 - q / 132)))));
    switch (static_cast<int>(quarter - 4 * WholeBelow(quarter / 4))) {
    case 1: return {cosine, -sine};
    case 2: return {-sine, -cosine};
    case 3: return {-cosine, sine};
    default: return {sine, cosine};
    }
}

constexpr SineCosine OfRadians(double angle)
{
    return OfTurns(angle / (2 * std::numbers::pi));
}

constexpr SineCosine OfDegrees(double angle)
{
    return OfTurns(angle / 360);
}

// The angle of (x, y) from the y axis towards x, in radians from -pi to pi. Halving the angle twice
// makes the series short.
inline double AngleFromAxis(double x, double y)
{
    const double length = std::sqrt(x * x + y * y);
    if (length == 0) return 0;
    if (y < 0 && x == 0) return std::numbers::pi;
    const double half = y < 0 ? (length - y) / x : x / (length + y);
    const bool steep = std::abs(half) > 1;
    const double slope = steep ? 1 / half : half;
    const double z = slope / (1 + std::sqrt(1 + slope * slope));
    const double w = z / (1 + std::sqrt(1 + z * z));
    const double q = w * w;
    double sum = 0;
    for (int power = 19; power > 0; power -= 2)
        sum = 1.0 / power - q * sum;
    const double angle = 4 * w * sum;
    if (!steep) return 2 * angle;
    return half > 0 ? std::numbers::pi - 2 * angle : -std::numbers::pi - 2 * angle;
}

inline double Exponential(double x)
{
    const double powerOfTwo = RoundToWhole(x / std::numbers::ln2);
    const double r = x - powerOfTwo * std::numbers::ln2;
    double sum = 1;
    for (int n = 12; n > 0; --n)
        sum = 1 + r * sum / n;
    return std::ldexp(sum, static_cast<int>(powerOfTwo));
}

// The amplitude that a number of decibels means.
inline double AmplitudeOf(double decibels)
{
    return Exponential(decibels * (std::numbers::ln10 / 20));
}

// The natural logarithm of a positive number.
inline double Logarithm(double value)
{
    int exponent = 0;
    const double mantissa = std::frexp(value, &exponent);
    const double z = (mantissa - std::numbers::sqrt2 / 2) / (mantissa + std::numbers::sqrt2 / 2);
    double sum = 0;
    for (int n = 17; n > 0; n -= 2)
        sum = 1.0 / n + z * z * sum;
    return 2 * z * sum + (exponent - 0.5) * std::numbers::ln2;
}

// Decibels of a positive power.
inline double DecibelsOf(double power)
{
    return Logarithm(power) * (10 / std::numbers::ln10);
}

} // namespace simulation
