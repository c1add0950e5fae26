#pragma once

#include <Utils_Statics/BitmapFunctions.h>

#include <cstdint>
#include <span>

// The pixel functions in their plain form: one call to GDI+ for each pixel, one channel after the
// other. What the library does must not differ from it, and must be faster.
namespace per_pixel_form {

// The grey and the darkened grey of a colour.
int Grey(int red, int green, int blue);
int DarkenedGrey(int red, int green, int blue, int alpha);

void GrayScaleBitmap(Gdiplus::Bitmap& bitmap, int alpha);

// `pixels` are rows of `width` pixels, top row first.
void GrayScale(std::span<std::uint32_t> pixels, int width, int alpha);

// The same by GetPixel and SetPixel of GDI, as the plain form of a device bitmap; without alpha.
void GrayScale(HDC context, int width, int height, int alpha);

void PreMultiply(std::span<std::uint8_t> bits, int alpha, COLORREF background,
                 const DWORD* backgroundBits);

// The red of each pixel of `mask` becomes the alpha of the pixel of `source` at its place.
void MaskByRed(Gdiplus::Bitmap& mask, Gdiplus::Bitmap& source);

} // namespace per_pixel_form
