#pragma once

// These are recordings of one frame of one grey level, from a linear and a curved probe.

#include "image/CineFile.h"
#include "image/CineWriting.h"
#include "image/ImageView.h"
#include "test_support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <qor_utils/ZelProbe.h>

#include <string>

namespace synthetic_cine {

using namespace exam;

// The size of its frames.
constexpr int lines = 64;
constexpr int samples = 512;
constexpr unsigned char level = 200; // value of every sample

inline CineDescription Linear()
{
    CineDescription cine;
    cine.count = 1;
    cine.stream.lines = lines;
    cine.stream.samples = samples;
    cine.stream.bitsPerSample = 8;
    cine.stream.samplingFreq = 20'000'000;
    cine.stream.soundSpeed = 1540;
    cine.stream.probeType = qor_utils::linearProbe;
    cine.stream.elements = 128;
    cine.stream.pitch = 200;
    cine.apertureLines = lines;
    return cine;
}

inline CineDescription Curved()
{
    CineDescription cine = Linear();
    cine.stream.probeType = qor_utils::curvedProbe;
    cine.stream.radius = 40'000;
    return cine;
}

// Writes one frame of one grey level and shows it in an image of 300 x 280 pixels. With a depth,
// the samples below it are black, and the image ends there.
inline void Show(const CineDescription& cine, ImageView& view, int depth = 0)
{
    std::string frame;
    const std::size_t bright = static_cast<std::size_t>(depth > 0 ? depth : samples);
    for (int line = 0; line < lines; ++line) {
        frame.append(bright, static_cast<char>(level));
        frame.append(samples - bright, '\0');
    }
    const test_support::TemporaryFolder folder;
    CCineStore store;
    ASSERT_TRUE(BeginCine(store, folder / L"test.cine", cine));
    ASSERT_TRUE(store.AddFrame(frame.data(), static_cast<int>(frame.size())));
    ASSERT_TRUE(store.EndStorage());
    CineFile file;
    ASSERT_EQ(file.Open(folder / L"test.cine"), L"");
    view.SetSource(file, CSize(300, 280), depth);
    ASSERT_TRUE(view.Show(file, 0));
}

} // namespace synthetic_cine
