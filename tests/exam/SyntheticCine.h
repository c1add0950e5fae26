#pragma once

// Recordings of one frame of one grey level, from a linear and a curved probe.

#include "image/ImageView.h"
#include "test_support/Files.h"
#include "test_support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <qor_utils/ZelProbe.h>

#include <cstdint>
#include <string>
#include <vector>

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
    const uDataDesc& s = cine.stream;
    const std::vector<std::int32_t> words = {cine.type,
                                             cine.count,
                                             s.lines,
                                             s.samples,
                                             s.bitsPerSample,
                                             s.samplingFreq,
                                             s.soundSpeed,
                                             s.probeType,
                                             s.elements,
                                             s.pitch,
                                             s.radius,
                                             s.sectorAngle,
                                             s.frameRate,
                                             cine.steerAngle,
                                             cine.apexAngle,
                                             cine.lineOffset,
                                             cine.apertureLines,
                                             0,
                                             0};
    std::string bytes(reinterpret_cast<const char*>(words.data()), words.size() * 4);
    const std::size_t bright = static_cast<std::size_t>(depth > 0 ? depth : samples);
    for (int line = 0; line < lines; ++line) {
        bytes.append(bright, static_cast<char>(level));
        bytes.append(samples - bright, '\0');
    }
    const test_support::TemporaryFolder folder;
    test_support::WriteFile(folder / L"test.cine", bytes);
    CineFile file;
    ASSERT_EQ(file.Open(folder / L"test.cine"), L"");
    view.SetRecording(file, CSize(300, 280), depth);
    ASSERT_TRUE(view.Show(file, 0));
}

} // namespace synthetic_cine
