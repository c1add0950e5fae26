#include <Utils_Statics/CCineStoreAVI.h>

#include "../codecs/testcodec/TestCodec.h"
#include "AviMovie.h"
#include "DeviceContextComposition.h"

#include <test_support/ChildTest.h>
#include <test_support/Files.h>
#include <test_support/InDirectory.h>
#include <test_support/InstalledCodec.h>
#include <test_support/TemporaryFolder.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <initializer_list>
#include <limits>
#include <memory>
#include <random>
#include <thread>

using test_support::InstalledCodec;
using test_support::TemporaryFolder;

namespace {

using Bytes = std::vector<std::uint8_t>;
using Pixels = std::vector<unsigned int>;

CWinApp application(L"cine_store_avi_test");

// The application's settings, in a registry key of this process that goes with it.
class Settings : public testing::Environment
{
public:
    void SetUp() override { application.SetRegistryKey(key().c_str()); }
    void TearDown() override { RegDeleteTreeW(HKEY_CURRENT_USER, (L"Software\\" + key()).c_str()); }

    static std::wstring key() { return L"CineStoreAviTest" + std::to_wstring(GetCurrentProcessId()); }

    static void set(const wchar_t* entry, const wchar_t* value)
    {
        application.WriteProfileString(L"Settings\\Capture", entry, value);
    }
    static void set(const wchar_t* entry, int value)
    {
        application.WriteProfileInt(L"Settings\\Capture", entry, value);
    }
    static void clear() { application.WriteProfileString(L"Settings\\Capture", nullptr, nullptr); }
};

[[maybe_unused]] const auto* const settings = testing::AddGlobalTestEnvironment(new Settings);

struct Completed
{
    int calls = 0;
    std::wstring path;

