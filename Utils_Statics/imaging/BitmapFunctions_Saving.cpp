#include "Utils_Statics/BitmapFunctions.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cwchar>
#include <memory>
#include <new>
#include <utility>

using Gdiplus::EncoderParameter;
using Gdiplus::EncoderParameters;
using Image = std::unique_ptr<Gdiplus::Bitmap>;

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
    Image image = std::make_unique<Gdiplus::Bitmap>(bitmap, nullptr);
    if (image->GetLastStatus() != Gdiplus::Ok) return false;
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
