#include <test_support/InstalledCodec.h>
#include <test_support/ChildTest.h>

#include <gtest/gtest.h>

#include <windows.h>
#include <vfw.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <fstream>
#include <random>
#include <vector>

namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr DWORD mjpg = mmioFOURCC('M', 'J', 'P', 'G');

BITMAPINFOHEADER rawFormat(int width, int height, int bits)
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

std::size_t strideOf(const BITMAPINFOHEADER& format)
{
    return (static_cast<std::size_t>(format.biWidth) * format.biBitCount + 31) / 32 * 4;
}

std::size_t rowsOf(const BITMAPINFOHEADER& format)
{
    return static_cast<std::size_t>(std::abs(format.biHeight));
}

// Pixels by screen coordinates, whatever the direction of the rows. The byte after a pixel's colours is 0xA5.
class Picture
{
public:
    explicit Picture(const BITMAPINFOHEADER& pictureFormat)
        : format(pictureFormat), bytes(strideOf(format) * rowsOf(format), 0xA5)
    {
    }

    std::uint8_t* pixel(std::size_t x, std::size_t y)
    {
        const std::size_t row = format.biHeight > 0 ? rowsOf(format) - 1 - y : y;
        return bytes.data() + row * strideOf(format) + x * format.biBitCount / 8;
    }

    template <class Colour>
    void paint(Colour colour)
    {
        for (std::size_t y = 0; y < rowsOf(format); ++y)
            for (std::size_t x = 0; x < static_cast<std::size_t>(format.biWidth); ++x)
                for (int channel = 0; channel < 3; ++channel)
                    pixel(x, y)[channel] = static_cast<std::uint8_t>(colour(x, y, channel));
    }

    BITMAPINFOHEADER format;
    Bytes bytes;
};

// Smooth enough that what the codec loses is small.
int smooth(std::size_t x, std::size_t y, int channel)
{
    const double phase = 0.021 * static_cast<double>(x) + 0.9 * channel;
    return static_cast<int>(128 + 90 * std::sin(phase) * std::cos(0.017 * static_cast<double>(y)));
}

double psnr(Picture& a, Picture& b)
{
    double sum = 0;
    const auto width = static_cast<std::size_t>(a.format.biWidth);
    for (std::size_t y = 0; y < rowsOf(a.format); ++y)
        for (std::size_t x = 0; x < width; ++x)
            for (int channel = 0; channel < 3; ++channel)
                sum += std::pow(a.pixel(x, y)[channel] - b.pixel(x, y)[channel], 2);
    const double mean = sum / static_cast<double>(3 * width * rowsOf(a.format));
    return mean == 0 ? 99.0 : 10 * std::log10(255.0 * 255.0 / mean);
}

class MjpgCodec : public testing::Test
{
protected:
    MjpgCodec() : codec(ICOpen(ICTYPE_VIDEO, mjpg, ICMODE_COMPRESS)) {}
    ~MjpgCodec() override
    {
        if (codec) ICClose(codec);
    }
    void SetUp() override { ASSERT_NE(codec, nullptr); }

    LRESULT send(UINT message, const void* first = nullptr, const void* second = nullptr)
    {
        return ICSendMessage(codec, message, reinterpret_cast<DWORD_PTR>(first), reinterpret_cast<DWORD_PTR>(second));
    }

    LRESULT query(const BITMAPINFOHEADER& input) { return send(ICM_COMPRESS_QUERY, &input); }

    BITMAPINFOHEADER outputFor(const BITMAPINFOHEADER& input)
    {
        BITMAPINFOHEADER output{};
        EXPECT_EQ(send(ICM_COMPRESS_GET_FORMAT, &input, &output), ICERR_OK);
        return output;
    }

