#include "JpegImage.h"

#include <base/Owner.h>

#include <turbojpeg.h>

#include <climits>

namespace mjpg {

namespace {

struct JpegInstanceTraits
{
    using Handle = tjhandle;
    static tjhandle Empty() noexcept { return nullptr; }
    static void Release(tjhandle instance) noexcept { tjDestroy(instance); }
};
// The library reports every failure by a result; none of its long jumps leaves it.
using Instance = base::Owner<JpegInstanceTraits>;

int PixelFormatOf(const FrameShape& shape)
{
    return shape.bytesPerPixel == 4 ? TJPF_BGRX : TJPF_BGR;
}

int DirectionOf(const FrameShape& shape)
{
    return shape.bottomUp ? TJFLAG_BOTTOMUP : 0;
}

bool WentOn(const Instance& decoder, int result)
{
    return result == 0 || tjGetErrorCode(decoder.get()) == TJERR_WARNING;
}

bool HasSize(const Instance& decoder, const std::uint8_t* data, unsigned long size,
             const FrameShape& shape)
{
    int width = 0;
    int height = 0;
    int subsampling = 0;
    int colours = 0;
    const int result =
        tjDecompressHeader3(decoder.get(), data, size, &width, &height, &subsampling, &colours);
    return WentOn(decoder, result) && width == shape.width && height == shape.height;
}

} // namespace

std::size_t JpegBound(int width, int height)
{
    return tjBufSize(width, height, TJSAMP_420);
}

std::size_t EncodeJpeg(const std::uint8_t* pixels, const FrameShape& shape, int quality,
                       std::uint8_t* output)
{
    const Instance encoder(tjInitCompress());
    unsigned long size = 0;
    // Without the accurate transform, lower qualities would use a coarser one.
    const int flags = DirectionOf(shape) | TJFLAG_NOREALLOC | TJFLAG_ACCURATEDCT;
    const int result =
        tjCompress2(encoder.get(), pixels, shape.width, shape.stride, shape.height,
                    PixelFormatOf(shape), &output, &size, TJSAMP_420, (quality + 50) / 100, flags);
    return result == 0 ? size : 0;
}

bool DecodeJpeg(const std::uint8_t* data, std::size_t size, std::uint8_t* pixels,
                const FrameShape& shape)
{
    if (size > ULONG_MAX) return false;
    const auto bytes = static_cast<unsigned long>(size);
    const Instance decoder(tjInitDecompress());
    if (!decoder || !HasSize(decoder, data, bytes, shape)) return false;
    // Without a limit, a few bytes can demand millions of scans over the whole image. No camera
    // does that.
    const int flags = DirectionOf(shape) | TJFLAG_LIMITSCANS;
    return WentOn(decoder, tjDecompress2(decoder.get(), data, bytes, pixels, shape.width,
                                         shape.stride, shape.height, PixelFormatOf(shape), flags));
}

} // namespace mjpg
