#pragma once

#include <afxwin.h>

#include <cstdint>
#include <memory>
#include <vector>

using Bytes = std::vector<std::uint8_t>;
using Pixels = std::vector<unsigned int>;

// Random colours without their fourth byte.
Pixels Noise(int width, int height, unsigned seed);

// Plain forms of the turns.
Pixels UpsideDown(const Pixels& pixels, int width);
Pixels Mirrored(Pixels pixels, int width);

// The pixels as they lie in memory.
Bytes BytesOf(const Pixels& pixels);

std::unique_ptr<CBitmap> BitmapOf(const Pixels& pixels, int width, int height);

// A random mask of one bit a pixel.
std::unique_ptr<CBitmap> MaskOf(int width, int height, unsigned seed);

struct Turns
{
    bool mirror0, bottomUp0, mirror1, bottomUp1;
};

// Five planes as an application gives them, and their content after the turns.
struct GivenPlanes
{
    GivenPlanes(unsigned seed, const Turns& turns);

    Pixels given[5];
    Pixels turned[5];
};