    // The compressed frame; empty when the codec fails.
    Bytes compress(Picture& picture, DWORD quality)
    {
        BITMAPINFOHEADER output = outputFor(picture.format);
        Bytes data(static_cast<std::size_t>(send(ICM_COMPRESS_GET_SIZE, &picture.format, &output)));
        EXPECT_EQ(send(ICM_COMPRESS_BEGIN, &picture.format, &output), ICERR_OK);
        DWORD chunk = 0;
        DWORD flags = 0;
        const DWORD result = ICCompress(codec, 0, &output, data.data(), &picture.format, picture.bytes.data(), &chunk,
                                        &flags, 0, 0, quality, nullptr, nullptr);
        EXPECT_EQ(send(ICM_COMPRESS_END), ICERR_OK);
        if (result != ICERR_OK) return {};
        EXPECT_EQ(flags, static_cast<DWORD>(AVIIF_KEYFRAME));
        EXPECT_EQ(chunk, mmioFOURCC('d', 'c', 0, 0));
        data.resize(output.biSizeImage);
        return data;
    }

    LRESULT decompress(const Bytes& data, Picture& picture)
    {
        BITMAPINFOHEADER input = outputFor(rawFormat(picture.format.biWidth, std::abs(picture.format.biHeight), 24));
        input.biSizeImage = static_cast<DWORD>(data.size());
        EXPECT_EQ(send(ICM_DECOMPRESS_BEGIN, &input, &picture.format), ICERR_OK);
        Bytes copy = data;
        copy.push_back(0); // never null
        const DWORD result = ICDecompress(codec, 0, &input, copy.data(), &picture.format, picture.bytes.data());
        EXPECT_EQ(send(ICM_DECOMPRESS_END), ICERR_OK);
        return static_cast<LRESULT>(static_cast<LONG>(result));
    }

    test_support::InstalledCodec installed{L"MJPG", L"mjpgcodec.dll"};
    HIC codec;
};

} // namespace

TEST_F(MjpgCodec, IsListedWithItsShortName)
{
    bool found = false;
    ICINFO info{};
    info.dwSize = sizeof info;
    for (DWORD i = 0; ICInfo(ICTYPE_VIDEO, i, &info); ++i)
        found = found || info.fccHandler == mjpg;
    EXPECT_TRUE(found);
    ASSERT_NE(ICGetInfo(codec, &info, sizeof info), 0);
    EXPECT_STREQ(info.szName, L"MJPG");
    EXPECT_EQ(info.fccType, static_cast<DWORD>(ICTYPE_VIDEO));
    EXPECT_EQ(info.fccHandler, mjpg);
    EXPECT_EQ(info.dwFlags, static_cast<DWORD>(VIDCF_QUALITY));
}

TEST_F(MjpgCodec, InformationOfTheWrongSizeIsRefused)
{
    ICINFO info{};
    EXPECT_EQ(ICSendMessage(codec, ICM_GETINFO, reinterpret_cast<DWORD_PTR>(&info), sizeof info - 1), 0);
    EXPECT_EQ(send(ICM_GETINFO), 0);
}

TEST_F(MjpgCodec, Takes32And24BitFramesOfAnyDirectionOnly)
{
    EXPECT_EQ(query(rawFormat(1024, 768, 32)), ICERR_OK);
    EXPECT_EQ(query(rawFormat(1023, 767, 24)), ICERR_OK);
    EXPECT_EQ(query(rawFormat(8, -8, 32)), ICERR_OK);
    for (const int bits : {0, 1, 4, 8, 16, 48})
        EXPECT_EQ(query(rawFormat(8, 8, bits)), ICERR_BADFORMAT) << bits;
    BITMAPINFOHEADER other = rawFormat(8, 8, 32);
    other.biCompression = BI_BITFIELDS;
    EXPECT_EQ(query(other), ICERR_BADFORMAT);
}

TEST_F(MjpgCodec, ImpossibleSizesAreRefused)
{
    const LONG sizes[][2] = {{0, 8}, {8, 0}, {-8, 8}, {LONG_MIN, 8}, {8, LONG_MIN}, {LONG_MAX, LONG_MAX}, {20000, 8}};
    for (const auto& size : sizes) {
        const BITMAPINFOHEADER format = rawFormat(size[0], size[1], 32);
        EXPECT_EQ(query(format), ICERR_BADFORMAT) << size[0] << " x " << size[1];
        BITMAPINFOHEADER output{};
        EXPECT_EQ(send(ICM_COMPRESS_GET_FORMAT, &format, &output), ICERR_BADFORMAT);
        EXPECT_EQ(send(ICM_COMPRESS_GET_SIZE, &format, &output), 0);
    }
    EXPECT_EQ(send(ICM_COMPRESS_QUERY), ICERR_BADFORMAT);
}

