#pragma once

#include <Utils_Statics/export.h>

#include <afxwin.h>

#include <objidl.h>

#include <algorithm>

namespace Gdiplus {
// The platform's own GDI+ headers call these without naming where they come from.
using std::max;
using std::min;
} // namespace Gdiplus

#include <gdiplus.h>

// Loading, saving, converting and decorating images, exported under exactly these names.
//
// 1. The application has started GDI+ (GdiplusStartup) and shuts it down only after the last object
//    of these functions is gone.
// 2. Every object that is returned is new and belongs to the caller. GDI+ objects, a CBitmap and
//    the palette are deleted with delete, an HBITMAP with DeleteObject, an encoder block with free.
// 3. A failure gives null, false or -1. Null pointers, missing, damaged or enormous files and sizes
//    that no bitmap can have are such failures. GDI+ status codes are not passed on.
// 4. Colours are ARGB values of GDI+ (0xAARRGGBB), unless the type is COLORREF (0x00BBGGRR).
// 5. Any thread may call these functions; one object belongs to one thread at a time. Nothing is
//    thrown: lack of memory is a failure like any other.
extern "C" {

// ---- Saving

/// The index of the first installed image encoder whose MIME type is exactly `mimeType`, such as
/// "image/png"; its identifier is copied to `clsid`. -1, and `clsid` unchanged, when there is none.
UTILS_STATICS_API int GetEncoderClsid(const wchar_t* mimeType, CLSID* clsid);

/// Chooses the encoder of a format and makes its parameter block.
///
///     format     encoder       records filled in                     Count
///     0          image/bmp     none                                  extra
///     1          image/gif     none                                  extra
///     3          image/png     none                                  extra
///     4          image/tiff    record 0: colour depth 32             extra + 1
///     any other  image/jpeg    record 0: quality 100                 extra + 1
///
/// `*params` becomes a block from malloc with room for one record more than Count; what is not
/// filled in is zero. Record 0 points at a value of the library, which stays valid and must not be
/// changed. `*params` is null when `extra` is negative or too large for a block.
UTILS_STATICS_API void GetCompression(int format, Gdiplus::EncoderParameters** params, CLSID* clsid,
                                      int extra);

/// Saves a device bitmap to a file, which is replaced, in a format of GetCompression. The encoder
/// works with its own defaults: the block of GetCompression is deliberately not passed to it.
UTILS_STATICS_API bool SaveBitmap(HBITMAP bitmap, int format, const wchar_t* path);

/// A palette of 256 opaque greys, black first, with the flag PaletteFlagsGrayScale. Null when
/// memory is short.
UTILS_STATICS_API Gdiplus::ColorPalette* CreateGrayscalePalette();

// ---- Loading

/// The image with this name in the application's icon store, such as "status/network.png". When it
/// cannot be loaded, the system's standard application icon is returned instead.
UTILS_STATICS_API Gdiplus::Bitmap* LoadImageFromIconStore(const wchar_t* name);

/// Sets `*out` to the image in a resource of `module`: a whole file of any image format. False, and
/// `*out` null, when there is no such resource or it is no image.
UTILS_STATICS_API bool LoadImageFromResource(Gdiplus::Bitmap** out, HMODULE module,
                                             const wchar_t* name, const wchar_t* type);

/// The picture or icon in a file as a device bitmap of 32 bits a pixel, on `background` where it is
/// transparent. A picture is scaled to fill `*size`; without a size it keeps its own. A file whose
/// extension is ".ico", in upper or lower case, is an icon and always keeps its size. With
/// `grayscale` the result is turned grey as GrayScaleBitmap(result, 255) does it.
UTILS_STATICS_API CBitmap* BitmapFromFile(const wchar_t* path, const SIZE* size = nullptr,
                                          bool grayscale = false,
                                          Gdiplus::ARGB background = 0xFF000000);

/// The image in a file, scaled to `*size`, as a device bitmap on black. A width or height of -1
/// keeps the image's own; a null `size` keeps both.
UTILS_STATICS_API HBITMAP ResizeImage(const wchar_t* path, SIZE* size);

// ---- Changing pixels

/// Turns every pixel to its grey, G * 0.59 + R * 0.3 + B * 0.11 cut to a whole number. An `alpha`
/// of -1 keeps the alpha of each pixel; any other sets it to `alpha & 0xFF`. A pixel stays as it is
/// when the bitmap's format cannot store the new one. Only a null bitmap gives false.
UTILS_STATICS_API bool GrayScaleBitmap(Gdiplus::Bitmap* bitmap, int alpha);

/// Turns a device bitmap of 24 or 32 bits a pixel to grey for a button; false for any other. The
/// colour of the top right pixel is the key. Pixels of that colour become (`alpha`, `alpha`,
/// `alpha`). The others become their grey, darkened in proportion to `alpha` (255 keeps it). With
/// 32 bits a pixel, every pixel's fourth byte becomes `alpha`. The bitmap must not be selected into
/// a device context.
UTILS_STATICS_API bool GrayScale(HBITMAP bitmap, unsigned char alpha);

/// Blends pixels with the background. Each fourth byte becomes `alpha`. Each colour byte becomes
///
///     (pixel * alpha + background * (255 - alpha)) / 255
///
/// cut to a whole number.
///
/// `bits` are the pixels: four bytes each, blue first, rows without padding. Only the width and
/// height are read from `bitmap`. The background is `backgroundBits`, pixels of the same kind and
/// number; when that is null it is the colour `background`. False without bits or bitmap.
UTILS_STATICS_API bool PreMultiplyRGBChannels(HBITMAP bitmap, unsigned char* bits,
                                              unsigned char alpha, COLORREF background,
                                              DWORD* backgroundBits);

// ---- Frames and rounded corners

/// Adds the outline of a rounded rectangle to `path`: four lines and four quarter circles,
/// clockwise from the upper edge. Deliberately, the upper and the right line end two radii before a
/// corner, and the lower and the left line begin two radii after one; GDI+ joins them to the arcs.
/// The result is the status of the last step.
UTILS_STATICS_API Gdiplus::Status CreateRoundRect(Gdiplus::GraphicsPath& path, float x, float y,
                                                  float width, float height, float radius);

/// A copy of `source` with 32 bits a pixel. Its alpha is 255 inside and fades to 0 towards the edge
/// of a rounded rectangle as large as the image, with corners of `radius` pixels. The alpha of
/// `source` is dropped.
///
/// The blend describes the fade by `count` pairs of a factor and its position, both 0 to 1, as GDI+
/// takes them for a path gradient. Position 0 (the first) is the edge, 1 (the last) the middle. A
/// factor of 0 is transparent. When GDI+ refuses the blend, for example because its last position
/// is not 1, the fade is even. A radius beyond 10,000 counts as 10,000, and NaN as 0. Null only
/// when the source is null, has failed or cannot be copied.
UTILS_STATICS_API Gdiplus::Bitmap* CreateRoundedBitmap(Gdiplus::Bitmap* source, float radius,
                                                       const float* blendFactors,
                                                       const float* blendPositions, int count);

/// A copy of `source` with 32 bits a pixel and a frame painted over it. The frame is opaque
/// `border` at the edge and fades to nothing towards the middle. The blend is given as for
/// CreateRoundedBitmap, but a factor of 0 is the border's colour and 1 is transparent. Null in the
/// same cases.
UTILS_STATICS_API Gdiplus::Bitmap* CreateBorderedBitmap(Gdiplus::Bitmap* source,
                                                        const float* blendFactors,
                                                        const float* blendPositions, int count,
                                                        COLORREF border);
}
