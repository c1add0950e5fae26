#pragma once

#include <array>
#include <cstdint>
#include <span>

namespace mjpg {

/// A Huffman table as an image carries it: how many codes there are of each length, and their symbols.
struct HuffmanSpec
{
    std::array<std::uint8_t, 16> lengths;
    std::span<const std::uint8_t> symbols;
};

/// The codes of a table, by symbol.
struct HuffmanCodes
{
    std::uint16_t code[256];
    std::uint8_t length[256]; ///< 0 where the table has no such symbol
};

// The tables of ITU-T T.81, Annex K.3; players of Motion-JPEG know them even when an image does not carry them.
extern const HuffmanSpec luminanceDc, luminanceAc, chrominanceDc, chrominanceAc;

HuffmanCodes codesOf(const HuffmanSpec& spec);

} // namespace mjpg