TEST_F(MjpgCodec, OutputHasTheFramesSizeAndTheCodecsCode)
{
    const BITMAPINFOHEADER input = rawFormat(100, -60, 32);
    EXPECT_EQ(send(ICM_COMPRESS_GET_FORMAT, &input), static_cast<LRESULT>(sizeof(BITMAPINFOHEADER)));
    const BITMAPINFOHEADER output = outputFor(input);
    EXPECT_EQ(output.biWidth, 100);
    EXPECT_EQ(output.biHeight, 60);
    EXPECT_EQ(output.biCompression, mjpg);
    EXPECT_EQ(send(ICM_COMPRESS_QUERY, &input, &output), ICERR_OK);
    BITMAPINFOHEADER other = output;
    other.biWidth = 99;
    EXPECT_EQ(send(ICM_COMPRESS_QUERY, &input, &other), ICERR_BADFORMAT);
    EXPECT_EQ(send(ICM_COMPRESS_BEGIN, &input, &other), ICERR_BADFORMAT);
}

TEST_F(MjpgCodec, DecompressionIsAskedForLikeCompression)
{
    const BITMAPINFOHEADER input = outputFor(rawFormat(50, 40, 24));
    BITMAPINFOHEADER output{};
    EXPECT_EQ(send(ICM_DECOMPRESS_GET_FORMAT, &input), static_cast<LRESULT>(sizeof(BITMAPINFOHEADER)));
    ASSERT_EQ(send(ICM_DECOMPRESS_GET_FORMAT, &input, &output), ICERR_OK);
    EXPECT_EQ(output.biBitCount, 24);
    EXPECT_EQ(output.biSizeImage, 152u * 40u);
    EXPECT_EQ(send(ICM_DECOMPRESS_QUERY, &input, &output), ICERR_OK);
    EXPECT_EQ(send(ICM_DECOMPRESS_QUERY, &output), ICERR_BADFORMAT);
    output.biBitCount = 16;
    EXPECT_EQ(send(ICM_DECOMPRESS_QUERY, &input, &output), ICERR_BADFORMAT);
}

TEST_F(MjpgCodec, QualityIsKeptWithinItsRange)
{
    DWORD quality = 0;
    ASSERT_EQ(send(ICM_GETDEFAULTQUALITY, &quality), ICERR_OK);
    EXPECT_EQ(quality, 7500u);
    for (const auto& [set, expected] :
         {std::pair<DWORD, DWORD>{0, 0}, {123, 123}, {10001, 10000}, {0xFFFFFFFF, 7500}}) {
        EXPECT_EQ(send(ICM_SETQUALITY, &set), ICERR_OK);
        EXPECT_EQ(send(ICM_GETQUALITY, &quality), ICERR_OK);
        EXPECT_EQ(quality, expected);
    }
    EXPECT_EQ(send(ICM_SETQUALITY), ICERR_BADPARAM);
    EXPECT_EQ(send(ICM_GETQUALITY), ICERR_BADPARAM);
}

TEST_F(MjpgCodec, StateCarriesTheQualityToAnotherInstance)
{
    const auto size = static_cast<std::size_t>(send(ICM_GETSTATE));
    ASSERT_EQ(size, 8u);
    Bytes state(size);
    const DWORD quality = 4321;
    send(ICM_SETQUALITY, &quality);
    ASSERT_EQ(ICSendMessage(codec, ICM_GETSTATE, reinterpret_cast<DWORD_PTR>(state.data()), size), ICERR_OK);

    HIC other = ICOpen(ICTYPE_VIDEO, mjpg, ICMODE_COMPRESS);
    DWORD taken = 0;
    EXPECT_EQ(ICSendMessage(other, ICM_SETSTATE, reinterpret_cast<DWORD_PTR>(state.data()), size),
              static_cast<LRESULT>(size));
    ICSendMessage(other, ICM_GETQUALITY, reinterpret_cast<DWORD_PTR>(&taken), 0);
    EXPECT_EQ(taken, 4321u);
    EXPECT_EQ(ICSendMessage(other, ICM_SETSTATE, 0, 0), 0);
    ICSendMessage(other, ICM_GETQUALITY, reinterpret_cast<DWORD_PTR>(&taken), 0);
    EXPECT_EQ(taken, 7500u);
    ICClose(other);
}