    static void notify(const wchar_t* path, void* self)
    {
        ++static_cast<Completed*>(self)->calls;
        static_cast<Completed*>(self)->path = path;
    }
};

Pixels noise(int width, int height, unsigned seed)
{
    std::minstd_rand random(seed + 1);
    Pixels pixels(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    std::generate(pixels.begin(), pixels.end(), [&] { return static_cast<unsigned int>(random()) & 0xFFFFFF; });
    return pixels;
}

// Plain forms of the turns.
Pixels upsideDown(const Pixels& pixels, int width)
{
    Pixels turned;
    for (std::size_t row = pixels.size() / static_cast<std::size_t>(width); row-- > 0;)
        turned.insert(turned.end(), pixels.begin() + static_cast<std::ptrdiff_t>(row) * width,
                      pixels.begin() + static_cast<std::ptrdiff_t>(row + 1) * width);
    return turned;
}

Pixels mirrored(Pixels pixels, int width)
{
    for (auto row = pixels.begin(); row != pixels.end(); row += width)
        std::reverse(row, row + width);
    return pixels;
}

Bytes bytesOf(const Pixels& pixels)
{
    const auto* const first = reinterpret_cast<const std::uint8_t*>(pixels.data());
    return {first, first + pixels.size() * sizeof(unsigned int)};
}

std::unique_ptr<CBitmap> bitmapOf(const Pixels& pixels, int width, int height)
{
    auto bitmap = std::make_unique<CBitmap>();
    bitmap->CreateBitmap(width, height, 1, 32, pixels.data());
    return bitmap;
}

std::unique_ptr<CBitmap> maskOf(int width, int height, unsigned seed)
{
    std::minstd_rand random(seed + 1);
    Bytes bits(static_cast<std::size_t>((width + 15) / 16 * 2 * height));
    std::generate(bits.begin(), bits.end(), [&] { return static_cast<std::uint8_t>(random() >> 9); });
    auto mask = std::make_unique<CBitmap>();
    mask->CreateBitmap(width, height, 1, 1, bits.data());
    return mask;
}

constexpr int frameWidth = 64;
constexpr int frameHeight = 48;

// Two image areas side by side, a strip of controls below, an overlay.
const std::vector<CRect> layout{CRect(2, 3, 32, 33), CRect(34, 1, 62, 31), CRect(0, 34, 64, 46),
                                CRect(7, 2, 21, 6),  CRect(4, 1, 30, 11),  CRect(40, 2, 60, 12)};

class CineStoreAvi : public testing::Test
{
protected:
    CineStoreAvi()
    {
        Settings::clear();
        Settings::set(L"RecordCodec", L"Uncompressed");
        store.SetCompleteCallback(&Completed::notify, &completed);
    }

    bool start(CCineStoreAVI& recorder, int width = frameWidth, int height = frameHeight)
    {
        return recorder.InitStorage(fileName.c_str(), background.get(), width, height, layout, 32);
    }
    bool start() { return start(store); }

    bool addBitmap(const Pixels& pixels, bool mirror = false, bool bottomUp = true)
    {
        return store.AddFrame(*bitmapOf(pixels, frameWidth, frameHeight), mirror, bottomUp);
    }
    bool addBlank() { return addBitmap(Pixels(frameWidth * frameHeight, 0x123456)); }

    bool addNothing()
    {
        CBitmap none;
        return store.AddFrame(nullptr, nullptr, nullptr, nullptr, nullptr, none, none, false, false, false, false);
    }

    TemporaryFolder folder;
    std::wstring fileName = folder / L"movie.avi";
    Pixels backgroundPixels = noise(frameWidth, frameHeight, 100);
    std::unique_ptr<CBitmap> background = bitmapOf(backgroundPixels, frameWidth, frameHeight);
    Completed completed;
    CCineStoreAVI store;
};

} // namespace

TEST_F(CineStoreAvi, SizesAreRoundedDownToMultiplesOfFour)
{
    ASSERT_TRUE(start(store, 1023, 767));
    EXPECT_TRUE(addNothing());
    EXPECT_TRUE(store.EndStorage());
    const AviMovie movie(fileName);
    EXPECT_EQ(movie.format.biWidth, 1020);
    EXPECT_EQ(movie.format.biHeight, 764);
    EXPECT_EQ(movie.info.rcFrame.right, 1020);
    EXPECT_EQ(movie.info.rcFrame.bottom, 764);
    EXPECT_EQ(movie.format.biSizeImage, 1020u * 764 * 4);
    EXPECT_EQ(movie.info.dwSuggestedBufferSize, 1020u * 764 * 4);
    EXPECT_EQ(movie.format.biCompression, static_cast<DWORD>(BI_RGB));
    EXPECT_EQ(movie.format.biBitCount, 32);
}

TEST_F(CineStoreAvi, RateIsFramesInAThousandSecondsTruncated)
{
    for (const auto& [fps, rate] : {std::pair{30.0, 30000u}, {25.0, 25000u}, {29.97, 29970u}, {12.3459, 12345u}}) {
        if (fps != 30.0) store.SetRate(fps); // 30 is what a new store has
        ASSERT_TRUE(start());
        EXPECT_TRUE(addBlank());
        EXPECT_TRUE(store.EndStorage());
        const AviMovie movie(fileName);
        EXPECT_EQ(movie.info.dwScale, 1000u);
        EXPECT_EQ(movie.info.dwRate, rate);
        EXPECT_EQ(movie.info.fccType, static_cast<DWORD>(streamtypeVIDEO));
    }
}

TEST_F(CineStoreAvi, RateTakesEffectAtTheNextStart)
{
    ASSERT_TRUE(start());
    store.SetRate(10.0);
    EXPECT_TRUE(addBlank());
    EXPECT_TRUE(store.EndStorage());
    EXPECT_EQ(AviMovie(fileName).info.dwRate, 30000u);
}

TEST_F(CineStoreAvi, WhatIsNoRateIsRefused)
{
    for (const double fps : {0.0, -25.0, 0.0009, 1e300, std::nan(""), std::numeric_limits<double>::infinity()}) {
        store.SetRate(fps);
        EXPECT_FALSE(start()) << fps;
    }
}

TEST_F(CineStoreAvi, ImpossibleSizesAreRefused)
{
    const int sizes[][2] = {
        {0, 48},        {64, 0},       {3, 48}, {64, 3}, {-64, 48}, {64, -48}, {INT_MIN, INT_MIN}, {INT_MAX, INT_MAX},
        {65536, 65536}, {32768, 16384}};
    for (const auto& size : sizes)
        EXPECT_FALSE(start(store, size[0], size[1])) << size[0] << " x " << size[1];
    for (const unsigned short bits : std::initializer_list<unsigned short>{0, 33, 64, 65535})
        EXPECT_FALSE(store.InitStorage(fileName.c_str(), background.get(), 64, 48, layout, bits)) << bits;
    EXPECT_TRUE(store.EndStorage());
}

TEST_F(CineStoreAvi, FewerBitsWriteThatMuchOfTheBuffer)
{
    ASSERT_TRUE(store.InitStorage(fileName.c_str(), background.get(), frameWidth, frameHeight, layout, 24));
    const Pixels pixels = noise(frameWidth, frameHeight, 4);
    EXPECT_TRUE(addBitmap(pixels));
    EXPECT_TRUE(store.EndStorage());
    const AviMovie movie(fileName);
    EXPECT_EQ(movie.format.biSizeImage, 64u * 3 * 48);
    Bytes expected = bytesOf(pixels);
    expected.resize(64 * 3 * 48);
    EXPECT_EQ(movie.frame(0), expected);
}

TEST_F(CineStoreAvi, WordUncompressedIsExact)
{
    for (const wchar_t* name : {L"uncompressed", L"UNCOMPRESSED", L"Uncompressed ", L"", L"no such codec"}) {
        Settings::set(L"RecordCodec", name);
        EXPECT_FALSE(start()) << name;
        EXPECT_FALSE(addNothing());
        EXPECT_TRUE(store.EndStorage());
    }
}

TEST_F(CineStoreAvi, EveryFrameIsAKeyFrame)
{
    ASSERT_TRUE(start());
    EXPECT_TRUE(addNothing());
    EXPECT_TRUE(addNothing());
    EXPECT_TRUE(addBlank());
    EXPECT_TRUE(store.EndStorage());
    const AviMovie movie(fileName);
    for (LONG i = 0; i < 3; ++i)
        EXPECT_TRUE(movie.isKeyFrame(i)) << i;
}

TEST_F(CineStoreAvi, RelativePathStaysWhereItWasWhenTheCurrentDirectoryChanges)
{
    const TemporaryFolder other;
    test_support::writeFile(other / L"movie.avi", "another file of this name, and a small one");
    const test_support::InDirectory first(folder.path());
    background = bitmapOf(noise(512, 512, 2), 512, 512);
    ASSERT_TRUE(store.InitStorage(L"movie.avi", background.get(), 512, 512, layout, 32));
    {
        const test_support::InDirectory second(other.path());
        EXPECT_TRUE(addNothing());
        EXPECT_TRUE(addNothing());
    }
    EXPECT_TRUE(store.EndStorage());
    EXPECT_EQ(completed.path, L"movie.avi"); // as it was given
    EXPECT_EQ(AviMovie(fileName).length(), 2);
}

TEST_F(CineStoreAvi, WithoutASettingTheCodecIsTheDefaultOne)
{
    Settings::clear();
    InstalledCodec installed(L"TST1", L"testcodec.dll");
    HMODULE dll = LoadLibraryW(installed.path().c_str());
    ASSERT_NE(dll, nullptr);
    const auto function = reinterpret_cast<TestCodecOrdersFunction>(
        reinterpret_cast<void*>(GetProcAddress(dll, "TestCodecOrdersOfThisProcess")));
    std::wcscpy(function()->shortName, L"XVID");
    std::fill(std::begin(function()->frameBytes), std::end(function()->frameBytes), 16);
    function()->failFrom = -1;
    EXPECT_TRUE(start());
    EXPECT_TRUE(addBlank());
    EXPECT_EQ(function()->quality, 10000); // 100 percent
    EXPECT_TRUE(store.EndStorage());
    FreeLibrary(dll);
}

TEST_F(CineStoreAvi, BackgroundIsTheFirstContentWithTheBottomRowFirst)
{
    ASSERT_TRUE(start());
    EXPECT_TRUE(addNothing());
    EXPECT_TRUE(store.EndStorage());
    EXPECT_EQ(AviMovie(fileName).frame(0), bytesOf(upsideDown(backgroundPixels, frameWidth)));
}

TEST_F(CineStoreAvi, LargerBackgroundGivesItsFirstPixelsRowAfterRow)
{
    Pixels pixels = noise(67, 50, 3);
    background = bitmapOf(pixels, 67, 50);
    ASSERT_TRUE(start(store, 67, 50));
    EXPECT_TRUE(addNothing());
    EXPECT_TRUE(store.EndStorage());
    pixels.resize(64 * 48);
    EXPECT_EQ(AviMovie(fileName).frame(0), bytesOf(upsideDown(pixels, 64)));
}

namespace {

struct Turns
{
    bool mirror0, bottomUp0, mirror1, bottomUp1;
};

// Five planes as an application gives them, and what they are after the turns.
struct GivenPlanes
{
    Pixels given[5];
    Pixels turned[5];

