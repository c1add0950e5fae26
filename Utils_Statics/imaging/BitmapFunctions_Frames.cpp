#include <Utils_Statics/BitmapFunctions.h>

#include "imaging/LockedPixels.h"
#include "imaging/PixelKernels.h"

#include <cmath>
#include <memory>

using Gdiplus::Bitmap;
using Gdiplus::Color;
using Gdiplus::Ok;
using Image = std::unique_ptr<Bitmap>;
using namespace utils_statics;

namespace {

struct Blend
{
    const float* factors;
    const float* positions;
    int count;
};

// Null for an image that cannot be copied.
Image CopyOf(Bitmap* source)
{
    if (!source || source->GetLastStatus() != Ok) return nullptr;
    return Image(source->Clone(0, 0, static_cast<INT>(source->GetWidth()),
                               static_cast<INT>(source->GetHeight()), PixelFormat32bppARGB));
}

// Fills the whole image with the gradient from the path's edge to its middle.
bool FillGradient(Gdiplus::Graphics& graphics, const Gdiplus::Rect& all,
                  const Gdiplus::GraphicsPath& path, Color centre, Color edge, const Blend& blend)
{
    Gdiplus::PathGradientBrush brush(&path);
    INT colours = 1;
    return brush.SetCenterColor(centre) == Ok && brush.SetSurroundColors(&edge, &colours) == Ok &&
           // Only read; not every header of GDI+ says so.
           brush.SetBlend(const_cast<float*>(blend.factors), const_cast<float*>(blend.positions),
                          blend.count) == Ok &&
           graphics.FillRectangle(&brush, all) == Ok;
}

// Not every implementation of GDI+ comes to an end with larger curves, or with none.
bool IsRadius(float radius)
{
    constexpr float largest = 1e4F;     // pixels
    return std::abs(radius) <= largest; // NaN is not
}

Gdiplus::Rect AreaOf(Bitmap& image)
{
    return {0, 0, static_cast<INT>(image.GetWidth()), static_cast<INT>(image.GetHeight())};
}

// Makes the red of the image a mask: 255 inside the rounded rectangle, fading to 0 towards its
// edge.
bool DrawMask(Bitmap& image, float radius, const Blend& blend)
{
    const Gdiplus::Rect all = AreaOf(image);
    Gdiplus::Graphics graphics(&image);
    Gdiplus::GraphicsPath path;
    return graphics.Clear(Color(0x00000000)) == Ok &&
           CreateRoundRect(path, 0, 0, static_cast<float>(all.Width),
                           static_cast<float>(all.Height), radius) == Ok &&
           FillGradient(graphics, all, path, Color(0xFFFF0000), Color(0xFF000000), blend);
}

// For a source whose pixels GDI+ does not lend out.
void MaskPixelByPixel(const LockedPixels& mask, Bitmap& source)
{
    Color colour; // of the pixel before, where one cannot be read
    for (int y = 0; y < mask.Height(); ++y) {
        const std::span row = mask.Row(y);
        for (std::size_t x = 0; x < row.size(); ++x) {
            source.GetPixel(static_cast<INT>(x), y, &colour);
            const std::uint32_t pixel = colour.GetValue();
            MaskRow(row.subspan(x, 1), &pixel);
        }
    }
}

bool MaskPixels(Bitmap& image, Bitmap& source)
{
    const LockedPixels mask(image, LockedPixels::Access::change);
    if (!mask) return false;
    const LockedPixels colours(source, LockedPixels::Access::read);
    if (!colours) {
        MaskPixelByPixel(mask, source);
        return true;
    }
    for (int y = 0; y < mask.Height(); ++y)
        MaskRow(mask.Row(y), colours.Row(y).data());
    return true;
}

} // namespace

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
    if (!IsRadius(radius)) return nullptr;
    Image result = CopyOf(source);
    if (!result || !DrawMask(*result, radius, {blendFactors, blendPositions, count}) ||
        !MaskPixels(*result, *source))
        return nullptr;
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
    if (path.AddRectangle(all) != Ok || !FillGradient(graphics, all, path, Color(0x00000000), edge,
                                                      {blendFactors, blendPositions, count}))
        return nullptr;
    return result.release();
}
