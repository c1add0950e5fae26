#include "Utils_Statics/BitmapFunctions.h"

#include "environment/PathText.h"
#include "imaging/ImageExtent.h"
#include "imaging/ImageStream.h"

#include <base/GdiHandles.h>
#include <qor_utils/StoreNumbers.h>
#include <qor_utils/zelPath.h>

#include <shlwapi.h>

#include <cstdlib>
#include <memory>
#include <new>
#include <string>
#include <string_view>

using Gdiplus::Bitmap;
using Image = std::unique_ptr<Bitmap>;
using namespace utils_statics;

namespace {

// The image, or null unless GDI+ created it successfully.
Image IfOk(Image image)
{
    return image->GetLastStatus() == Gdiplus::Ok ? std::move(image) : nullptr;
}

Image NewImage(SIZE size, Gdiplus::PixelFormat format)
{
    return IsBitmapSize(size.cx, size.cy)
               ? IfOk(std::make_unique<Bitmap>(static_cast<INT>(size.cx), static_cast<INT>(size.cy),
                                               format))
               : nullptr;
}

SIZE SizeOf(Bitmap& image)
{
    return {static_cast<LONG>(image.GetWidth()), static_cast<LONG>(image.GetHeight())};
}

// Draws the whole of one image over the whole of another.
bool DrawScaled(Gdiplus::Graphics& onto, SIZE target, Bitmap& image)
{
    const SIZE source = SizeOf(image);
    const Gdiplus::Rect all(0, 0, static_cast<INT>(target.cx), static_cast<INT>(target.cy));
    return onto.DrawImage(&image, all, 0, 0, static_cast<INT>(source.cx),
                          static_cast<INT>(source.cy), Gdiplus::UnitPixel) == Gdiplus::Ok;
}

// The result is null for a null image.
base::Bitmap DeviceBitmap(const Image& image, Gdiplus::ARGB background)
{
    HBITMAP bitmap = nullptr;
    if (!image || image->GetHBITMAP(Gdiplus::Color(background), &bitmap) != Gdiplus::Ok) return {};
    return base::Bitmap(bitmap);
}

Image ScaledOnto(Bitmap& image, SIZE size, Gdiplus::ARGB background)
{
    Image scaled = NewImage(size, PixelFormat32bppARGB);
    if (!scaled) return nullptr;
    Gdiplus::Graphics graphics(scaled.get());
    Gdiplus::SolidBrush brush{Gdiplus::Color(background)};
    graphics.FillRectangle(&brush, 0, 0, static_cast<INT>(size.cx), static_cast<INT>(size.cy));
    return DrawScaled(graphics, size, image) ? std::move(scaled) : nullptr;
}

Image LoadIconFile(const wchar_t* path)
{
    const base::Icon icon(static_cast<HICON>(LoadImageW(
        nullptr, path, IMAGE_ICON, 0, 0, LR_LOADFROMFILE | LR_VGACOLOR | LR_CREATEDIBSECTION)));
    return icon ? IfOk(Image(Bitmap::FromHICON(icon.get()))) : nullptr;
}

bool IsIconFile(const wchar_t* path)
{
    return CompareStringOrdinal(PathFindExtensionW(path), -1, L".ico", -1, TRUE) == CSTR_EQUAL;
}

Image LoadPictureOrIcon(const wchar_t* path, const SIZE* size, Gdiplus::ARGB background)
{
    if (IsIconFile(path)) return LoadIconFile(path); // deliberate: an icon keeps its own size
    Image picture = Decode(StreamOfFile(path));
    return picture && size ? ScaledOnto(*picture, *size, background) : std::move(picture);
}

// The device bitmaps of GDI+ are sections of 32 bits a pixel, so an image can use their memory as
// its pixels.
void TurnGrey(HBITMAP bitmap)
{
    DIBSECTION section = {};
    if (GetObjectW(bitmap, sizeof section, &section) != sizeof section ||
        section.dsBm.bmBitsPixel != 32)
        return;
    GdiFlush();
    // The order of the rows makes no difference.
    Bitmap pixels(static_cast<INT>(section.dsBm.bmWidth), std::abs(section.dsBm.bmHeight),
                  static_cast<INT>(section.dsBm.bmWidthBytes), PixelFormat32bppARGB,
                  static_cast<BYTE*>(section.dsBm.bmBits));
    GrayScaleBitmap(&pixels, 255);
}

// The result is empty for a resource that does not exist.
std::string_view ResourceBytes(HMODULE module, const wchar_t* name, const wchar_t* type)
{
    const HRSRC resource = FindResourceW(module, name, type);
    const HGLOBAL loaded = resource ? LoadResource(module, resource) : nullptr;
    const void* const bytes = loaded ? LockResource(loaded) : nullptr;
    if (!bytes) return {};
    return {static_cast<const char*>(bytes), SizeofResource(module, resource)};
}

} // namespace

Bitmap* LoadImageFromIconStore(const wchar_t* name)
try {
    const std::wstring path = zelPath::getPath(qor_utils::imagesStore, OrEmpty(name));
    if (Image image = Decode(StreamOfFile(path.c_str()))) return image.release();
    return Bitmap::FromHICON(LoadIconW(nullptr, IDI_APPLICATION));
} catch (const std::bad_alloc&) {
    return nullptr;
}

bool LoadImageFromResource(Bitmap** out, HMODULE module, const wchar_t* name, const wchar_t* type)
{
    if (!out) return false;
    *out = nullptr;
    *out = Decode(StreamOfBytes(ResourceBytes(module, name, type))).release();
    return *out != nullptr;
}

CBitmap* BitmapFromFile(const wchar_t* path, const SIZE* size, bool grayscale,
                        Gdiplus::ARGB background)
try {
    if (!path || !PathFileExistsW(path)) return nullptr;
    base::Bitmap bitmap = DeviceBitmap(LoadPictureOrIcon(path, size, background), background);
    if (!bitmap) return nullptr;
    if (grayscale) TurnGrey(bitmap.get());
    auto result = std::make_unique<CBitmap>();
    if (!result->Attach(bitmap.get())) return nullptr;
    bitmap.release();
    return result.release();
} catch (const std::bad_alloc&) {
    return nullptr;
}

HBITMAP ResizeImage(const wchar_t* path, SIZE* size)
{
    if (!path) return nullptr;
    const Image image = Decode(StreamOfFile(path));
    if (!image) return nullptr;
    SIZE target = SizeOf(*image);
    if (size && size->cx != -1) target.cx = size->cx;
    if (size && size->cy != -1) target.cy = size->cy;
    const Image scaled = NewImage(target, PixelFormat24bppRGB);
    if (!scaled) return nullptr;
    Gdiplus::Graphics graphics(scaled.get());
    if (!DrawScaled(graphics, target, *image)) return nullptr;
    return DeviceBitmap(scaled, 0xFF000000).release();
}
