// Bitmap functions: saving and loading.
#include "Utils_Statics/BitmapFunctions.h"

#include "imaging/ImageFile.h"
#include "text/TextView.h"

#include <base/GdiHandles.h>
#include <qor_utils/StoreNumbers.h>
#include <qor_utils/zelPath.h>

#include <shlwapi.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cwchar>
#include <memory>
#include <new>
#include <string>
#include <string_view>
#include <utility>

using Gdiplus::Bitmap;
using Gdiplus::EncoderParameter;
using Gdiplus::EncoderParameters;
using Image = std::unique_ptr<Bitmap>;
using namespace utils_statics;

namespace {

struct FreeBlock
{
    void operator()(void* block) const { std::free(block); }
};

// The identifiers of the platform's "encoder colour depth" and "encoder quality".
constexpr GUID colourDepth = {
    0x66087055, 0xad66, 0x4c7c, {0x9a, 0x18, 0x38, 0xa2, 0x31, 0x0b, 0x83, 0x37}};
constexpr GUID quality = {
    0x1d5be4b5, 0xfa4a, 0x452d, {0x9c, 0xdd, 0x5d, 0xb3, 0x51, 0x05, 0xe7, 0xeb}};

constexpr int gifFormat = 1;

// Parameter blocks point at these and may be kept as long as their owners like.
constexpr ULONG trueColour = 32;
constexpr ULONG bestQuality = 100;

struct Format
{
    const wchar_t* mimeType;
    const GUID* parameter; // the parameter of record 0; null for none
    const ULONG* value;
};

Format FormatOf(int format)
{
    switch (format) {
    case 0: return {L"image/bmp", nullptr, nullptr};
    case gifFormat: return {L"image/gif", nullptr, nullptr};
    case 3: return {L"image/png", nullptr, nullptr};
    case 4: return {L"image/tiff", &colourDepth, &trueColour};
    default: return {L"image/jpeg", &quality, &bestQuality};
    }
}

// A zeroed block with room for that many records; null when it cannot be allocated.
EncoderParameters* NewBlock(std::int64_t records)
{
    const std::int64_t bytes = static_cast<std::int64_t>(offsetof(EncoderParameters, Parameter)) +
                               records * static_cast<std::int64_t>(sizeof(EncoderParameter));
    if (bytes > PTRDIFF_MAX) return nullptr;
    return static_cast<EncoderParameters*>(std::calloc(1, static_cast<std::size_t>(bytes)));
}

// The image with the 256 colours that a GIF file can hold; null when GDI+ cannot convert it. Some
// implementations of GDI+ do not convert colours when they save: they write a file without a
// picture and report success.
Image WithPalette(Image image)
{
    if (Gdiplus::IsIndexedPixelFormat(image->GetPixelFormat())) return image;
    return Image(image->Clone(0, 0, static_cast<INT>(image->GetWidth()),
                              static_cast<INT>(image->GetHeight()), PixelFormat8bppIndexed));
}

// The image, or null unless GDI+ created it successfully.
Image IfOk(Image image)
{
    return image && image->GetLastStatus() == Gdiplus::Ok ? std::move(image) : nullptr;
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

// Draws the whole of one image over the whole of another. An image without a size is one that GDI+
// cannot tell it of.
bool DrawScaled(Gdiplus::Graphics& onto, SIZE target, Bitmap& image)
{
    const SIZE source = SizeOf(image);
    if (source.cx == 0 || source.cy == 0) return false;
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
bool TurnGrey(HBITMAP bitmap)
{
    DIBSECTION section = {};
    if (GetObjectW(bitmap, sizeof section, &section) != sizeof section ||
        section.dsBm.bmBitsPixel != 32)
        return false;
    GdiFlush();
    // The order of the rows makes no difference.
    Bitmap pixels(static_cast<INT>(section.dsBm.bmWidth), std::abs(section.dsBm.bmHeight),
                  static_cast<INT>(section.dsBm.bmWidthBytes), PixelFormat32bppARGB,
                  static_cast<BYTE*>(section.dsBm.bmBits));
    return pixels.GetLastStatus() == Gdiplus::Ok && GrayScaleBitmap(&pixels, 255);
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

int GetEncoderClsid(const wchar_t* mimeType, CLSID* clsid)
{
    UINT count = 0;
    UINT bytes = 0;
    if (!mimeType || !clsid || Gdiplus::GetImageEncodersSize(&count, &bytes) != Gdiplus::Ok)
        return -1;
    const std::unique_ptr<Gdiplus::ImageCodecInfo, FreeBlock> encoders(
        bytes ? static_cast<Gdiplus::ImageCodecInfo*>(std::malloc(bytes)) : nullptr);
    if (!encoders || Gdiplus::GetImageEncoders(count, bytes, encoders.get()) != Gdiplus::Ok)
        return -1;
    for (UINT i = 0; i < count; ++i)
        if (std::wcscmp(encoders.get()[i].MimeType, mimeType) == 0) {
            *clsid = encoders.get()[i].Clsid;
            return static_cast<int>(i);
        }
    return -1;
}

void GetCompression(int format, EncoderParameters** params, CLSID* clsid, int extra)
{
    const Format chosen = FormatOf(format);
    GetEncoderClsid(chosen.mimeType, clsid);
    if (!params) return;
    *params = nullptr;
    if (extra < 0) return;
    const std::int64_t count = std::int64_t{extra} + (chosen.parameter ? 1 : 0);
    EncoderParameters* const block = NewBlock(count + 1); // deliberate: one more than counted
    if (!block) return;
    block->Count = static_cast<UINT>(count);
    if (chosen.parameter)
        block->Parameter[0] = {*chosen.parameter, 1, Gdiplus::EncoderParameterValueTypeLong,
                               const_cast<ULONG*>(chosen.value)};
    *params = block;
}

bool SaveBitmap(HBITMAP bitmap, int format, const wchar_t* path)
{
    if (!bitmap || !path) return false;
    Image image = IfOk(std::make_unique<Bitmap>(bitmap, nullptr));
    if (!image) return false;
    if (format == gifFormat) image = WithPalette(std::move(image));
    EncoderParameters* params = nullptr;
    CLSID clsid = {};
    GetCompression(format, &params, &clsid, 0);
    const std::unique_ptr<EncoderParameters, FreeBlock> block(params);
    // Deliberate: the block is not passed, so the encoder's own defaults hold.
    return image && image->Save(path, &clsid, nullptr) == Gdiplus::Ok;
}

Gdiplus::ColorPalette* CreateGrayscalePalette()
{
    constexpr std::uint32_t entries = 256;
    constexpr std::size_t bytes =
        offsetof(Gdiplus::ColorPalette, Entries) + entries * sizeof(Gdiplus::ARGB);
    auto* const palette = static_cast<Gdiplus::ColorPalette*>(::operator new(bytes, std::nothrow));
    if (!palette) return nullptr;
    palette->Flags = Gdiplus::PaletteFlagsGrayScale;
    palette->Count = entries;
    for (std::uint32_t i = 0; i < entries; ++i)
        palette->Entries[i] = 0xFF000000 + i * 0x010101;
    return palette;
}

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
    if (grayscale && !TurnGrey(bitmap.get())) return nullptr;
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
