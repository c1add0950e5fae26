#pragma once

#include <cstdint>

namespace mjpg {

/// Factors that turn what forwardDct computes into quantised coefficients, in forwardDct's order.
struct Quantiser
{
    alignas(16) float factor[64];
};

/// From 64 quantisation steps in row order.
Quantiser quantiserOf(const std::uint8_t (&steps)[64]);

/// Transforms and quantises a block of 8 x 8 samples (-128 to 127, row by row, 16-byte aligned). Coefficients come out
/// column by column, limited to the 10 bits that a baseline image can hold.
void forwardDct(const float* samples, const Quantiser& quantiser, std::int16_t* coefficients);

} // namespace mjpg
