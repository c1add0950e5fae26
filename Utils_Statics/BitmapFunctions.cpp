#include "Utils_Statics/BitmapFunctions.h"

#include "imaging/DevicePixels.h"
#include "imaging/LockedPixels.h"
#include "imaging/PixelKernels.h"

using namespace utils_statics;

namespace {

// Calls GDI+ for each pixel, for formats whose pixels cannot be locked.
void GreyPixelByPixel(Gdiplus::Bitmap& bitmap, int alpha)
{
    const int width = static_cast<int>(bitmap.GetWidth());
    const int height = static_cast<int>(bitmap.GetHeight());
    Gdiplus::Color colour; // stays the previous pixel's when one cannot be read
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            bitmap.GetPixel(x, y, &colour);
            std::uint32_t pixel = colour.GetValue();
            GreyRow({&pixel, 1}, alpha);
            bitmap.SetPixel(x, y, Gdiplus::Color(pixel));
        }
}

// The colour of a COLORREF in the byte order of a pixel.
std::uint32_t PixelOf(COLORREF colour)
{
    return static_cast<std::uint32_t>(RGB(GetBValue(colour), GetGValue(colour), GetRValue(colour)));
}

std::size_t PixelCount(const BITMAP& description)
{
    return static_cast<std::size_t>(description.bmWidth) *
           static_cast<std::size_t>(std::abs(description.bmHeight));
}

} // namespace

bool GrayScaleBitmap(Gdiplus::Bitmap* bitmap, int alpha)
{
    if (!bitmap) return false;
    const LockedPixels pixels(*bitmap, LockedPixels::Access::change);
    if (!pixels) {
        GreyPixelByPixel(*bitmap, alpha);
        return true;
    }
    for (int y = 0; y < pixels.Height(); ++y)
        GreyRow(pixels.Row(y), alpha);
    return true;
}

bool GrayScale(HBITMAP bitmap, unsigned char alpha)
{
    DevicePixels pixels(bitmap);
    if (!pixels) return false;
    const GreyWithKey grey{pixels.TopRight(), alpha};
    for (int y = 0; y < pixels.Height(); ++y)
        if (pixels.BytesPerPixel() == 4)
            GreyKeyedRow(pixels.Row32(y), grey);
        else
            GreyKeyedRow24(pixels.Row24(y), grey);
    return pixels.Store();
}

bool PreMultiplyRGBChannels(HBITMAP bitmap, unsigned char* bits, unsigned char alpha,
                            COLORREF background, DWORD* backgroundBits)
{
    BITMAP description = {};
    if (!bits || !GetObjectW(bitmap, sizeof description, &description)) return false;
    const std::span row(reinterpret_cast<std::uint32_t*>(bits), PixelCount(description));
    if (backgroundBits)
        BlendRow(row, alpha, reinterpret_cast<const std::uint32_t*>(backgroundBits));
    else
        BlendRow(row, alpha, PixelOf(background));
    return true;
}