TEST_F(MjpgCodec, ForeignAndShortStatesChangeNothing)
{
    const auto set = [&](const Bytes& state, std::size_t size) {
        return ICSendMessage(codec, ICM_SETSTATE, reinterpret_cast<DWORD_PTR>(state.data()), size);
    };
    EXPECT_EQ(set(Bytes(8, 0xFF), 8), 0);
    EXPECT_EQ(set(Bytes(8, 0), 4), 0);
    Bytes room(4);
    EXPECT_EQ(ICSendMessage(codec, ICM_GETSTATE, reinterpret_cast<DWORD_PTR>(room.data()), 4), ICERR_BADSIZE);
    DWORD quality = 0;
    send(ICM_GETQUALITY, &quality);
    EXPECT_EQ(quality, 7500u);
}

TEST_F(MjpgCodec, UnknownMessagesAreUnsupported)
{
    EXPECT_EQ(send(ICM_USER + 0x700), ICERR_UNSUPPORTED);
    EXPECT_EQ(send(ICM_DECOMPRESS_GET_PALETTE), ICERR_UNSUPPORTED);
    EXPECT_EQ(send(ICM_DRAW_BEGIN), ICERR_UNSUPPORTED);
    EXPECT_EQ(ICSendMessage(codec, ICM_CONFIGURE, static_cast<DWORD_PTR>(-1), ICMF_CONFIGURE_QUERY), ICERR_UNSUPPORTED);
    EXPECT_EQ(ICSendMessage(codec, ICM_ABOUT, static_cast<DWORD_PTR>(-1), ICMF_ABOUT_QUERY), ICERR_UNSUPPORTED);
}

TEST_F(MjpgCodec, EntryPointIsUndecoratedAndOpensVideoOnly)
{
    HMODULE dll = LoadLibraryW(installed.path().c_str());
    ASSERT_NE(dll, nullptr);
    using Entry = LRESULT(CALLBACK*)(DWORD_PTR, HDRVR, UINT, LPARAM, LPARAM);
    const auto entry = reinterpret_cast<Entry>(reinterpret_cast<void*>(GetProcAddress(dll, "DriverProc")));
    ASSERT_NE(entry, nullptr);
    ICOPEN open{};
    open.dwSize = sizeof open;
    open.fccType = mmioFOURCC('a', 'u', 'd', 'c');
    EXPECT_EQ(entry(0, nullptr, DRV_LOAD, 0, 0), 1);
    EXPECT_EQ(entry(0, nullptr, DRV_OPEN, 0, reinterpret_cast<LPARAM>(&open)), 0);
    const LRESULT configured = entry(0, nullptr, DRV_OPEN, 0, 0);
    EXPECT_NE(configured, 0);
    EXPECT_EQ(entry(static_cast<DWORD_PTR>(configured), nullptr, ICM_GETSTATE, 0, 0), ICERR_UNSUPPORTED);
    EXPECT_EQ(entry(static_cast<DWORD_PTR>(configured), nullptr, DRV_QUERYCONFIGURE, 0, 0), 0);
    EXPECT_EQ(entry(static_cast<DWORD_PTR>(configured), nullptr, DRV_CLOSE, 0, 0), 1);
    EXPECT_EQ(entry(0, nullptr, DRV_FREE, 0, 0), 1);
    FreeLibrary(dll);
}

