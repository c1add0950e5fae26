// Bitmap functions: changing pixels, frames and rounded corners.
#include "Utils_Statics/BitmapFunctions.h"

#include "imaging/BitmapPixels.h"
#include "imaging/PixelKernels.h"

#include <algorithm>
#include <cmath>
#include <memory>

using Gdiplus::Bitmap;
using Gdiplus::Color;
using Gdiplus::Ok;
using Image = std::unique_ptr<Bitmap>;
using namespace utils_statics;

namespace {

// Calls GDI+ for each pixel, for formats whose pixels cannot be locked.
void GreyPixelByPixel(Bitmap& bitmap, int alpha)
{
    const int width = static_cast<int>(bitmap.GetWidth());
    const int height = static_cast<int>(bitmap.GetHeight());
    Color colour; // stays the previous pixel's when one cannot be read
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            bitmap.GetPixel(x, y, &colour);
            std::uint32_t pixel = colour.GetValue();
            GreyRow({&pixel, 1}, alpha);
            bitmap.SetPixel(x, y, Color(pixel));
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

struct Blend
{
    const float* factors;
    const float* positions;
    int count;
};

// The result is null when the image cannot be copied.
Image CopyOf(Bitmap* source)
{
    if (!source || source->GetLastStatus() != Ok) return nullptr;
    return Image(source->Clone(0, 0, static_cast<INT>(source->GetWidth()),
                               static_cast<INT>(source->GetHeight()), PixelFormat32bppARGB));
}

// Fills the whole image with the gradient from the path's edge to its middle. A fill that GDI+
// refuses leaves the image as it is; a refused blend leaves the even one.
void FillGradient(Gdiplus::Graphics& graphics, const Gdiplus::Rect& all,
                  const Gdiplus::GraphicsPath& path, Color centre, Color edge, const Blend& blend)
{
    Gdiplus::PathGradientBrush brush(&path);
    INT colours = 1;
    brush.SetCenterColor(centre);
    brush.SetSurroundColors(&edge, &colours);
    // The arrays are only read, but not every header of GDI+ declares them const.
    brush.SetBlend(const_cast<float*>(blend.factors), const_cast<float*>(blend.positions),
                   blend.count);
    graphics.FillRectangle(&brush, all);
}

// Some implementations of GDI+ never finish with larger curves, or with NaN.
float FiniteRadius(float radius)
{
    constexpr float largest = 1e4F; // pixels
    return std::isnan(radius) ? 0 : std::clamp(radius, -largest, largest);
}

Gdiplus::Rect AreaOf(Bitmap& image)
{
    return {0, 0, static_cast<INT>(image.GetWidth()), static_cast<INT>(image.GetHeight())};
}

// Makes the red of the image a mask: 255 inside the rounded rectangle, fading to 0 towards its
// edge.
void DrawMask(Bitmap& image, float radius, const Blend& blend)
{
    const Gdiplus::Rect all = AreaOf(image);
    Gdiplus::Graphics graphics(&image);
    Gdiplus::GraphicsPath path;
    graphics.Clear(Color(0x00000000));
    CreateRoundRect(path, 0, 0, static_cast<float>(all.Width), static_cast<float>(all.Height),
                    FiniteRadius(radius));
    FillGradient(graphics, all, path, Color(0xFFFF0000), Color(0xFF000000), blend);
}

// Masks a source whose pixels GDI+ does not lend out.
void MaskPixelByPixel(const LockedPixels& mask, Bitmap& source)
{
    Color colour; // stays the previous pixel's where one cannot be read
    for (int y = 0; y < mask.Height(); ++y) {
        const std::span row = mask.Row(y);
        for (std::size_t x = 0; x < row.size(); ++x) {
            source.GetPixel(static_cast<INT>(x), y, &colour);
            const std::uint32_t pixel = colour.GetValue();
            MaskRow(row.subspan(x, 1), &pixel);
        }
    }
}

void MaskPixels(Bitmap& image, Bitmap& source)
{
    const LockedPixels mask(image, LockedPixels::Access::change);
    const LockedPixels colours(source, LockedPixels::Access::read);
    if (!colours) return MaskPixelByPixel(mask, source);
    for (int y = 0; y < mask.Height(); ++y)
        MaskRow(mask.Row(y), colours.Row(y).data());
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

Gdiplus::Status CreateRoundRect(Gdiplus::GraphicsPath& path, float x, float y, float width,
                                float height, float radius)
{
    const float diameter = 2 * radius;
    const float right = x + width;
    const float bottom = y + height;
    path.AddLine(x + radius, y, right - diameter, y);
    path.AddArc(right - diameter, y, diameter, diameter, 270, 90);
    path.AddLine(right, y + radius, right, bottom - diameter);
    path.AddArc(right - diameter, bottom - diameter, diameter, diameter, 0, 90);
    path.AddLine(right - diameter, bottom, x + radius, bottom);
    path.AddArc(x, bottom - diameter, diameter, diameter, 90, 90);
    path.AddLine(x, bottom - diameter, x, y + radius);
    return path.AddArc(x, y, diameter, diameter, 180, 90);
}

Bitmap* CreateRoundedBitmap(Bitmap* source, float radius, const float* blendFactors,
                            const float* blendPositions, int count)
{
    Image result = CopyOf(source);
    if (!result) return nullptr;
    DrawMask(*result, radius, {blendFactors, blendPositions, count});
    MaskPixels(*result, *source);
    return result.release();
}

Bitmap* CreateBorderedBitmap(Bitmap* source, const float* blendFactors, const float* blendPositions,
                             int count, COLORREF border)
{
    Image result = CopyOf(source);
    if (!result) return nullptr;
    const Gdiplus::Rect all = AreaOf(*result);
    const Color edge(GetRValue(border), GetGValue(border), GetBValue(border));
    Gdiplus::Graphics graphics(result.get());
    Gdiplus::GraphicsPath path;
    path.AddRectangle(all);
    FillGradient(graphics, all, path, Color(0x00000000), edge,
                 {blendFactors, blendPositions, count});
    return result.release();
}
