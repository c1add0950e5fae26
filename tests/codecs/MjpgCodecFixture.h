#pragma once

#include <gtest/gtest.h>
#include <test_support/InstalledCodec.h>

#include <windows.h>
#include <vfw.h>

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <vector>

using Bytes = std::vector<std::uint8_t>;

constexpr DWORD mjpg = mmioFOURCC('M', 'J', 'P', 'G');

inline BITMAPINFOHEADER RawFormat(int width, int height, int bits)
{
    BITMAPINFOHEADER format{};
    format.biSize = sizeof format;
    format.biWidth = width;
    format.biHeight = height;
    format.biPlanes = 1;
    format.biBitCount = static_cast<WORD>(bits);
    format.biCompression = BI_RGB;
    return format;
}

inline std::size_t StrideOf(const BITMAPINFOHEADER& format)
{
    return (static_cast<std::size_t>(format.biWidth) * format.biBitCount + 31) / 32 * 4;
}

inline std::size_t RowsOf(const BITMAPINFOHEADER& format)
{
    return static_cast<std::size_t>(std::abs(format.biHeight));
}

// Gives access to pixels by screen coordinates, whatever the direction of the rows. The byte after
// a pixel's colours is 0xA5.
class Picture
{
public:
    explicit Picture(const BITMAPINFOHEADER& pictureFormat)
        : format(pictureFormat), bytes(StrideOf(format) * RowsOf(format), 0xA5)
    {
    }

    std::uint8_t* Pixel(std::size_t x, std::size_t y)
    {
        const std::size_t row = format.biHeight > 0 ? RowsOf(format) - 1 - y : y;
        return bytes.data() + row * StrideOf(format) + x * format.biBitCount / 8;
    }

    template <class Colour>
    void Paint(Colour colour)
    {
        for (std::size_t y = 0; y < RowsOf(format); ++y)
            for (std::size_t x = 0; x < static_cast<std::size_t>(format.biWidth); ++x)
                for (int channel = 0; channel < 3; ++channel)
                    Pixel(x, y)[channel] = static_cast<std::uint8_t>(colour(x, y, channel));
    }

    BITMAPINFOHEADER format;
    Bytes bytes;
};

// Colours so smooth that the codec's loss is small.
inline int Smooth(std::size_t x, std::size_t y, int channel)
{
    const double phase = 0.021 * static_cast<double>(x) + 0.9 * channel;
    return static_cast<int>(128 + 90 * std::sin(phase) * std::cos(0.017 * static_cast<double>(y)));
}

// The similarity of two pictures, in dB.
inline double Psnr(Picture& a, Picture& b)
{
    double sum = 0;
    const auto width = static_cast<std::size_t>(a.format.biWidth);
    for (std::size_t y = 0; y < RowsOf(a.format); ++y)
        for (std::size_t x = 0; x < width; ++x)
            for (int channel = 0; channel < 3; ++channel)
                sum += std::pow(a.Pixel(x, y)[channel] - b.Pixel(x, y)[channel], 2);
    const double mean = sum / static_cast<double>(3 * width * RowsOf(a.format));
    return mean == 0 ? 99.0 : 10 * std::log10(255.0 * 255.0 / mean);
}

// Talks to the installed codec as a recorder does.
class MjpgCodec : public testing::Test
{
protected:
    MjpgCodec() : m_codec(ICOpen(ICTYPE_VIDEO, mjpg, ICMODE_COMPRESS)) {}
    ~MjpgCodec() override
    {
        if (m_codec) ICClose(m_codec);
    }
    void SetUp() override { ASSERT_NE(m_codec, nullptr); }

    LRESULT Send(UINT message, const void* first = nullptr, const void* second = nullptr)
    {
        return ICSendMessage(m_codec, message, reinterpret_cast<DWORD_PTR>(first),
                             reinterpret_cast<DWORD_PTR>(second));
    }

    LRESULT Query(const BITMAPINFOHEADER& input) { return Send(ICM_COMPRESS_QUERY, &input); }

    BITMAPINFOHEADER OutputFor(const BITMAPINFOHEADER& input)
    {
        BITMAPINFOHEADER output{};
        EXPECT_EQ(Send(ICM_COMPRESS_GET_FORMAT, &input, &output), ICERR_OK);
        return output;
    }

    // The compressed frame; empty when the codec fails.
    Bytes Compress(Picture& picture, DWORD quality)
    {
        BITMAPINFOHEADER output = OutputFor(picture.format);
        Bytes data(static_cast<std::size_t>(Send(ICM_COMPRESS_GET_SIZE, &picture.format, &output)));
        EXPECT_EQ(Send(ICM_COMPRESS_BEGIN, &picture.format, &output), ICERR_OK);
        DWORD chunk = 0;
        DWORD flags = 0;
        const DWORD result =
            ICCompress(m_codec, 0, &output, data.data(), &picture.format, picture.bytes.data(),
                       &chunk, &flags, 0, 0, quality, nullptr, nullptr);
        EXPECT_EQ(Send(ICM_COMPRESS_END), ICERR_OK);
        if (result != ICERR_OK) return {};
        EXPECT_EQ(flags, static_cast<DWORD>(AVIIF_KEYFRAME));
        EXPECT_EQ(chunk, mmioFOURCC('d', 'c', 0, 0));
        data.resize(output.biSizeImage);
        return data;
    }

    LRESULT Decompress(const Bytes& data, Picture& picture)
    {
        BITMAPINFOHEADER input =
            OutputFor(RawFormat(picture.format.biWidth, std::abs(picture.format.biHeight), 24));
        input.biSizeImage = static_cast<DWORD>(data.size());
        EXPECT_EQ(Send(ICM_DECOMPRESS_BEGIN, &input, &picture.format), ICERR_OK);
        Bytes copy = data;
        copy.push_back(0); // never null
        const DWORD result =
            ICDecompress(m_codec, 0, &input, copy.data(), &picture.format, picture.bytes.data());
        EXPECT_EQ(Send(ICM_DECOMPRESS_END), ICERR_OK);
        return static_cast<LRESULT>(static_cast<LONG>(result));
    }

    test_support::InstalledCodec m_installed{L"MJPG", L"mjpgcodec.dll"};
    HIC m_codec;
};