TEST_F(MjpgCodec, FramesOfAllSizesAndDirectionsComeBackWithinTheError)
{
    for (const auto& [width, height] : {std::pair{1, 1}, {2, 3}, {15, 17}, {16, 16}, {33, 7}, {200, 120}})
        for (const int bits : {24, 32})
            for (const int direction : {1, -1}) {
                Picture in(rawFormat(width, direction * height, bits));
                in.paint(smooth);
                const Bytes data = compress(in, 10000);
                ASSERT_FALSE(data.empty());
                Picture out(rawFormat(width, height, 56 - bits)); // the other depth, bottom-up
                ASSERT_EQ(decompress(data, out), ICERR_OK);
                EXPECT_GT(psnr(in, out), 40) << width << " x " << height << " x " << bits << " " << direction;
            }
}

TEST_F(MjpgCodec, HigherQualityIsLargerAndCloser)
{
    std::mt19937 random(3);
    Picture in(rawFormat(160, 112, 32));
    in.paint([&](std::size_t x, std::size_t y, int) { return smooth(x, y, 0) / 2 + static_cast<int>(random() % 60); });
    std::size_t lastSize = 0;
    double lastPsnr = 0;
    for (const DWORD quality : {0u, 1000u, 5000u, 8000u, 9500u, 10000u}) {
        const Bytes data = compress(in, quality);
        Picture out(rawFormat(160, 112, 24));
        ASSERT_EQ(decompress(data, out), ICERR_OK);
        const double closeness = psnr(in, out);
        EXPECT_GT(data.size(), lastSize) << quality;
        EXPECT_GT(closeness, lastPsnr) << quality;
        lastSize = data.size();
        lastPsnr = closeness;
    }
}

TEST_F(MjpgCodec, DefaultQualityIsTheInstances)
{
    Picture in(rawFormat(64, 64, 32));
    in.paint(smooth);
    const DWORD quality = 2500;
    send(ICM_SETQUALITY, &quality);
    EXPECT_EQ(compress(in, static_cast<DWORD>(ICQUALITY_DEFAULT)), compress(in, 2500));
    EXPECT_NE(compress(in, 9900), compress(in, 2500));
}

TEST_F(MjpgCodec, NoiseAndExtremeColoursFitAtTheBestQuality)
{
    std::mt19937 random(4);
    Picture noise(rawFormat(128, 96, 32));
    noise.paint([&](std::size_t, std::size_t, int) { return static_cast<int>(random() & 0xFF); });
    EXPECT_FALSE(compress(noise, 10000).empty());
    Picture checks(rawFormat(128, 96, 32));
    checks.paint([](std::size_t x, std::size_t y, int) { return (x + y) % 2 ? 255 : 0; });
    const Bytes data = compress(checks, 10000);
    Picture out(rawFormat(128, 96, 24));
    ASSERT_EQ(decompress(data, out), ICERR_OK);
    EXPECT_GT(psnr(checks, out), 40);
}

TEST_F(MjpgCodec, UnusedByteOfAPixelDoesNotMatter)
{
    Picture in(rawFormat(40, 40, 32));
    in.paint(smooth);
    const Bytes first = compress(in, 9000);
    for (std::size_t i = 3; i < in.bytes.size(); i += 4)
        in.bytes[i] = static_cast<std::uint8_t>(i);
    EXPECT_EQ(first, compress(in, 9000));
}

TEST_F(MjpgCodec, CompressedFrameStaysWithinTheSizeAskedFor)
{
    std::mt19937 random(5);
    for (const auto& [width, height] : {std::pair{1, 1}, {16, 16}, {17, 33}, {160, 112}}) {
        Picture noise(rawFormat(width, height, 32));
        noise.paint([&](std::size_t, std::size_t, int) { return random() % 2 ? 255 : 0; });
        BITMAPINFOHEADER output = outputFor(noise.format);
        const auto room = static_cast<std::size_t>(send(ICM_COMPRESS_GET_SIZE, &noise.format, &output));
        Bytes data(room + 64, 0xA5);
        ASSERT_EQ(ICCompress(codec, 0, &output, data.data(), &noise.format, noise.bytes.data(), nullptr, nullptr, 0, 0,
                             10000, nullptr, nullptr),
                  static_cast<DWORD>(ICERR_OK));
        EXPECT_LE(output.biSizeImage, room);
        EXPECT_EQ(Bytes(data.begin() + static_cast<std::ptrdiff_t>(room), data.end()), Bytes(64, 0xA5));
    }
}

