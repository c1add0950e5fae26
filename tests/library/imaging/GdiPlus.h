#pragma once

#include <base/GdiPlusSession.h>
#include <gtest/gtest.h>
#include <Utils_Statics/BitmapFunctions.h>

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <random>
#include <vector>

using Image = std::unique_ptr<Gdiplus::Bitmap>;

class GdiPlusTest : public testing::Test
{
    base::GdiPlusSession m_session;
};

inline const Gdiplus::PixelFormat allFormats[] = {
    PixelFormat1bppIndexed, PixelFormat4bppIndexed,    PixelFormat8bppIndexed,
    PixelFormat16bppRGB555, PixelFormat16bppRGB565,    PixelFormat16bppARGB1555,
    PixelFormat24bppRGB,    PixelFormat32bppRGB,       PixelFormat32bppARGB,
    PixelFormat32bppPARGB,  PixelFormat48bppRGB,       PixelFormat64bppARGB,
    PixelFormat64bppPARGB,  PixelFormat16bppGrayScale,
};

// An image over memory of its own with random content. The rows lie top-down or bottom-up.
class RandomImage
{
public:
    RandomImage(Gdiplus::PixelFormat format, int width, int height, bool bottomUp, unsigned seed)
    {
        const int bits = static_cast<int>(Gdiplus::GetPixelFormatSize(format));
        const int stride = (width * bits + 31) / 32 * 4;
        std::mt19937 random(seed);
        m_memory.resize(static_cast<std::size_t>(stride) * static_cast<std::size_t>(height));
        for (BYTE& cell : m_memory)
            cell = static_cast<BYTE>(random());
        BYTE* const last = m_memory.data() + static_cast<std::ptrdiff_t>(stride) * (height - 1);
        m_image = std::make_unique<Gdiplus::Bitmap>(width, height, bottomUp ? -stride : stride,
                                                    format, bottomUp ? last : m_memory.data());
        EXPECT_EQ(m_image->GetLastStatus(), Gdiplus::Ok);
    }

    Gdiplus::Bitmap& operator*() const { return *m_image; }
    Gdiplus::Bitmap* get() const { return m_image.get(); }

private:
    std::vector<BYTE> m_memory;
    Image m_image;
};

// The pixels by GDI+, row by row; 0 where it gives none.
inline std::vector<std::uint32_t> PixelsOf(Gdiplus::Bitmap& image)
{
    std::vector<std::uint32_t> pixels;
    for (int y = 0; y < static_cast<int>(image.GetHeight()); ++y)
        for (int x = 0; x < static_cast<int>(image.GetWidth()); ++x) {
            Gdiplus::Color colour(0);
            image.GetPixel(x, y, &colour);
            pixels.push_back(colour.GetValue());
        }
    return pixels;
}

// An image of 32 bits a pixel with these pixels.
inline Image ImageOf(int width, int height, const std::vector<std::uint32_t>& pixels)
{
    auto image = std::make_unique<Gdiplus::Bitmap>(width, height, PixelFormat32bppARGB);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            image->SetPixel(x, y, Gdiplus::Color(pixels[static_cast<std::size_t>(y * width + x)]));
    return image;
}
