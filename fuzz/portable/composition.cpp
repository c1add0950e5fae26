// The target composes a frame of planes of any sizes at any places.
#include "recording/CineComposition.h"

#include <fuzz/Input.h>

#include <array>
#include <vector>

namespace {

using namespace utils_statics;

// A number near an edge of the frame, or a far one.
LONG TakePlace(fuzz::Input& input)
{
    const auto shape = input.Take<std::uint8_t>();
    return shape < 250 ? static_cast<LONG>(shape) - 50 : input.Take<std::int32_t>();
}

// A plane's pixels; none for planes that would only take time.
std::vector<std::uint32_t> PixelsOf(SIZE size)
{
    const std::int64_t count = std::int64_t{size.cx} * size.cy;
    return std::vector<std::uint32_t>(count <= 1 << 16 ? static_cast<std::size_t>(count) : 0,
                                      0x01020304);
}

Mask TakeMask(fuzz::Input& input)
{
    const SIZE size{input.Take<std::uint8_t>(), input.Take<std::uint8_t>()};
    const auto stride = static_cast<std::size_t>((size.cx + 15) / 16 * 2);
    std::vector<std::uint8_t> bits(stride * static_cast<std::size_t>(size.cy));
    const auto pattern = input.Take<std::uint8_t>();
    for (std::size_t i = 0; i < bits.size(); ++i)
        bits[i] = static_cast<std::uint8_t>(i % 3 ? pattern : 0 - (pattern & 1));
    return Mask(std::move(bits), size);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    fuzz::Input input(data, size);
    const SIZE frameSize{input.Take<std::uint8_t>(), input.Take<std::uint8_t>()};
    std::vector<std::uint32_t> pixels = PixelsOf(frameSize);
    Layout layout;
    for (RECT& rect : layout)
        rect = {TakePlace(input), TakePlace(input), TakePlace(input), TakePlace(input)};
    const std::array<Mask, 2> masks{TakeMask(input), TakeMask(input)};
    const auto flags = input.Take<std::uint8_t>();

    const SIZE sizes[5] = {PlaneSize(layout[0]), PlaneSize(layout[1]), PlaneSize(layout[2]),
                           StripSize(layout[1]), PlaneSize(layout[3])};
    std::vector<std::uint32_t> images[5];
    Planes planes;
    for (int i = 0; i < 5; ++i) {
        images[i] = PixelsOf(sizes[i]);
        if (!images[i].empty() && (flags >> i & 1) == 0) planes.image[i] = images[i].data();
    }
    for (std::size_t i = 0; i < 2; ++i) {
        planes.mask[i] = &masks[i];
        planes.orientation[i] = {(flags >> 5 & 1) != 0, (flags >> 6 & 1) != 0};
    }
    TurnPlanes(layout, planes);
    Compose({pixels.data(), frameSize}, layout, planes);
    return 0;
}
