#pragma once

#include "CineCompleted.h"

#include <gtest/gtest.h>
#include <test_support/TemporaryFolder.h>
#include <Utils_Statics/CCineStoreAVI.h>

#include <afxwin.h>

#include <windows.h>
#include <vfw.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

// The application's settings, in a registry key of this process that is removed with it.
namespace capture_settings {

void Set(const wchar_t* entry, const wchar_t* value);
void Set(const wchar_t* entry, int value);
void Clear();

} // namespace capture_settings

// ---- Pictures

using Bytes = std::vector<std::uint8_t>;
using Pixels = std::vector<unsigned int>;

// Random colours without their fourth byte.
Pixels Noise(int width, int height, unsigned seed);

// Plain forms of the turns.
Pixels UpsideDown(const Pixels& pixels, int width);
Pixels Mirrored(Pixels pixels, int width);

// The pixels as they lie in memory.
Bytes BytesOf(const Pixels& pixels);

std::unique_ptr<CBitmap> BitmapOf(const Pixels& pixels, int width, int height);

// A random mask of one bit a pixel.
std::unique_ptr<CBitmap> MaskOf(int width, int height, unsigned seed);

struct Turns
{
    bool mirror0, bottomUp0, mirror1, bottomUp1;
};

// Five planes as an application gives them, and their content after the turns.
struct GivenPlanes
{
    GivenPlanes(unsigned seed, const Turns& turns);

    Pixels given[5];
    Pixels turned[5];
};

// ---- Movies

constexpr int frameWidth = 64;
constexpr int frameHeight = 48;

// Two image areas side by side, a strip of controls below, an overlay.
extern const std::vector<CRect> layout;

// A finished movie, opened for reading; its video stream as stored in the file.
class AviMovie
{
public:
    explicit AviMovie(const std::wstring& path)
    {
        AVIFileInit();
        if (AVIFileOpenW(&m_file, path.c_str(), OF_READ | OF_SHARE_DENY_NONE, nullptr) != AVIERR_OK)
            return;
        if (AVIFileGetStream(m_file, &m_stream, streamtypeVIDEO, 0) != AVIERR_OK) return;
        AVIStreamInfoW(m_stream, &info, sizeof info);
        LONG size = sizeof format;
        AVIStreamReadFormat(m_stream, 0, &format, &size);
    }
    ~AviMovie()
    {
        if (m_stream) AVIStreamRelease(m_stream);
        if (m_file) AVIFileRelease(m_file);
        AVIFileExit();
    }
    AviMovie(const AviMovie&) = delete;
    AviMovie& operator=(const AviMovie&) = delete;

    bool IsOpen() const { return m_stream != nullptr; }
    LONG Length() const { return m_stream ? AVIStreamLength(m_stream) : -1; }

    bool IsKeyFrame(LONG index) const
    {
        return AVIStreamFindSample(m_stream, index, FIND_KEY | FIND_PREV) == index;
    }

    // The bytes of one frame; empty for a missing one.
    std::vector<std::uint8_t> Frame(LONG index) const
    {
        LONG bytes = 0;
        LONG samples = 0;
        if (AVIStreamRead(m_stream, index, 1, nullptr, 0, &bytes, &samples) != AVIERR_OK ||
            bytes <= 0)
            return {};
        std::vector<std::uint8_t> data(static_cast<std::size_t>(bytes));
        if (AVIStreamRead(m_stream, index, 1, data.data(), bytes, &bytes, &samples) != AVIERR_OK)
            return {};
        data.resize(static_cast<std::size_t>(bytes));
        return data;
    }

    AVISTREAMINFOW info{};
    BITMAPINFOHEADER format{};

private:
    PAVIFILE m_file = nullptr;
    PAVISTREAM m_stream = nullptr;
};

// Records without compression, from a background of noise.
class CineStoreAvi : public testing::Test
{
protected:
    CineStoreAvi()
    {
        capture_settings::Clear();
        capture_settings::Set(L"RecordCodec", L"Uncompressed");
        store.SetCompleteCallback(&Completed::Notify, &completed);
    }

    bool Start(CCineStoreAVI& recorder, int width = frameWidth, int height = frameHeight)
    {
        return recorder.InitStorage(fileName.c_str(), background.get(), width, height, layout, 32);
    }
    bool Start() { return Start(store); }

    bool AddBitmap(const Pixels& pixels, bool mirror = false, bool bottomUp = true)
    {
        return store.AddFrame(*BitmapOf(pixels, frameWidth, frameHeight), mirror, bottomUp);
    }
    bool AddBlank() { return AddBitmap(Pixels(frameWidth * frameHeight, 0x123456)); }

    bool AddNothing()
    {
        CBitmap none;
        return store.AddFrame(nullptr, nullptr, nullptr, nullptr, nullptr, none, none, false, false,
                              false, false);
    }

    test_support::TemporaryFolder folder;
    std::wstring fileName = folder / L"movie.avi";
    Pixels backgroundPixels = Noise(frameWidth, frameHeight, 100);
    std::unique_ptr<CBitmap> background = BitmapOf(backgroundPixels, frameWidth, frameHeight);
    Completed completed;
    CCineStoreAVI store;
};
