// Frames through the codec: how close they come back, and frames that are damaged, incomplete or
// written by others.
#include "MjpgCodecFixture.h"

#include <test_support/ChildTest.h>
#include <test_support/Files.h>

#include <algorithm>
#include <cstddef>
#include <random>
#include <string>
#include <utility>

TEST_F(MjpgCodec, FramesOfAllSizesAndDirectionsComeBackWithinTheError)
{
    for (const auto& [width, height] :
         {std::pair{1, 1}, {2, 3}, {15, 17}, {16, 16}, {33, 7}, {200, 120}})
        for (const int bits : {24, 32})
            for (const int direction : {1, -1}) {
                Picture in(RawFormat(width, direction * height, bits));
                in.Paint(Smooth);
                const Bytes data = Compress(in, 10000);
                ASSERT_FALSE(data.empty());
                Picture out(RawFormat(width, height, 56 - bits)); // the other depth, bottom-up
                ASSERT_EQ(Decompress(data, out), ICERR_OK);
                EXPECT_GT(Psnr(in, out), 40)
                    << width << " x " << height << " x " << bits << " " << direction;
            }
}

TEST_F(MjpgCodec, HigherQualityIsLargerAndCloser)
{
    std::mt19937 random(3);
    Picture in(RawFormat(160, 112, 32));
    in.Paint([&](std::size_t x, std::size_t y, int) {
        return Smooth(x, y, 0) / 2 + static_cast<int>(random() % 60);
    });
    std::size_t lastSize = 0;
    double lastPsnr = 0;
    for (const DWORD quality : {0u, 1000u, 5000u, 8000u, 9500u, 10000u}) {
        const Bytes data = Compress(in, quality);
        Picture out(RawFormat(160, 112, 24));
        ASSERT_EQ(Decompress(data, out), ICERR_OK);
        const double closeness = Psnr(in, out);
        EXPECT_GT(data.size(), lastSize) << quality;
        EXPECT_GT(closeness, lastPsnr) << quality;
        lastSize = data.size();
        lastPsnr = closeness;
    }
}

TEST_F(MjpgCodec, DefaultQualityIsTheInstances)
{
    Picture in(RawFormat(64, 64, 32));
    in.Paint(Smooth);
    const DWORD quality = 2500;
    Send(ICM_SETQUALITY, &quality);
    EXPECT_EQ(Compress(in, static_cast<DWORD>(ICQUALITY_DEFAULT)), Compress(in, 2500));
    EXPECT_NE(Compress(in, 9900), Compress(in, 2500));
}

TEST_F(MjpgCodec, AQualityAboveTheBestIsTheBest)
{
    Picture in(RawFormat(64, 64, 32));
    in.Paint(Smooth);
    const Bytes best = Compress(in, 10000);
    EXPECT_NE(Compress(in, 7500), best);
    for (const DWORD quality : {10001u, 20000u, 0x7FFFFFFFu, 0xFFFFFFFEu})
        EXPECT_EQ(Compress(in, quality), best) << quality;
}

TEST_F(MjpgCodec, NoiseAndExtremeColoursFitAtTheBestQuality)
{
    std::mt19937 random(4);
    Picture noise(RawFormat(128, 96, 32));
    noise.Paint([&](std::size_t, std::size_t, int) { return static_cast<int>(random() & 0xFF); });
    EXPECT_FALSE(Compress(noise, 10000).empty());
    Picture checks(RawFormat(128, 96, 32));
    checks.Paint([](std::size_t x, std::size_t y, int) { return (x + y) % 2 ? 255 : 0; });
    const Bytes data = Compress(checks, 10000);
    Picture out(RawFormat(128, 96, 24));
    ASSERT_EQ(Decompress(data, out), ICERR_OK);
    EXPECT_GT(Psnr(checks, out), 40);
}

TEST_F(MjpgCodec, UnusedByteOfAPixelDoesNotMatter)
{
    Picture in(RawFormat(40, 40, 32));
    in.Paint(Smooth);
    const Bytes first = Compress(in, 9000);
    for (std::size_t i = 3; i < in.bytes.size(); i += 4)
        in.bytes[i] = static_cast<std::uint8_t>(i);
    EXPECT_EQ(first, Compress(in, 9000));
}