TEST_F(MjpgCodec, DamagedFramesAreAnErrorOrAPictureButNeverACrash)
{
    Picture in(rawFormat(64, 48, 24));
    in.paint(smooth);
    const Bytes good = compress(in, 8000);
    Picture out(rawFormat(64, 48, 24));
    const std::size_t pixels = out.bytes.size();
    out.bytes.resize(pixels + 4096, 0xA5); // nothing may be written behind the picture
    EXPECT_EQ(decompress(Bytes(good.begin(), good.begin() + 10), out), ICERR_ERROR);
    EXPECT_EQ(decompress(Bytes(500, 0x37), out), ICERR_ERROR);
    std::mt19937 random(9);
    for (int round = 0; round < 400; ++round) {
        Bytes bad = good;
        for (int i = 0; i < 8; ++i)
            bad[2 + random() % (bad.size() - 2)] = static_cast<std::uint8_t>(random());
        bad.resize(100 + random() % (bad.size() - 100));
        const LRESULT result = decompress(bad, out);
        EXPECT_TRUE(result == ICERR_OK || result == ICERR_ERROR) << result;
    }
    EXPECT_TRUE(std::all_of(out.bytes.begin() + static_cast<std::ptrdiff_t>(pixels), out.bytes.end(),
                            [](std::uint8_t value) { return value == 0xA5; }));
    EXPECT_EQ(decompress(good, out), ICERR_OK); // and the next good frame is whole again
    EXPECT_GT(psnr(in, out), 30);
}

TEST_F(MjpgCodec, RandomBytesAfterAnImagesFirstMarkersAreAnErrorOrAPicture)
{
    Picture in(rawFormat(64, 48, 24));
    in.paint(smooth);
    const Bytes good = compress(in, 8000);
    Picture out(rawFormat(64, 48, 32));
    std::mt19937 random(10);
    for (std::size_t kept = 2; kept < good.size(); kept += 7) {
        Bytes bad = good;
        for (std::size_t i = kept; i < bad.size(); ++i)
            bad[i] = static_cast<std::uint8_t>(random());
        const LRESULT result = decompress(bad, out);
        EXPECT_TRUE(result == ICERR_OK || result == ICERR_ERROR) << result;
    }
}

TEST_F(MjpgCodec, FrameThatEndsEarlyGivesTheRowsItHas)
{
    Picture in(rawFormat(64, 96, 24));
    in.paint(smooth);
    Bytes data = compress(in, 9500);
    data.resize(data.size() * 3 / 4);
    Picture out(rawFormat(64, 96, 24));
    ASSERT_EQ(decompress(data, out), ICERR_OK);
    for (std::size_t y = 0; y < 24; ++y)
        EXPECT_NEAR(out.pixel(10, y)[1], in.pixel(10, y)[1], 12) << y;
}

// Many cameras leave the Huffman tables out of every frame: those of the format's annex are meant then.
TEST_F(MjpgCodec, FrameWithoutHuffmanTablesHasTheUsualOnes)
{
    Picture in(rawFormat(64, 48, 24));
    in.paint(smooth);
    const Bytes whole = compress(in, 9000);
    Bytes bare(whole.begin(), whole.begin() + 2);
    for (std::size_t at = 2; at < whole.size();) {
        const std::uint8_t marker = whole[at + 1];
        const bool isScan = marker == 0xDA; // the rest of the frame
        const std::size_t next = isScan ? whole.size() : at + 2 + (whole[at + 2] << 8 | whole[at + 3]);
        if (marker != 0xC4)
            bare.insert(bare.end(), whole.begin() + static_cast<std::ptrdiff_t>(at),
                        whole.begin() + static_cast<std::ptrdiff_t>(next));
        at = next;
    }
    ASSERT_LT(bare.size(), whole.size());
    Picture expected(rawFormat(64, 48, 24));
    Picture out(rawFormat(64, 48, 24));
    ASSERT_EQ(decompress(whole, expected), ICERR_OK);
    ASSERT_EQ(decompress(bare, out), ICERR_OK);
    EXPECT_EQ(out.bytes, expected.bytes);
}

