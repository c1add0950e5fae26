#pragma once

#include "image/CineFile.h"

#include <qor_imgproc/FrameGeometry.h>
#include <qor_utils/UPoint.h>

#include <afxwin.h>

namespace exam {

// What the geometry functions need to know about one displayed image, and the one place where their
// long parameter lists are written out. Coordinates are pixels of the image, (0, 0) its upper left
// corner.
struct ImagingParameters
{
    ZelProbe probe{};
    int samplingFreq = 0;   // Hz
    int soundSpeed = 0;     // m/s
    int steerAngle = 0;     // thousandths of a degree
    int apexAngle = 0;      // of a virtual apex, thousandths of a degree; 0: none
    int lineOffset = 0;     // lines
    int apertureLines = 0;  // scan lines over the aperture; 0: one per element
    int lines = 0;          // of a frame
    int samples = 0;        // of a line
    UPoint origin;          // centre of curvature, or of the aperture's face on a flat probe
    UPoint micronsPerPixel; // equal in x and y: the image has true proportions
    int width = 0;          // of the image
    int height = 0;
    int flip = 0; // bit 0: left-right, bit 1: top-bottom

    // The pixel of a sample on a scan line.
    CPoint Pixel(int line, int sample) const;

    // The nearest scan line and sample to a pixel: x is the line, y the sample.
    UPoint ScanPosition(CPoint pixel) const;

    // The part of a scan line between two samples, drawn with the pen that is selected.
    void DrawScanLine(CDC& dc, int line, int sample1, int sample2) const;

    // The line of constant depth between two scan lines, drawn likewise.
    void DrawDepthLine(CDC& dc, int sample, int line1, int line2) const;

    // The distance of two pixels.
    double Millimetres(CPoint a, CPoint b) const;

    // The way along a scan line from one sample to another.
    double DepthMillimetres(int sample1, int sample2) const;

    // The depth of the whole frame.
    double DepthMillimetres() const;

    // The same for the conversion of whole frames. It points to the probe of this object.
    FrameGeometry ToFrameGeometry() const;
};

// The parameters with which the whole frame of `cine` fills an image of `size` pixels as large as
// it can, centred sideways, with a margin all round.
ImagingParameters FitImage(const CineFile& cine, CSize size);

} // namespace exam