    GivenPlanes(unsigned seed, const Turns& turns)
    {
        const int sizes[5][2] = {{30, 30}, {28, 30}, {64, 12}, {28, 5}, {14, 4}};
        for (unsigned i = 0; i < 5; ++i) {
            given[i] = noise(sizes[i][0], sizes[i][1], 10 * seed + i);
            const bool turn = !((i == 0 && turns.bottomUp0) || (i == 1 && turns.bottomUp1));
            turned[i] = turn ? upsideDown(given[i], sizes[i][0]) : given[i];
            if ((i == 0 && turns.mirror0) || (i == 1 && turns.mirror1)) turned[i] = mirrored(turned[i], sizes[i][0]);
        }
    }
};

} // namespace

TEST_F(CineStoreAvi, ComposedFramesAreThoseOfTheDeviceContextForm)
{
    ASSERT_TRUE(start());
    Pixels expected = upsideDown(backgroundPixels, frameWidth);
    std::vector<Bytes> frames;
    for (unsigned i = 0; i < 64; ++i) {
        const Turns turns{(i & 1) != 0, (i & 2) != 0, (i & 4) != 0, (i & 8) != 0};
        GivenPlanes planes(i, turns);
        const auto mask0 = maskOf(30, 30, i);
        const auto mask1 = maskOf(28, 30, i + 1000);
        unsigned int* image[5];
        device_context_form::Form form{frameWidth, frameHeight, {}, {}, {*mask0, *mask1}};
        for (unsigned plane = 0; plane < 5; ++plane) {
            const bool given = plane == 2 || (i * 7 + plane) % 5 != 0;
            image[plane] = given ? planes.given[plane].data() : nullptr;
            form.image[plane] = given ? planes.turned[plane].data() : nullptr;
        }
        std::copy(layout.begin(), layout.end(), form.rects);
        form.compose(expected.data()); // onto the frame before: nothing clears it
        frames.push_back(bytesOf(expected));
        EXPECT_TRUE(store.AddFrame(image[0], image[1], image[2], image[3], image[4], *mask0, *mask1, turns.mirror0,
                                   turns.bottomUp0, turns.mirror1, turns.bottomUp1));
        for (unsigned plane = 0; plane < 5; ++plane)
            EXPECT_TRUE(!image[plane] || planes.given[plane] == planes.turned[plane]) << "plane " << plane;
    }
    EXPECT_TRUE(store.EndStorage());
    const AviMovie movie(fileName);
    ASSERT_EQ(movie.length(), 64);
    for (unsigned i = 0; i < 64; ++i)
        EXPECT_EQ(movie.frame(static_cast<LONG>(i)), frames[i]) << i;
}

TEST_F(CineStoreAvi, WithoutPlane1TheStripLandsAtTheFrameOrigin)
{
    ASSERT_TRUE(start());
    CBitmap none;
    Pixels strip(28 * 5, 0xFFFFFF);
    EXPECT_TRUE(
        store.AddFrame(nullptr, nullptr, nullptr, strip.data(), nullptr, none, none, false, false, false, false));
    EXPECT_TRUE(store.EndStorage());
    Pixels expected = upsideDown(backgroundPixels, frameWidth);
    for (std::size_t y = 0; y < 5; ++y)
        std::fill_n(expected.begin() + static_cast<std::ptrdiff_t>(y * frameWidth), 28, 0xFFFFFFu);
    EXPECT_EQ(AviMovie(fileName).frame(0), bytesOf(expected));
}

TEST_F(CineStoreAvi, RectsAreTakenOnlyTogetherWithABackground)
{
    CCineStoreAVI fresh;
    CBitmap none;
    const auto add = [&] {
        return fresh.AddFrame(nullptr, nullptr, nullptr, nullptr, nullptr, none, none, false, false, false, false);
    };
    ASSERT_TRUE(fresh.InitStorage(fileName.c_str(), nullptr, 64, 48, layout, 32));
    EXPECT_FALSE(add()); // there are no rects yet
    fresh.EndStorage();
    ASSERT_TRUE(fresh.InitStorage(fileName.c_str(), background.get(), 64, 48, layout, 32));
    EXPECT_TRUE(add());
    fresh.EndStorage();
    ASSERT_TRUE(fresh.InitStorage(fileName.c_str(), nullptr, 64, 48, std::vector<CRect>(), 32));
    EXPECT_TRUE(add()); // with the rects from before
    fresh.EndStorage();
}

TEST_F(CineStoreAvi, OneRectIsEnoughForWholeBitmapsOnly)
{
    ASSERT_TRUE(store.InitStorage(fileName.c_str(), background.get(), 64, 48, CRect(0, 0, 64, 48), 32));
    EXPECT_FALSE(addNothing());
    EXPECT_TRUE(addBlank());
    EXPECT_TRUE(store.EndStorage());
    EXPECT_EQ(AviMovie(fileName).length(), 1);
}

TEST_F(CineStoreAvi, WholeBitmapIsTurnedAndMirroredAsAsked)
{
    ASSERT_TRUE(start());
    const Pixels pixels = noise(frameWidth, frameHeight, 7);
    for (int i = 0; i < 4; ++i)
        EXPECT_TRUE(addBitmap(pixels, (i & 1) != 0, (i & 2) != 0));
    EXPECT_TRUE(store.EndStorage());
    const AviMovie movie(fileName);
    const Pixels turned = upsideDown(pixels, frameWidth);
    EXPECT_EQ(movie.frame(0), bytesOf(turned));
    EXPECT_EQ(movie.frame(1), bytesOf(mirrored(turned, frameWidth)));
    EXPECT_EQ(movie.frame(2), bytesOf(pixels));
    EXPECT_EQ(movie.frame(3), bytesOf(mirrored(pixels, frameWidth)));
}

TEST_F(CineStoreAvi, BitmapWithoutPixelsIsRefused)
{
    ASSERT_TRUE(start());
    const CBitmap none;
    EXPECT_FALSE(store.AddFrame(none, false, false));
    EXPECT_TRUE(addBlank());
    EXPECT_TRUE(store.EndStorage());
    EXPECT_EQ(AviMovie(fileName).length(), 1);
}

TEST_F(CineStoreAvi, SmallerAndLargerBitmapsStayWithinTheFrame)
{
    ASSERT_TRUE(start());
    const auto small = bitmapOf(Pixels(16, 1), 4, 4);
    const auto large = bitmapOf(Pixels(200 * 200, 2), 200, 200);
    EXPECT_TRUE(store.AddFrame(*small, true, false));
    EXPECT_TRUE(store.AddFrame(*large, true, false));
    EXPECT_TRUE(store.EndStorage());
    EXPECT_EQ(AviMovie(fileName).frame(1), bytesOf(Pixels(frameWidth * frameHeight, 2)));
}

TEST_F(CineStoreAvi, FramesOutsideARecordingAreRefused)
{
    EXPECT_FALSE(addBlank());
    EXPECT_FALSE(addNothing());
    ASSERT_TRUE(start());
    EXPECT_TRUE(store.EndStorage());
    EXPECT_FALSE(addBlank());
    EXPECT_FALSE(addNothing());
}

TEST_F(CineStoreAvi, EveryEndFiresTheCallbackWithTheRecordedPath)
{
    EXPECT_TRUE(store.EndStorage()); // nothing recorded yet
    EXPECT_EQ(completed.calls, 1);
    EXPECT_EQ(completed.path, L"");
    ASSERT_TRUE(start());
    EXPECT_TRUE(addBlank());
    EXPECT_TRUE(store.EndStorage());
    EXPECT_TRUE(store.EndStorage());
    EXPECT_EQ(completed.calls, 3);
    EXPECT_EQ(completed.path, fileName);
}

TEST_F(CineStoreAvi, CallbackMayStartTheNextMovie)
{
    struct Chain
    {
        CCineStoreAVI* store;
        std::wstring next;
        std::wstring announced;

        static void notify(const wchar_t* path, void* self)
        {
            auto& chain = *static_cast<Chain*>(self);
            chain.store->SetCompleteCallback(nullptr, nullptr);
            EXPECT_TRUE(chain.store->InitStorage(chain.next.c_str(), nullptr, frameWidth, frameHeight, CRect(), 32));
            chain.announced = path;
        }
    };
    Chain chain{&store, folder / L"the next movie, whose path is longer.avi", {}};
    store.SetCompleteCallback(&Chain::notify, &chain);
    ASSERT_TRUE(start());
    EXPECT_TRUE(store.EndStorage());
    EXPECT_EQ(chain.announced, fileName);
    EXPECT_TRUE(addBlank());
    EXPECT_TRUE(store.EndStorage());
    EXPECT_EQ(AviMovie(chain.next).length(), 1);
}

TEST_F(CineStoreAvi, EndThroughTheBaseClassIsTheMoviesEnd)
{
    ASSERT_TRUE(start());
    EXPECT_TRUE(addBlank());
    CCineStore& base = store;
    EXPECT_TRUE(base.EndStorage());
    EXPECT_EQ(AviMovie(fileName).length(), 1);
}

TEST_F(CineStoreAvi, DestroyingDoesNotFireTheCallback)
{
    {
        CCineStoreAVI local;
        local.SetCompleteCallback(&Completed::notify, &completed);
        ASSERT_TRUE(start(local));
    }
    EXPECT_EQ(completed.calls, 0);
    EXPECT_TRUE(DeleteFileW(fileName.c_str())); // the file is released
}

TEST_F(CineStoreAvi, MissingFolderLockedFileAndNullPathAreRefused)
{
    EXPECT_FALSE(store.InitStorage((folder / L"missing\\movie.avi").c_str(), background.get(), 64, 48, layout, 32));
    EXPECT_FALSE(store.InitStorage(nullptr, background.get(), 64, 48, layout, 32));
    EXPECT_FALSE(store.InitStorage(L"", background.get(), 64, 48, layout, 32));
    HANDLE lock = CreateFileW(fileName.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
    ASSERT_NE(lock, INVALID_HANDLE_VALUE);
    EXPECT_FALSE(start());
    CloseHandle(lock);
    EXPECT_FALSE(addBlank());
    EXPECT_TRUE(store.EndStorage());
    EXPECT_EQ(completed.calls, 1);
    EXPECT_EQ(completed.path, L""); // a failed start records no path
}

TEST_F(CineStoreAvi, SecondStartReleasesTheFirstMovie)
{
    ASSERT_TRUE(start());
    EXPECT_TRUE(addBlank());
    ASSERT_TRUE(store.InitStorage((folder / L"second.avi").c_str(), nullptr, 64, 48, layout, 32));
    EXPECT_EQ(completed.calls, 0);
    EXPECT_TRUE(addBlank());
    EXPECT_TRUE(store.EndStorage());
    EXPECT_TRUE(DeleteFileW(fileName.c_str()));
    EXPECT_EQ(AviMovie(folder / L"second.avi").length(), 1);
}

TEST_F(CineStoreAvi, LongAndMissingCodecNamesAreHarmless)
{
    std::wstring name(500, L'x');
    store.SetCompression(name.data());
    store.SetCompression(nullptr);
    Settings::set(L"RecordCodec", name.c_str());
    EXPECT_FALSE(start());
    EXPECT_TRUE(store.EndStorage());
}

namespace {

// Records through the test codec.
class CineStoreCodec : public CineStoreAvi
{
protected:
    CineStoreCodec()
    {
        const auto function = reinterpret_cast<TestCodecOrdersFunction>(
            reinterpret_cast<void*>(GetProcAddress(dll, "TestCodecOrdersOfThisProcess")));
        codec = function();
        *codec = {};
        std::wcscpy(codec->shortName, L"test codec");
        codec->failFrom = -1;
        std::fill(std::begin(codec->frameBytes), std::end(codec->frameBytes), 16);
        Settings::set(L"RecordCodec", L"test codec");
    }
    ~CineStoreCodec() override { FreeLibrary(dll); }

    // Every codec that was begun is ended, and every one that was opened is closed as far as the platform does that:
    // the compressed stream of Wine 8.0 never closes its codec.
    void expectReleased()
    {
        EXPECT_GE(codec->ended, codec->begun);
        const LONG open = codec->opened - codec->closed;
        EXPECT_TRUE(open == 0 || !streamClosesCodec()) << open << " codecs are open";
    }

    InstalledCodec installed{L"TST1", L"testcodec.dll"};
    HMODULE dll = LoadLibraryW(installed.path().c_str());
    TestCodecOrders* codec;

private:
    // Tries it with a compressed stream that no library of ours has touched.
    bool streamClosesCodec()
    {
        const LONG openBefore = codec->opened - codec->closed;
        const std::wstring name = folder / L"probe.avi";
        PAVIFILE file = nullptr;
        PAVISTREAM raw = nullptr;
        PAVISTREAM compressed = nullptr;
        AVISTREAMINFOW info{};
        info.fccType = streamtypeVIDEO;
        info.dwScale = 1;
        info.dwRate = 25;
        AVICOMPRESSOPTIONS options{};
        options.fccType = streamtypeVIDEO;
        options.fccHandler = mmioFOURCC('T', 'S', 'T', '1');
        AVIFileInit();
        EXPECT_EQ(AVIFileOpenW(&file, name.c_str(), OF_WRITE | OF_CREATE, nullptr), AVIERR_OK);
        EXPECT_EQ(AVIFileCreateStreamW(file, &raw, &info), AVIERR_OK);
        EXPECT_EQ(AVIMakeCompressedStream(&compressed, raw, &options, nullptr), AVIERR_OK);
        AVIStreamRelease(compressed);
        AVIStreamRelease(raw);
        AVIFileRelease(file);
        AVIFileExit();
        return codec->opened - codec->closed == openBefore;
    }
};

} // namespace

TEST_F(CineStoreCodec, IsFoundByItsExactShortName)
{
    for (const wchar_t* name : {L"Test codec", L"test", L"test codec 2", L"TST1"}) {
        Settings::set(L"RecordCodec", name);
        EXPECT_FALSE(start()) << name;
        EXPECT_TRUE(store.EndStorage());
    }
    Settings::set(L"RecordCodec", L"test codec");
    EXPECT_TRUE(start());
    EXPECT_TRUE(addBlank());
    EXPECT_TRUE(store.EndStorage());
    EXPECT_EQ(AviMovie(fileName).format.biCompression, mmioFOURCC('T', 'S', 'T', '1'));
    expectReleased();
}

TEST_F(CineStoreCodec, MayBeCalledUncompressedInAnotherSpelling)
{
    std::wcscpy(codec->shortName, L"uncompressed");
    Settings::set(L"RecordCodec", L"uncompressed");
    EXPECT_TRUE(start());
    EXPECT_TRUE(addBlank());
    EXPECT_EQ(codec->frames, 1);
    EXPECT_TRUE(store.EndStorage());
}

TEST_F(CineStoreCodec, IsTheSettingsWhateverSetCompressionSaid)
{
    std::wstring name = L"no such codec";
    store.SetCompression(name.data());
    EXPECT_TRUE(start());
    EXPECT_TRUE(store.EndStorage());
    name = L"test codec";
    store.SetCompression(name.data());
    Settings::set(L"RecordCodec", L"no such codec");
    EXPECT_FALSE(start());
    EXPECT_TRUE(store.EndStorage());
}

// The flags of a codec's information record and those of the stream's options have other meanings: the record's
// "temporal" is the options' "key frames as often as the options say", and these say never.
TEST_F(CineStoreCodec, GivesTheOptionsTheFlagsOfItsRecord)
{
    static_assert(VIDCF_TEMPORAL == AVICOMPRESSF_KEYFRAMES);
    codec->flags = VIDCF_TEMPORAL | VIDCF_FASTTEMPORALC;
    ASSERT_TRUE(start());
    EXPECT_TRUE(addBlank());
    EXPECT_TRUE(addBlank());
    EXPECT_EQ(codec->asked, 0u);
    EXPECT_TRUE(store.EndStorage());
    codec->flags = 0;
    ASSERT_TRUE(start());
    EXPECT_TRUE(addBlank());
    EXPECT_TRUE(addBlank());
    EXPECT_EQ(codec->asked, static_cast<DWORD>(ICCOMPRESS_KEYFRAME));
    EXPECT_TRUE(store.EndStorage());
}

TEST_F(CineStoreCodec, GetsTheQualityInHundredthsOfAPercent)
{
    Settings::set(L"RecordQuality", 73);
    ASSERT_TRUE(start());
    EXPECT_TRUE(addBlank());
    EXPECT_EQ(codec->quality, 7300);
    EXPECT_TRUE(store.EndStorage());
}

TEST_F(CineStoreCodec, GetsItsOwnStateBack)
{
    codec->stateSize = 20;
    ASSERT_TRUE(start());
    EXPECT_GE(codec->statesWritten, 1);
    for (unsigned i = 0; i < 32; ++i)
        EXPECT_EQ(codec->state[i], i < 20 ? testCodecStateStart + i : 0u) << i;
    EXPECT_TRUE(store.EndStorage());
}

TEST_F(CineStoreCodec, NeedsNoState)
{
    for (const LONG size : {0L, -1L, -100L}) {
        codec->stateSize = size;
        codec->statesWritten = 0;
        EXPECT_TRUE(start()) << size;
        EXPECT_TRUE(addBlank());
        EXPECT_EQ(codec->statesWritten, 0) << size;
        EXPECT_TRUE(store.EndStorage());
    }
}

TEST_F(CineStoreCodec, RefusedFormatFailsTheStartAndIsReleasedAtTheEnd)
{
    codec->refuseFormat = TRUE;
    EXPECT_FALSE(start());
    EXPECT_TRUE(store.EndStorage());
    expectReleased();
    EXPECT_EQ(completed.calls, 1);
    EXPECT_TRUE(DeleteFileW(fileName.c_str()));
}

TEST_F(CineStoreCodec, RefusedOpeningIsAnUnknownCodec)
{
    codec->refuseOpen = TRUE;
    EXPECT_FALSE(start());
    EXPECT_TRUE(store.EndStorage());
}

TEST_F(CineStoreCodec, FramesWithoutBytesAreRepeatedAtTheEnd)
{
    codec->frameBytes[1] = 0;
    codec->frameBytes[2] = 1;
    codec->frameBytes[3] = 2;
    ASSERT_TRUE(start());
    for (int i = 0; i < 5; ++i)
        addNothing();
    EXPECT_EQ(codec->frames, 5);
    EXPECT_TRUE(store.EndStorage());
    EXPECT_EQ(codec->frames, 7); // two more, of the last composed frame
    const AviMovie movie(fileName);
    EXPECT_EQ(movie.length(), 7);
    Bytes last = bytesOf(upsideDown(backgroundPixels, frameWidth));
    last.resize(16);
    EXPECT_EQ(movie.frame(5), last);
    EXPECT_EQ(movie.frame(6), last);
}

TEST_F(CineStoreCodec, DroppedFramesOfOneRecordingAreCarriedToTheNext)
{
    codec->frameBytes[0] = 0;
    ASSERT_TRUE(start());
    addNothing();
    EXPECT_TRUE(store.EndStorage());
    codec->frameBytes[0] = 16;
    ASSERT_TRUE(start());
    addNothing();
    addNothing();
    EXPECT_TRUE(store.EndStorage());
    EXPECT_EQ(AviMovie(fileName).length(), 3);
}

TEST_F(CineStoreCodec, WholeBitmapsAreNotCountedAsDropped)
{
    codec->frameBytes[0] = 0;
    ASSERT_TRUE(start());
    addBlank();
    addBlank();
    EXPECT_TRUE(store.EndStorage());
    EXPECT_EQ(codec->frames, 2);
}

TEST_F(CineStoreCodec, DestroyingRepeatsNothing)
{
    codec->frameBytes[1] = 0;
    {
        CCineStoreAVI local;
        CBitmap none;
        ASSERT_TRUE(start(local));
        for (int i = 0; i < 3; ++i)
            local.AddFrame(nullptr, nullptr, nullptr, nullptr, nullptr, none, none, false, false, false, false);
    }
    EXPECT_EQ(codec->frames, 3);
    expectReleased();
}

TEST_F(CineStoreCodec, FailureInTheMiddleIsFalseAndTheRecordingGoesOn)
{
    codec->failFrom = 2;
    ASSERT_TRUE(start());
    EXPECT_TRUE(addNothing());
    EXPECT_TRUE(addNothing());
    EXPECT_FALSE(addNothing());
    codec->failFrom = -1;
    EXPECT_TRUE(addNothing()); // at index 3
    EXPECT_TRUE(store.EndStorage());
    EXPECT_EQ(codec->frames, 5); // the failed one produced no bytes, so the last is repeated
    EXPECT_EQ(AviMovie(fileName).length(), 5);
    expectReleased();
}

TEST_F(CineStoreCodec, CodecThatIsSlowToCloseIsWaitedForAndTheMovieIsWhole)
{
    codec->closing = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    HANDLE mayClose = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    ASSERT_TRUE(start());
    EXPECT_TRUE(addBlank());
    ResetEvent(codec->closing);
    codec->mayClose = mayClose;
    int callsWhileClosing = -1;
    std::thread other([&] {
        EXPECT_EQ(WaitForSingleObject(codec->closing, 30000), WAIT_OBJECT_0);
        callsWhileClosing = completed.calls;
        SetEvent(mayClose);
    });
    EXPECT_TRUE(store.EndStorage());
    other.join();
    EXPECT_EQ(callsWhileClosing, 0); // nobody is told before the movie is closed
    EXPECT_EQ(completed.calls, 1);
    EXPECT_EQ(AviMovie(fileName).length(), 1);
    codec->mayClose = nullptr;
    CloseHandle(std::exchange(codec->closing, nullptr));
    CloseHandle(mayClose);
}

TEST_F(CineStoreCodec, ThousandRecordingsLeakNeitherHandlesNorDrawingObjectsNorCodecs)
{
    codec->stateSize = 8;
    const auto mask0 = maskOf(30, 30, 1);
    const auto record = [&](int i) {
        Settings::set(L"RecordCodec", i % 2 ? L"test codec" : L"Uncompressed");
        Settings::set(L"RecordQuality", i % 100);
        CCineStoreAVI local;
        GivenPlanes planes(1, {});
        ASSERT_TRUE(start(local));
        for (int frame = 0; frame < 2; ++frame)
            ASSERT_TRUE(local.AddFrame(planes.given[0].data(), planes.given[1].data(), planes.given[2].data(),
                                       planes.given[3].data(), planes.given[4].data(), *mask0, *mask0, true, false,
                                       true, false));
        if (i % 3) local.EndStorage();
    };
    const auto handles = [] {
        DWORD count = 0;
        GetProcessHandleCount(GetCurrentProcess(), &count);
        return count;
    };
    for (int i = 0; i < 6; ++i)
        record(i);
    const DWORD handlesBefore = handles();
    const DWORD objectsBefore = GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS);
    for (int i = 0; i < 1000; ++i)
        record(i);
    EXPECT_EQ(handles(), handlesBefore);
    EXPECT_EQ(GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS), objectsBefore);
    expectReleased();
}

