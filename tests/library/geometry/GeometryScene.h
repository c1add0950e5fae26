#pragma once

#include <qor_utils/PixelCoordinates.h>
#include <Utils_Statics/CImgGeometry.h>

#include <algorithm>

// The parameters that the drawing functions and the conversions share. An image without a size is
// not flipped.
struct Scene
{
    ZelProbe probe{0, 96, 300, 40000, 80000};
    UPoint origin{320, -60};
    UPoint scale{220, 200};
    int samplingFreq = 7700000; // 100 microns a sample
    int scanA = 0;
    int scanB = 0;
    int soundSpeed = 1540;
    int scanC = 0;
    int width = 640;
    int height = 480;
    int flip = 0;
    int ld = 0;

    UPoint At(int line, int sample) const
    {
        return qor_utils::GetPixelCoordinatesLD(line, sample, origin, scale, samplingFreq, scanA,
                                                scanB, &probe, soundSpeed, ld, scanC, width, height,
                                                flip);
    }
    // The position a distance in microns below a sample.
    UPoint Below(int line, int sample, int distance) const
    {
        return CImgGeometry::GetPixelDistanceCoordinates(line, sample, distance, origin, scale,
                                                         samplingFreq, scanA, scanB, &probe,
                                                         soundSpeed, scanC, width, height, flip);
    }

    URect Vertical(CDC* dc, int line, int sample1, int sample2) const
    {
        return CImgGeometry::DrawVerticalUSLine(dc, line, sample1, sample2, origin, scale,
                                                samplingFreq, scanA, scanB, &probe, soundSpeed,
                                                scanC, width, height, flip, ld);
    }
    URect Horizontal(CDC* dc, int sample, int line1, int line2) const
    {
        return CImgGeometry::DrawHorizontalUSLine(dc, sample, line1, line2, origin, scale,
                                                  samplingFreq, scanA, scanB, &probe, soundSpeed,
                                                  scanC, width, height, flip, ld);
    }
    URect VerticalClip(CDC* dc, int line, int sample1, int sample2, const ULine& clip1,
                       const ULine& clip2) const
    {
        return CImgGeometry::DrawVerticalUSLineClip(dc, line, sample1, sample2, origin, scale,
                                                    samplingFreq, scanA, scanB, &probe, soundSpeed,
                                                    clip1, clip2, scanC, width, height, flip, ld);
    }
    URect HorizontalClip(CDC* dc, int sample, int line1, int line2, const ULine& clip1,
                         const ULine& clip2) const
    {
        return CImgGeometry::DrawHorizontalUSLineClip(
            dc, sample, line1, line2, origin, scale, samplingFreq, scanA, scanB, &probe, soundSpeed,
            clip1, clip2, scanC, width, height, flip, ld);
    }
};

inline URect Bounds(const UPoint& a, const UPoint& b)
{
    return {std::min(a.x, b.x), std::min(a.y, b.y), std::max(a.x, b.x), std::max(a.y, b.y)};
}

// Straight below the origin at (400, 10), with one pixel a sample.
inline Scene SceneOf(const ZelProbe& probe, int scanB = 0)
{
    Scene s;
    s.probe = probe;
    s.origin = {400, 10};
    s.scale = {100, 100};
    s.scanB = scanB;
    s.width = 800;
    s.height = 600;
    return s;
}
