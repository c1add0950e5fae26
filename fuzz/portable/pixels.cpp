// The target compares each operation on rows of pixels that is made with vectors with its plain
// form. The first byte chooses the operation; two numbers and the pixels follow.
#include "imaging/PixelKernels.h"

#include <fuzz/Input.h>
#include <fuzz/Require.h>

#include <vector>

namespace {

using namespace utils_statics;
using Pixels = std::vector<std::uint32_t>;

std::uint32_t Part(std::uint32_t pixel, int shift)
{
    return pixel >> shift & 0xFF;
}

std::uint32_t Grey(std::uint32_t pixel)
{
    const double sum = static_cast<int>(Part(pixel, 8)) * 0.59 +
                       static_cast<int>(Part(pixel, 16)) * 0.3 +
                       static_cast<int>(Part(pixel, 0)) * 0.11;
    return static_cast<std::uint32_t>(sum) * 0x010101;
}

std::uint32_t Blended(std::uint32_t pixel, std::uint32_t background, std::uint32_t alpha)
{
    std::uint32_t result = alpha << 24;
    for (int shift = 0; shift < 24; shift += 8)
        result |= (Part(pixel, shift) * alpha + Part(background, shift) * (255 - alpha)) / 255
                  << shift;
    return result;
}

Pixels TakePixels(fuzz::Input& input)
{
    const std::string_view bytes = input.Rest();
    Pixels pixels(bytes.size() / sizeof(std::uint32_t));
    if (!pixels.empty())
        std::memcpy(pixels.data(), bytes.data(), pixels.size() * sizeof(std::uint32_t));
    return pixels;
}

void CheckGrey(Pixels pixels, std::uint32_t number)
{
    const int alpha = number % 2 ? -1 : static_cast<int>(number >> 1);
    const Pixels before = pixels;
    GreyRow(pixels, alpha);
    for (std::size_t i = 0; i < pixels.size(); ++i) {
        const std::uint32_t top = alpha == -1 ? Part(before[i], 24) : alpha & 0xFF;
        fuzz::Require(pixels[i] == (Grey(before[i]) | top << 24), "a grey is that of its colour");
    }
}

void CheckBlend(Pixels pixels, std::uint8_t alpha, std::uint32_t background)
{
    const Pixels before = pixels;
    BlendRow(pixels, alpha, background);
    for (std::size_t i = 0; i < pixels.size(); ++i)
        fuzz::Require(pixels[i] == Blended(before[i], background, alpha), "one colour is blended");
}

void CheckBlendRows(Pixels pixels, std::uint8_t alpha)
{
    const Pixels before = pixels;
    const Pixels background(before.rbegin(), before.rend());
    BlendRow(pixels, alpha, background.data());
    for (std::size_t i = 0; i < pixels.size(); ++i)
        fuzz::Require(pixels[i] == Blended(before[i], background[i], alpha), "rows are blended");
}

void CheckMask(Pixels pixels)
{
    const Pixels before = pixels;
    const Pixels source(before.rbegin(), before.rend());
    MaskRow(pixels, source.data());
    for (std::size_t i = 0; i < pixels.size(); ++i)
        fuzz::Require(pixels[i] == ((source[i] & 0xFFFFFF) | Part(before[i], 16) << 24),
                      "the mask's red becomes the alpha");
}

// Rows of three and of four bytes a pixel give the same colours.
void CheckKeyed(Pixels pixels, const GreyWithKey& grey)
{
    std::vector<std::uint8_t> narrow;
    for (const std::uint32_t pixel : pixels)
        for (int shift = 0; shift < 24; shift += 8)
            narrow.push_back(static_cast<std::uint8_t>(Part(pixel, shift)));
    GreyKeyedRow(pixels, grey);
    GreyKeyedRow24(narrow, grey);
    for (std::size_t i = 0; i < narrow.size(); ++i)
        fuzz::Require(narrow[i] == Part(pixels[i / 3], static_cast<int>(i % 3) * 8),
                      "both widths have the same grey");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    fuzz::Input input(data, size);
    const auto operation = input.Take<std::uint8_t>();
    const auto alpha = input.Take<std::uint8_t>();
    const auto number = input.Take<std::uint32_t>();
    const Pixels pixels = TakePixels(input);
    switch (operation % 5) {
    case 0: CheckGrey(pixels, number); break;
    case 1: CheckBlend(pixels, alpha, number); break;
    case 2: CheckBlendRows(pixels, alpha); break;
    case 3: CheckMask(pixels); break;
    default: CheckKeyed(pixels, {number & 0xFFFFFF, alpha}); break;
    }
    return 0;
}
