// The codec as the platform sees it: how it is found, which formats it takes, its quality, state
// and messages.
#include "MjpgCodecFixture.h"

#include <base/Handles.h>

#include <utility>

TEST_F(MjpgCodec, IsListedWithItsShortName)
{
    bool found = false;
    ICINFO info{};
    info.dwSize = sizeof info;
    for (DWORD i = 0; ICInfo(ICTYPE_VIDEO, i, &info); ++i)
        found = found || info.fccHandler == mjpg;
    EXPECT_TRUE(found);
    ASSERT_NE(ICGetInfo(m_codec, &info, sizeof info), 0);
    EXPECT_STREQ(info.szName, L"MJPG");
    EXPECT_EQ(info.fccType, static_cast<DWORD>(ICTYPE_VIDEO));
    EXPECT_EQ(info.fccHandler, mjpg);
    EXPECT_EQ(info.dwFlags, static_cast<DWORD>(VIDCF_QUALITY));
}

TEST_F(MjpgCodec, InformationOfTheWrongSizeIsRefused)
{
    ICINFO info{};
    EXPECT_EQ(
        ICSendMessage(m_codec, ICM_GETINFO, reinterpret_cast<DWORD_PTR>(&info), sizeof info - 1),
        0);
    EXPECT_EQ(Send(ICM_GETINFO), 0);
}

TEST_F(MjpgCodec, Takes32And24BitFramesOfAnyDirectionOnly)
{
    EXPECT_EQ(Query(RawFormat(1024, 768, 32)), ICERR_OK);
    EXPECT_EQ(Query(RawFormat(1023, 767, 24)), ICERR_OK);
    EXPECT_EQ(Query(RawFormat(8, -8, 32)), ICERR_OK);
    for (const int bits : {0, 1, 4, 8, 16, 48})
        EXPECT_EQ(Query(RawFormat(8, 8, bits)), ICERR_BADFORMAT) << bits;
    BITMAPINFOHEADER other = RawFormat(8, 8, 32);
    other.biCompression = BI_BITFIELDS;
    EXPECT_EQ(Query(other), ICERR_BADFORMAT);
}

TEST_F(MjpgCodec, ImpossibleSizesAreRefused)
{
    const LONG sizes[][2] = {
        {0, 8}, {8, 0}, {-8, 8}, {LONG_MIN, 8}, {8, LONG_MIN}, {LONG_MAX, LONG_MAX}, {20000, 8}};
    for (const auto& size : sizes) {
        const BITMAPINFOHEADER format = RawFormat(size[0], size[1], 32);
        EXPECT_EQ(Query(format), ICERR_BADFORMAT) << size[0] << " x " << size[1];
        BITMAPINFOHEADER output{};
        EXPECT_EQ(Send(ICM_COMPRESS_GET_FORMAT, &format, &output), ICERR_BADFORMAT);
        EXPECT_EQ(Send(ICM_COMPRESS_GET_SIZE, &format, &output), 0);
    }
    EXPECT_EQ(Send(ICM_COMPRESS_QUERY), ICERR_BADFORMAT);
}

TEST_F(MjpgCodec, OutputHasTheFramesSizeAndTheCodecsCode)
{
    const BITMAPINFOHEADER input = RawFormat(100, -60, 32);
    EXPECT_EQ(Send(ICM_COMPRESS_GET_FORMAT, &input),
              static_cast<LRESULT>(sizeof(BITMAPINFOHEADER)));
    const BITMAPINFOHEADER output = OutputFor(input);
    EXPECT_EQ(output.biWidth, 100);
    EXPECT_EQ(output.biHeight, 60);
    EXPECT_EQ(output.biCompression, mjpg);
    EXPECT_EQ(Send(ICM_COMPRESS_QUERY, &input, &output), ICERR_OK);
    BITMAPINFOHEADER other = output;
    other.biWidth = 99;
    EXPECT_EQ(Send(ICM_COMPRESS_QUERY, &input, &other), ICERR_BADFORMAT);
    EXPECT_EQ(Send(ICM_COMPRESS_BEGIN, &input, &other), ICERR_BADFORMAT);
}

TEST_F(MjpgCodec, DecompressionIsAskedForLikeCompression)
{
    const BITMAPINFOHEADER input = OutputFor(RawFormat(50, 40, 24));
    BITMAPINFOHEADER output{};
    EXPECT_EQ(Send(ICM_DECOMPRESS_GET_FORMAT, &input),
              static_cast<LRESULT>(sizeof(BITMAPINFOHEADER)));
    ASSERT_EQ(Send(ICM_DECOMPRESS_GET_FORMAT, &input, &output), ICERR_OK);
    EXPECT_EQ(output.biBitCount, 24);
    EXPECT_EQ(output.biSizeImage, 152u * 40u);
    EXPECT_EQ(Send(ICM_DECOMPRESS_QUERY, &input, &output), ICERR_OK);
    EXPECT_EQ(Send(ICM_DECOMPRESS_QUERY, &output), ICERR_BADFORMAT);
    output.biBitCount = 16;
    EXPECT_EQ(Send(ICM_DECOMPRESS_QUERY, &input, &output), ICERR_BADFORMAT);
}