TEST_F(MjpgCodec, CompressedFrameStaysWithinTheSizeAskedFor)
{
    std::mt19937 random(5);
    for (const auto& [width, height] : {std::pair{1, 1}, {16, 16}, {17, 33}, {160, 112}}) {
        Picture noise(RawFormat(width, height, 32));
        noise.Paint([&](std::size_t, std::size_t, int) { return random() % 2 ? 255 : 0; });
        BITMAPINFOHEADER output = OutputFor(noise.format);
        const auto room =
            static_cast<std::size_t>(Send(ICM_COMPRESS_GET_SIZE, &noise.format, &output));
        Bytes data(room + 64, 0xA5);
        ASSERT_EQ(ICCompress(m_codec, 0, &output, data.data(), &noise.format, noise.bytes.data(),
                             nullptr, nullptr, 0, 0, 10000, nullptr, nullptr),
                  static_cast<DWORD>(ICERR_OK));
        EXPECT_LE(output.biSizeImage, room);
        EXPECT_EQ(Bytes(data.begin() + static_cast<std::ptrdiff_t>(room), data.end()),
                  Bytes(64, 0xA5));
    }
}

TEST_F(MjpgCodec, DamagedFramesAreAnErrorOrAPictureButNeverACrash)
{
    Picture in(RawFormat(64, 48, 24));
    in.Paint(Smooth);
    const Bytes good = Compress(in, 8000);
    Picture out(RawFormat(64, 48, 24));
    const std::size_t pixels = out.bytes.size();
    out.bytes.resize(pixels + 4096, 0xA5); // nothing may be written behind the picture
    EXPECT_EQ(Decompress(Bytes(good.begin(), good.begin() + 10), out), ICERR_ERROR);
    EXPECT_EQ(Decompress(Bytes(500, 0x37), out), ICERR_ERROR);
    std::mt19937 random(9);
    for (int round = 0; round < 400; ++round) {
        Bytes bad = good;
        for (int i = 0; i < 8; ++i)
            bad[2 + random() % (bad.size() - 2)] = static_cast<std::uint8_t>(random());
        bad.resize(100 + random() % (bad.size() - 100));
        const LRESULT result = Decompress(bad, out);
        EXPECT_TRUE(result == ICERR_OK || result == ICERR_ERROR) << result;
    }
    EXPECT_TRUE(std::all_of(out.bytes.begin() + static_cast<std::ptrdiff_t>(pixels),
                            out.bytes.end(), [](std::uint8_t value) { return value == 0xA5; }));
    EXPECT_EQ(Decompress(good, out), ICERR_OK); // and the next good frame is whole again
    EXPECT_GT(Psnr(in, out), 30);
}

TEST_F(MjpgCodec, RandomBytesAfterAnImagesFirstMarkersAreAnErrorOrAPicture)
{
    Picture in(RawFormat(64, 48, 24));
    in.Paint(Smooth);
    const Bytes good = Compress(in, 8000);
    Picture out(RawFormat(64, 48, 32));
    std::mt19937 random(10);
    for (std::size_t kept = 2; kept < good.size(); kept += 7) {
        Bytes bad = good;
        for (std::size_t i = kept; i < bad.size(); ++i)
            bad[i] = static_cast<std::uint8_t>(random());
        const LRESULT result = Decompress(bad, out);
        EXPECT_TRUE(result == ICERR_OK || result == ICERR_ERROR) << result;
    }
}

TEST_F(MjpgCodec, FrameThatEndsEarlyGivesTheRowsItHas)
{
    Picture in(RawFormat(64, 96, 24));
    in.Paint(Smooth);
    Bytes data = Compress(in, 9500);
    data.resize(data.size() * 3 / 4);
    Picture out(RawFormat(64, 96, 24));
    ASSERT_EQ(Decompress(data, out), ICERR_OK);
    for (std::size_t y = 0; y < 24; ++y)
        EXPECT_NEAR(out.Pixel(10, y)[1], in.Pixel(10, y)[1], 12) << y;
}

