#pragma once

#include <Utils_Statics/CCineStoreAVI.h>

#include "AviMovie.h"
#include "cine_completed.h"
#include "cine_pictures.h"

#include <test_support/TemporaryFolder.h>

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

// The application's settings, in a registry key of this process that goes with it.
namespace capture_settings {

void set(const wchar_t* entry, const wchar_t* value);
void set(const wchar_t* entry, int value);
void clear();

} // namespace capture_settings

constexpr int frameWidth = 64;
constexpr int frameHeight = 48;

// Two image areas side by side, a strip of controls below, an overlay.
extern const std::vector<CRect> layout;

// Records without compression, from a background of noise.
class CineStoreAvi : public testing::Test
{
protected:
    CineStoreAvi()
    {
        capture_settings::clear();
        capture_settings::set(L"RecordCodec", L"Uncompressed");
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
        return store.AddFrame(nullptr, nullptr, nullptr, nullptr, nullptr, none, none, false, false,
                              false, false);
    }

    test_support::TemporaryFolder folder;
    std::wstring fileName = folder / L"movie.avi";
    Pixels backgroundPixels = noise(frameWidth, frameHeight, 100);
    std::unique_ptr<CBitmap> background = bitmapOf(backgroundPixels, frameWidth, frameHeight);
    Completed completed;
    CCineStoreAVI store;
};