TEST_F(MjpgCodec, QualityIsKeptWithinItsRange)
{
    DWORD quality = 0;
    ASSERT_EQ(Send(ICM_GETDEFAULTQUALITY, &quality), ICERR_OK);
    EXPECT_EQ(quality, 7500u);
    for (const auto& [set, expected] :
         {std::pair<DWORD, DWORD>{0, 0}, {123, 123}, {10001, 10000}, {0xFFFFFFFF, 7500}}) {
        EXPECT_EQ(Send(ICM_SETQUALITY, &set), ICERR_OK);
        EXPECT_EQ(Send(ICM_GETQUALITY, &quality), ICERR_OK);
        EXPECT_EQ(quality, expected);
    }
    EXPECT_EQ(Send(ICM_SETQUALITY), ICERR_BADPARAM);
    EXPECT_EQ(Send(ICM_GETQUALITY), ICERR_BADPARAM);
}

TEST_F(MjpgCodec, StateCarriesTheQualityToAnotherInstance)
{
    const auto size = static_cast<std::size_t>(Send(ICM_GETSTATE));
    ASSERT_EQ(size, 8u);
    Bytes state(size);
    const DWORD quality = 4321;
    Send(ICM_SETQUALITY, &quality);
    ASSERT_EQ(ICSendMessage(m_codec, ICM_GETSTATE, reinterpret_cast<DWORD_PTR>(state.data()), size),
              ICERR_OK);

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
        return ICSendMessage(m_codec, ICM_SETSTATE, reinterpret_cast<DWORD_PTR>(state.data()),
                             size);
    };
    EXPECT_EQ(set(Bytes(8, 0xFF), 8), 0);
    EXPECT_EQ(set(Bytes(8, 0), 4), 0);
    Bytes room(4);
    EXPECT_EQ(ICSendMessage(m_codec, ICM_GETSTATE, reinterpret_cast<DWORD_PTR>(room.data()), 4),
              ICERR_BADSIZE);
    DWORD quality = 0;
    Send(ICM_GETQUALITY, &quality);
    EXPECT_EQ(quality, 7500u);
}

TEST_F(MjpgCodec, UnknownMessagesAreUnsupported)
{
    EXPECT_EQ(Send(ICM_USER + 0x700), ICERR_UNSUPPORTED);
    EXPECT_EQ(Send(ICM_DECOMPRESS_GET_PALETTE), ICERR_UNSUPPORTED);
    EXPECT_EQ(Send(ICM_DRAW_BEGIN), ICERR_UNSUPPORTED);
    EXPECT_EQ(
        ICSendMessage(m_codec, ICM_CONFIGURE, static_cast<DWORD_PTR>(-1), ICMF_CONFIGURE_QUERY),
        ICERR_UNSUPPORTED);
    EXPECT_EQ(ICSendMessage(m_codec, ICM_ABOUT, static_cast<DWORD_PTR>(-1), ICMF_ABOUT_QUERY),
              ICERR_UNSUPPORTED);
}

TEST_F(MjpgCodec, EntryPointIsUndecoratedAndOpensVideoOnly)
{
    const base::Module dll(LoadLibraryW(m_installed.Path().c_str()));
    ASSERT_TRUE(dll);
    using Entry = LRESULT(CALLBACK*)(DWORD_PTR, HDRVR, UINT, LPARAM, LPARAM);
    const auto entry =
        reinterpret_cast<Entry>(reinterpret_cast<void*>(GetProcAddress(dll.get(), "DriverProc")));
    ASSERT_NE(entry, nullptr);
    ICOPEN open{};
    open.dwSize = sizeof open;
    open.fccType = mmioFOURCC('a', 'u', 'd', 'c');
    EXPECT_EQ(entry(0, nullptr, DRV_LOAD, 0, 0), 1);
    EXPECT_EQ(entry(0, nullptr, DRV_OPEN, 0, reinterpret_cast<LPARAM>(&open)), 0);
    const LRESULT configured = entry(0, nullptr, DRV_OPEN, 0, 0);
    EXPECT_NE(configured, 0);
    EXPECT_EQ(entry(static_cast<DWORD_PTR>(configured), nullptr, ICM_GETSTATE, 0, 0),
              ICERR_UNSUPPORTED);
    EXPECT_EQ(entry(static_cast<DWORD_PTR>(configured), nullptr, DRV_QUERYCONFIGURE, 0, 0), 0);
    EXPECT_EQ(entry(static_cast<DWORD_PTR>(configured), nullptr, DRV_CLOSE, 0, 0), 1);
    EXPECT_EQ(entry(0, nullptr, DRV_FREE, 0, 0), 1);
}

TEST_F(MjpgCodec, IncompleteRequestsAreRefused)
{
    ICCOMPRESS compression{};
    ICDECOMPRESS decompression{};
    EXPECT_EQ(ICSendMessage(m_codec, ICM_COMPRESS, 0, 0), ICERR_BADPARAM);
    EXPECT_EQ(ICSendMessage(m_codec, ICM_COMPRESS, reinterpret_cast<DWORD_PTR>(&compression),
                            sizeof compression),
              ICERR_BADPARAM);
    EXPECT_EQ(ICSendMessage(m_codec, ICM_COMPRESS, reinterpret_cast<DWORD_PTR>(&compression), 4),
              ICERR_BADPARAM);
    EXPECT_EQ(ICSendMessage(m_codec, ICM_DECOMPRESS, reinterpret_cast<DWORD_PTR>(&decompression),
                            sizeof decompression),
              ICERR_BADPARAM);
}
