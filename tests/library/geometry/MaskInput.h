#pragma once

#include <gtest/gtest.h>
#include <qor_utils/ZelProbe.h>
#include <Utils_Statics/CImgGeometry.h>

#include <algorithm>
#include <vector>

// The arguments of CreateImageMask.
struct MaskInput
{
    int width = 0, height = 0;
    int samplingFreq = 0;
    int steerAngle = 0;
    int lines = 0;
    CRect imageRect;
    int scanB = 0;
    const ZelProbe* probe = nullptr;
    int soundSpeed = 1540;
    UPoint origin, scale;
    unsigned char value = 255;
};

using Bytes = std::vector<unsigned char>;

inline std::size_t Size(const MaskInput& in)
{
    return static_cast<std::size_t>(std::max(0, in.width)) *
           static_cast<std::size_t>(std::max(0, in.height));
}

inline bool Create(unsigned char* mask, const MaskInput& in)
{
    return CImgGeometry::CreateImageMask(mask, in.width, in.height, in.samplingFreq, in.steerAngle,
                                         in.lines, in.imageRect, in.scanB, in.probe, in.soundSpeed,
                                         in.origin, in.scale, in.value);
}

inline Bytes Mask(const MaskInput& in)
{
    Bytes mask(Size(in), 0x55);
    EXPECT_TRUE(Create(mask.data(), in));
    return mask;
}

inline MaskInput CurvedInput(const ZelProbe& probe)
{
    MaskInput in;
    in.probe = &probe;
    in.width = 400;
    in.height = 300;
    in.samplingFreq = 7700000;
    in.lines = 128;
    in.imageRect = CRect(0, 0, 128, 900);
    in.origin = {200, -80};
    in.scale = {400, 400};
    return in;
}

inline constexpr ZelProbe Curved{0, 128, 400, 40000, 0};
