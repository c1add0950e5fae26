#include "image/CineCheck.h"
#include "image/ImageView.h"
#include "image/ProbeType.h"

#include "test_support/Files.h"
#include "test_support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

using namespace exam;

namespace {

constexpr int lines = 64;
constexpr int samples = 512;
constexpr unsigned char level = 200;

CineDescription Linear()
{
    CineDescription cine;
    cine.count = 1;
    cine.stream.lines = lines;
    cine.stream.samples = samples;
    cine.stream.bitsPerSample = 8;
    cine.stream.samplingFreq = 20'000'000;
    cine.stream.soundSpeed = 1540;
    cine.stream.probeType = linearProbe;
    cine.stream.elements = 128;
    cine.stream.pitch = 200;
    cine.apertureLines = lines;
    return cine;
}

CineDescription Curved()
{
    CineDescription cine = Linear();
    cine.stream.probeType = curvedProbe;
    cine.stream.radius = 40'000;
    return cine;
}

// Writes one frame of one grey level and shows it.
void Show(const CineDescription& cine, ImageView& view)
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
    bytes.append(std::size_t{lines} * samples, static_cast<char>(level));
    const test_support::TemporaryFolder folder;
    test_support::writeFile(folder / L"test.cine", bytes);
    CineFile file;
    ASSERT_EQ(file.Open(folder / L"test.cine"), L"");
    view.SetRecording(file, CSize(300, 280));
    ASSERT_TRUE(view.Show(file, 0));
}

} // namespace

TEST(ImageView, ShowsTheFrameWhereItsGeometrySays)
{
    for (const CineDescription& cine : {Linear(), Curved()}) {
        ImageView view;
        Show(cine, view);
        for (const int line : {1, lines / 2, lines - 2})
            for (const int sample : {3, samples / 2, samples - 4})
                EXPECT_EQ(view.Grey(view.Parameters().Pixel(line, sample)), level)
                    << "line " << line << ", sample " << sample;
        const CPoint left = view.Parameters().Pixel(0, samples / 2);
        const CPoint right = view.Parameters().Pixel(lines - 1, samples / 2);
        EXPECT_EQ(view.Grey({left.x - 4, left.y}), 0);
        EXPECT_EQ(view.Grey({right.x + 4, right.y}), 0);
    }
}

TEST(ImageView, FindsTheLineAndSampleOfAPixel)
{
    ImageView view;
    Show(Curved(), view);
    const ImagingParameters& image = view.Parameters();
    const UPoint found = image.ScanPosition(image.Pixel(20, 300));
    EXPECT_NEAR(found.x, 20, 1);
    EXPECT_NEAR(found.y, 300, 3);
}

// The conversion of frames knows whole apertures only. Shown over the whole aperture, a part of it
// would be measured wrongly.
TEST(CineHeader, OfAPartOfTheApertureIsRefused)
{
    EXPECT_EQ(FindHeaderProblem(Linear()), L"");
    CineDescription part = Linear();
    part.apertureLines = 2 * lines;
    EXPECT_NE(FindHeaderProblem(part), L"");
    part.apertureLines = 0; // one line per element
    EXPECT_NE(FindHeaderProblem(part), L"");
    part.stream.elements = lines;
    EXPECT_EQ(FindHeaderProblem(part), L"");
    part.lineOffset = 1;
    EXPECT_NE(FindHeaderProblem(part), L"");
}