// Many cameras omit the Huffman tables from every frame. Then the tables of the format's annex
// apply.
TEST_F(MjpgCodec, FrameWithoutHuffmanTablesHasTheUsualOnes)
{
    Picture in(RawFormat(64, 48, 24));
    in.Paint(Smooth);
    const Bytes whole = Compress(in, 9000);
    Bytes bare(whole.begin(), whole.begin() + 2);
    for (std::size_t at = 2; at < whole.size();) {
        const std::uint8_t marker = whole[at + 1];
        const bool isScan = marker == 0xDA; // the rest of the frame
        const std::size_t next =
            isScan ? whole.size() : at + 2 + (whole[at + 2] << 8 | whole[at + 3]);
        if (marker != 0xC4)
            bare.insert(bare.end(), whole.begin() + static_cast<std::ptrdiff_t>(at),
                        whole.begin() + static_cast<std::ptrdiff_t>(next));
        at = next;
    }
    ASSERT_LT(bare.size(), whole.size());
    Picture expected(RawFormat(64, 48, 24));
    Picture out(RawFormat(64, 48, 24));
    ASSERT_EQ(Decompress(whole, expected), ICERR_OK);
    ASSERT_EQ(Decompress(bare, out), ICERR_OK);
    EXPECT_EQ(out.bytes, expected.bytes);
}

TEST_F(MjpgCodec, FrameOfAnotherSizeThanSaidIsAnError)
{
    Picture in(RawFormat(64, 48, 24));
    in.Paint(Smooth);
    Picture out(RawFormat(48, 64, 24));
    EXPECT_EQ(Decompress(Compress(in, 8000), out), ICERR_ERROR);
}

TEST_F(MjpgCodec, EmptyFrameLeavesThePictureBefore)
{
    Picture out(RawFormat(16, 16, 24));
    const Bytes before = out.bytes;
    EXPECT_EQ(Decompress({}, out), ICERR_OK);
    EXPECT_EQ(out.bytes, before);
}

// movie-readers runs this. It leaves a movie and the frames that went into it, for readers by
// other authors.
TEST_F(MjpgCodec, WritesAMovieForOtherReaders)
{
    const std::wstring folder = test_support::EnvironmentVariable(L"MOVIE_FOLDER");
    if (folder.empty()) GTEST_SKIP() << "needs a folder for its movie; movie-readers names one";
    constexpr int frames = 20;
    AVIFileInit();
    PAVIFILE file = nullptr;
    PAVISTREAM raw = nullptr;
    PAVISTREAM stream = nullptr;
    ASSERT_EQ(AVIFileOpenW(&file, (folder + L"\\movie.avi").c_str(), OF_WRITE | OF_CREATE, nullptr),
              AVIERR_OK);
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
    Picture picture(RawFormat(320, 200, 32));
    picture.format.biSizeImage = static_cast<DWORD>(picture.bytes.size());
    ASSERT_EQ(AVIStreamSetFormat(stream, 0, &picture.format, sizeof picture.format), AVIERR_OK);
    std::string expected;
    for (int frame = 0; frame < frames; ++frame) {
        picture.Paint([&](std::size_t x, std::size_t y, int channel) {
            return Smooth(x + 7u * static_cast<unsigned>(frame), y, channel);
        });
        EXPECT_EQ(AVIStreamWrite(stream, frame, 1, picture.bytes.data(),
                                 static_cast<LONG>(picture.bytes.size()), AVIIF_KEYFRAME, nullptr,
                                 nullptr),
                  AVIERR_OK);
        for (std::size_t y = 0; y < 200; ++y)
            expected.append(reinterpret_cast<const char*>(picture.Pixel(0, y)), 320 * 4);
    }
    AVIStreamRelease(stream);
    AVIStreamRelease(raw);
    AVIFileRelease(file);
    AVIFileExit();
    test_support::WriteFile(folder + L"\\frames.bgr0", expected);
}
