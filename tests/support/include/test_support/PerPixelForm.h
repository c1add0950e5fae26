#pragma once

#include <windows.h>
#include <gdiplus.h>
#include <objidl.h>

#include <cstdint>
#include <span>

// The pixel functions in their plain form: one call to GDI+ for each pixel, one channel after the
// other. The library's results must equal them, and it must be faster.
namespace per_pixel_form {

// The grey and the darkened grey of a colour.
int Grey(int red, int green, int blue);
int DarkenedGrey(int red, int green, int blue, int alpha);

void GrayScaleBitmap(Gdiplus::Bitmap& bitmap, int alpha);

// `pixels` are rows of `width` pixels, top row first.
void GrayScale(std::span<std::uint32_t> pixels, int width, int alpha);

// The plain form for a device bitmap, by GetPixel and SetPixel of GDI. Its pixels have no alpha.
void GrayScale(HDC context, int width, int height, int alpha);

void PreMultiply(std::span<std::uint8_t> bits, int alpha, COLORREF background,
                 const DWORD* backgroundBits);

// Copies the red of each pixel of `mask` to the alpha of the pixel of `source` at the same place.
void MaskByRed(Gdiplus::Bitmap& mask, Gdiplus::Bitmap& source);

} // namespace per_pixel_form
