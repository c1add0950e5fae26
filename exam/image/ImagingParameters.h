#pragma once

#include "image/CineFile.h"

#include <qor_utils/UPoint.h>

#include <atltypes.h>

namespace exam {

// Everything that the geometry functions want to know about one displayed image, in their order.
// Coordinates are pixels of the image, (0, 0) its upper left corner.
struct ImagingParameters
{
    UPoint origin;          // centre of curvature, or of the aperture's face on a flat probe
    UPoint micronsPerPixel; // equal in x and y: the image has true proportions
    int samplingFreq = 0;   // Hz
    int scanA = 0;          // steering angle, thousandths of a degree
    int scanB = 0;          // virtual apex, thousandths of a degree
    ZelProbe probe{};
    int soundSpeed = 0; // m/s
    int scanC = 0;      // line offset
    int width = 0;      // of the image
    int height = 0;
    int flip = 0; // bit 0: left-right, bit 1: top-bottom
    int ld = 0;   // scan lines over the aperture
    int lines = 0;
    int samples = 0;

    // The pixel of a sample on a scan line.
    CPoint Pixel(int line, int sample) const;

    // The nearest scan line and sample to a pixel: x is the line, y the sample.
    UPoint ScanPosition(CPoint pixel) const;

    // The distance of two pixels.
    double Millimetres(CPoint a, CPoint b) const;

    double DepthMillimetres() const;
};

// The parameters with which the whole frame of `cine` fills an image of `size` pixels as large as
// it can, centred sideways, with a margin all round.
ImagingParameters FitImage(const CineFile& cine, CSize size);

} // namespace exam
