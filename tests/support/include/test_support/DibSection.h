#pragma once

#include <base/GdiHandles.h>

#include <cstdint>
#include <vector>

namespace test_support {

// A bitmap whose memory the test sees. Pixels are passed and returned top row first, as 0xAARRGGBB
// (0x00RRGGBB with 24 bits a pixel).
class DibSection
{
public:
    enum Order
    {
        topDown,
        bottomUp,
    };

    DibSection(int width, int height, int bitsPerPixel, Order order)
        : m_width(width), m_height(height), m_depth(bitsPerPixel), m_bytes(bitsPerPixel / 8),
          m_order(order), m_stride((width * bitsPerPixel + 31) / 32 * 4)
    {
        struct
        {
            BITMAPINFOHEADER header;
            RGBQUAD colours[256];
        } info = {};
        info.header.biSize = sizeof info.header;
        info.header.biWidth = width;
        info.header.biHeight = order == topDown ? -height : height;
        info.header.biPlanes = 1;
        info.header.biBitCount = static_cast<WORD>(bitsPerPixel);
        void* bits = nullptr;
        m_bitmap.reset(CreateDIBSection(nullptr, reinterpret_cast<BITMAPINFO*>(&info),
                                        DIB_RGB_COLORS, &bits, nullptr, 0));
        m_bits = static_cast<std::uint8_t*>(bits);
    }

    HBITMAP get() const { return m_bitmap.get(); }

    // Sets the palette of a bitmap of up to 8 bits a pixel, which is all black without it.
    void SetColours(const std::vector<RGBQUAD>& colours) const
    {
        const base::MemoryContext context(CreateCompatibleDC(nullptr));
        const base::Selection selected(context.get(), m_bitmap.get());
        SetDIBColorTable(context.get(), 0, static_cast<UINT>(colours.size()), colours.data());
    }
    // Sets the pixels of such a bitmap to the numbers of their colours, as far as there are bits
    // for them.
    void SetNumbers(const std::vector<std::uint32_t>& numbers) const
    {
        for (int y = 0; y < m_height; ++y)
            for (int x = 0; x < m_width; ++x)
                SetNumber(x, y, numbers[static_cast<std::size_t>(y * m_width + x)]);
    }

    std::uint8_t* bits() const { return m_bits; }

    std::vector<std::uint32_t> Pixels() const
    {
        std::vector<std::uint32_t> pixels;
        for (int y = 0; y < m_height; ++y)
            for (int x = 0; x < m_width; ++x)
                pixels.push_back(PixelAt(x, y));
        return pixels;
    }

    void SetPixels(const std::vector<std::uint32_t>& pixels) const
    {
        for (int y = 0; y < m_height; ++y)
            for (int x = 0; x < m_width; ++x)
                for (int part = 0; part < m_bytes; ++part)
                    Place(x, y)[part] = static_cast<std::uint8_t>(
                        pixels[static_cast<std::size_t>(y * m_width + x)] >> 8 * part);
    }

private:
    void SetNumber(int x, int y, std::uint32_t number) const
    {
        const std::uint32_t mask = (1u << m_depth) - 1;
        const int shift = 8 - m_depth - x * m_depth % 8;
        std::uint8_t& cell = Row(y)[x * m_depth / 8];
        cell = static_cast<std::uint8_t>((cell & ~(mask << shift)) | (number & mask) << shift);
    }
    std::uint8_t* Row(int y) const
    {
        const int row = m_order == topDown ? y : m_height - 1 - y;
        return m_bits + static_cast<std::ptrdiff_t>(row) * m_stride;
    }
    std::uint8_t* Place(int x, int y) const { return Row(y) + x * m_bytes; }
    std::uint32_t PixelAt(int x, int y) const
    {
        std::uint32_t pixel = 0;
        for (int part = 0; part < m_bytes; ++part)
            pixel |= std::uint32_t{Place(x, y)[part]} << 8 * part;
        return pixel;
    }

    int m_width;
    int m_height;
    int m_depth; // bits a pixel
    int m_bytes; // bytes a pixel; 0 for less than 8 bits
    Order m_order;
    int m_stride;
    base::Bitmap m_bitmap;
    std::uint8_t* m_bits = nullptr;
};

} // namespace test_support