TEST_F(CineStoreAvi, RecordsMotionJpegAtTheConfiguredQuality)
{
    InstalledCodec installed(L"MJPG", L"mjpgcodec.dll");
    Settings::set(L"RecordCodec", L"MJPG");
    std::size_t sizes[2] = {};
    for (const int i : {0, 1}) {
        Settings::set(L"RecordQuality", i ? 95 : 20);
        ASSERT_TRUE(start());
        EXPECT_TRUE(addNothing());
        EXPECT_TRUE(addBitmap(noise(frameWidth, frameHeight, 3)));
        EXPECT_TRUE(store.EndStorage());
        const AviMovie movie(fileName);
        EXPECT_EQ(movie.length(), 2);
        EXPECT_EQ(movie.format.biCompression, mmioFOURCC('M', 'J', 'P', 'G'));
        const Bytes frame = movie.frame(1);
        ASSERT_GT(frame.size(), 4u);
        EXPECT_EQ(frame[0], 0xFF);
        EXPECT_EQ(frame[1], 0xD8);
        sizes[i] = frame.size();
    }
    EXPECT_LT(sizes[0], sizes[1]);
}

// Run by cine_movie_readers.sh: leaves movies and the frames that went into them, for readers that nobody here wrote.
TEST_F(CineStoreAvi, WritesMoviesForOtherReaders)
{
    const std::wstring target = test_support::environmentVariable(L"MOVIE_FOLDER");
    if (target.empty()) GTEST_SKIP() << "needs a folder for its movies; cine_movie_readers.sh names one";
    const InstalledCodec installed(L"MJPG", L"mjpgcodec.dll");
    Settings::set(L"RecordQuality", 100);
    std::vector<Pixels> frames;
    for (const wchar_t* codec : {L"Uncompressed", L"MJPG"}) {
        Settings::set(L"RecordCodec", codec);
        fileName = target + L"\\" + codec + L".avi";
        frames.clear();
        ASSERT_TRUE(start());
        for (unsigned i = 0; i < 25; ++i) {
            Pixels frame(frameWidth * frameHeight);
            for (unsigned at = 0; at < frame.size(); ++at)
                frame[at] = 0x010101u * (at / frameWidth * 3 + i * 2) + at % frameWidth * 0x000001u;
            EXPECT_TRUE(addBitmap(frame, false, false));
            frames.push_back(frame);
        }
        EXPECT_TRUE(store.EndStorage());
    }
    HANDLE file =
        CreateFileW((target + L"\\frames.bgr0").c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
    for (const Pixels& frame : frames) {
        DWORD written = 0;
        EXPECT_TRUE(WriteFile(file, frame.data(), static_cast<DWORD>(frame.size() * 4), &written, nullptr));
    }
    CloseHandle(file);
}

// Run by the test cine_two_gib, because it writes 2 GiB.
TEST_F(CineStoreAvi, MovieEndsBeforeTwoGibibytesAndPlaysUpToThere)
{
    if (test_support::environmentVariable(L"CINE_TWO_GIB").empty())
        GTEST_SKIP() << "writes 2 GiB; run the test cine_two_gib";
    constexpr int side = 4096;
    CBitmap frame;
    frame.CreateBitmap(side, side, 1, 32, Pixels(side * side, 0x336699).data());
    ASSERT_TRUE(store.InitStorage(fileName.c_str(), nullptr, side, side, CRect(), 32));
    int written = 0;
    while (written < 40 && store.AddFrame(frame, false, true))
        ++written;
    EXPECT_EQ(written, 31); // of 64 MiB each
    EXPECT_FALSE(store.AddFrame(frame, false, true));
    EXPECT_TRUE(store.EndStorage());
    const AviMovie movie(fileName);
    ASSERT_EQ(movie.length(), 31);
    EXPECT_EQ(movie.frame(30).size(), 4u * side * side);
    EXPECT_EQ(movie.frame(0)[1], 0x66);
}

// Run by cine_disk_full.sh, which lets this process write CINE_FILE_LIMIT bytes to any one file.
TEST_F(CineStoreAvi, DiskFullFailsTheFrameAndTheEndReturns)
{
    if (test_support::environmentVariable(L"CINE_FILE_LIMIT").empty())
        GTEST_SKIP() << "needs a limit on the size of files; cine_disk_full.sh sets one";
    ASSERT_TRUE(start(store, 1024, 768));
    EXPECT_FALSE(addNothing()); // 3 MiB
    EXPECT_FALSE(addNothing());
    EXPECT_TRUE(store.EndStorage());
    EXPECT_EQ(completed.calls, 1);
}
