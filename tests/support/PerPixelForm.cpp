#include "test_support/PerPixelForm.h"

namespace per_pixel_form {

using Gdiplus::ARGB;
using Gdiplus::Color;

namespace {

template <class ForPixel>
void ForEachPixel(int width, int height, ForPixel forPixel)
{
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            forPixel(x, y);
}

template <class ForPixel>
void ForEachPixel(Gdiplus::Bitmap& bitmap, ForPixel forPixel)
{
    ForEachPixel(static_cast<int>(bitmap.GetWidth()), static_cast<int>(bitmap.GetHeight()),
                 forPixel);
}

} // namespace

int Grey(int red, int green, int blue)
{
    return static_cast<int>(green * 0.59 + red * 0.3 + blue * 0.11);
}

int DarkenedGrey(int red, int green, int blue, int alpha)
{
    return static_cast<int>((blue * 0.11 + green * 0.59 + red * 0.3) * alpha * 0.003921569F);
}

void GrayScaleBitmap(Gdiplus::Bitmap& bitmap, int alpha)
{
    Color colour(0xFF000000);
    ForEachPixel(bitmap, [&](int x, int y) {
        bitmap.GetPixel(x, y, &colour);
        const auto grey = static_cast<BYTE>(Grey(colour.GetR(), colour.GetG(), colour.GetB()));
        const auto newAlpha = alpha == -1 ? colour.GetA() : static_cast<BYTE>(alpha & 0xFF);
        bitmap.SetPixel(x, y, Color(newAlpha, grey, grey, grey));
    });
}

void GrayScale(std::span<std::uint32_t> pixels, int width, int alpha)
{
    const std::uint32_t key = pixels[static_cast<std::size_t>(width) - 1] & 0xFFFFFF;
    for (std::uint32_t& pixel : pixels) {
        const Color colour(pixel);
        const bool isKey = (pixel & 0xFFFFFF) == key;
        const int grey =
            isKey ? alpha : DarkenedGrey(colour.GetR(), colour.GetG(), colour.GetB(), alpha);
        const auto channel = static_cast<BYTE>(grey);
        pixel = Color(static_cast<BYTE>(alpha), channel, channel, channel).GetValue();
    }
}

void GrayScale(HDC context, int width, int height, int alpha)
{
    const COLORREF key = GetPixel(context, width - 1, 0);
    ForEachPixel(width, height, [&](int x, int y) {
        const COLORREF colour = GetPixel(context, x, y);
        const int grey = colour == key ? alpha
                                       : DarkenedGrey(GetRValue(colour), GetGValue(colour),
                                                      GetBValue(colour), alpha);
        SetPixel(context, x, y, RGB(grey, grey, grey));
    });
}

void PreMultiply(std::span<std::uint8_t> bits, int alpha, COLORREF background,
                 const DWORD* backgroundBits)
{
    for (std::size_t i = 0; i < bits.size() / 4; ++i) {
        const Color behind = backgroundBits ? Color(backgroundBits[i])
                                            : Color(GetRValue(background), GetGValue(background),
                                                    GetBValue(background));
        std::uint8_t* const pixel = &bits[4 * i];
        const int behindBytes[3] = {behind.GetB(), behind.GetG(), behind.GetR()};
        for (int channel = 0; channel < 3; ++channel)
            pixel[channel] = static_cast<std::uint8_t>(
                (pixel[channel] * alpha + behindBytes[channel] * (255 - alpha)) / 255);
        pixel[3] = static_cast<std::uint8_t>(alpha);
    }
}

void MaskByRed(Gdiplus::Bitmap& mask, Gdiplus::Bitmap& source)
{
    Color maskColour(0xFF000000);
    Color colour(0xFF000000);
    ForEachPixel(mask, [&](int x, int y) {
        mask.GetPixel(x, y, &maskColour);
        source.GetPixel(x, y, &colour);
        mask.SetPixel(x, y, Color(maskColour.GetR(), colour.GetR(), colour.GetG(), colour.GetB()));
    });
}

} // namespace per_pixel_form
