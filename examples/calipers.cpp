// Image geometry: a caliper on the image of a curved probe. Pixels become scan lines and samples,
// those become millimetres, and a mask tells which pixels show an echo at all.
#include <qor_utils/PixelCoordinates.h>
#include <Utils_Statics/CImgGeometry.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <vector>

int main()
{
    const ZelProbe probe = {qor_utils::curvedProbe, 128, 470, 60000, 0};
    const int lines = 128, samples = 2048, samplingFreq = 20'000'000, soundSpeed = 1540;
    const UPoint origin = {320, -280}, micronsPerPixel = {200, 200}; // 0.2 mm a pixel
    const int width = 640, height = 480;

    const auto pixelOf = [&](int line, int sample) {
        return qor_utils::GetPixelCoordinates(line, sample, origin, micronsPerPixel, samplingFreq,
                                              0, 0, &probe, soundSpeed, 0, width, height, 0);
    };
    const UPoint from = pixelOf(64, 500), to = pixelOf(64, 1500);
    std::printf("from (%d, %d) to (%d, %d)\n", int(from.x), int(from.y), int(to.x), int(to.y));

    const double pixels = std::hypot(to.x - from.x, to.y - from.y);
    std::printf("%.1f mm on the screen\n", pixels * micronsPerPixel.x / 1000.0);
    const int microns = CImgGeometry::GetUSDistance(500, 1500, samplingFreq, soundSpeed);
    std::printf("%.1f mm along the line\n", microns / 1000.0);

    const UPoint back =
        CImgGeometry::GetUSCoordinates(to.x, to.y, origin, micronsPerPixel, samplingFreq, 0, 0,
                                       lines, &probe, soundSpeed, 0, width, height, 0);
    std::printf("the caliper's end is near line %d, sample %d\n", int(back.x), int(back.y));

    std::vector<unsigned char> mask(width * height);
    CImgGeometry::CreateImageMask(mask.data(), width, height, samplingFreq, 0, lines,
                                  CRect(0, 0, probe.elements, samples), 0, &probe, soundSpeed,
                                  origin, micronsPerPixel, 255);
    std::printf("the corner is %s\n", mask.front() ? "imaged" : "black");
    std::printf("the middle is %s\n", mask[height / 2 * width + width / 2] ? "imaged" : "black");
}