TEST_F(MjpgCodec, FrameOfAnotherSizeThanSaidIsAnError)
{
    Picture in(rawFormat(64, 48, 24));
    in.paint(smooth);
    Picture out(rawFormat(48, 64, 24));
    EXPECT_EQ(decompress(compress(in, 8000), out), ICERR_ERROR);
}

TEST_F(MjpgCodec, EmptyFrameLeavesThePictureBefore)
{
    Picture out(rawFormat(16, 16, 24));
    const Bytes before = out.bytes;
    EXPECT_EQ(decompress({}, out), ICERR_OK);
    EXPECT_EQ(out.bytes, before);
}

TEST_F(MjpgCodec, IncompleteRequestsAreRefused)
{
    ICCOMPRESS compression{};
    ICDECOMPRESS decompression{};
    EXPECT_EQ(ICSendMessage(codec, ICM_COMPRESS, 0, 0), ICERR_BADPARAM);
    EXPECT_EQ(ICSendMessage(codec, ICM_COMPRESS, reinterpret_cast<DWORD_PTR>(&compression), sizeof compression),
              ICERR_BADPARAM);
    EXPECT_EQ(ICSendMessage(codec, ICM_COMPRESS, reinterpret_cast<DWORD_PTR>(&compression), 4), ICERR_BADPARAM);
    EXPECT_EQ(ICSendMessage(codec, ICM_DECOMPRESS, reinterpret_cast<DWORD_PTR>(&decompression), sizeof decompression),
              ICERR_BADPARAM);
}

// Run by movie_readers.sh: leaves a movie and the frames that went into it, for readers that nobody here wrote.
TEST_F(MjpgCodec, WritesAMovieForOtherReaders)
{
    const std::wstring folder = test_support::environmentVariable(L"MOVIE_FOLDER");
    if (folder.empty()) GTEST_SKIP() << "needs a folder for its movie; movie_readers.sh names one";
    constexpr int frames = 20;
    AVIFileInit();
    PAVIFILE file = nullptr;
    PAVISTREAM raw = nullptr;
    PAVISTREAM stream = nullptr;
    ASSERT_EQ(AVIFileOpenW(&file, (folder + L"\\movie.avi").c_str(), OF_WRITE | OF_CREATE, nullptr), AVIERR_OK);
    AVISTREAMINFOW info{};
    info.fccType = streamtypeVIDEO;
    info.dwScale = 1000;
    info.dwRate = 25000;
    info.rcFrame = {0, 0, 320, 200};
    ASSERT_EQ(AVIFileCreateStreamW(file, &raw, &info), AVIERR_OK);
    AVICOMPRESSOPTIONS options{};
    options.fccType = streamtypeVIDEO;
    options.fccHandler = mjpg;
    options.dwQuality = 9500;
    ASSERT_EQ(AVIMakeCompressedStream(&stream, raw, &options, nullptr), AVIERR_OK);
    Picture picture(rawFormat(320, 200, 32));
    picture.format.biSizeImage = static_cast<DWORD>(picture.bytes.size());
    ASSERT_EQ(AVIStreamSetFormat(stream, 0, &picture.format, sizeof picture.format), AVIERR_OK);
    std::ofstream expected(std::string(folder.begin(), folder.end()) + "\\frames.bgr0", std::ios::binary);
    for (int frame = 0; frame < frames; ++frame) {
        picture.paint([&](std::size_t x, std::size_t y, int channel) {
            return smooth(x + 7u * static_cast<unsigned>(frame), y, channel);
        });
        EXPECT_EQ(AVIStreamWrite(stream, frame, 1, picture.bytes.data(), static_cast<LONG>(picture.bytes.size()),
                                 AVIIF_KEYFRAME, nullptr, nullptr),
                  AVIERR_OK);
        for (std::size_t y = 0; y < 200; ++y)
            expected.write(reinterpret_cast<const char*>(picture.pixel(0, y)), 320 * 4);
    }
    AVIStreamRelease(stream);
    AVIStreamRelease(raw);
    AVIFileRelease(file);
    AVIFileExit();
    EXPECT_TRUE(expected.good());
}
