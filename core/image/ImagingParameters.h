#pragma once

#include "image/ImageTurn.h"
#include "image/RawCine.h"

#include <qor_utils/ScanGeometry.h>
#include <qor_utils/UPoint.h>
#include <qor_utils/ZelProbe.h>

#include <atltypes.h>

#include <cstdint>
#include <vector>

class CDC;

namespace exam {

/// A place in a frame: microns from the origin of its geometry, whatever part of it an image shows
/// at whatever scale.
struct FramePoint
{
    double x = 0;
    double y = 0;
};

/// The input of the geometry functions for one displayed image. Their long parameter lists are
/// written out here and nowhere else. Coordinates are pixels of the image as it lies on the screen;
/// (0, 0) is its upper left corner.
struct ImagingParameters
{
    static constexpr int lineOffset = 0; ///< frames begin at the first line of the aperture

    ZelProbe probe{};
    int samplingFreq = 0; ///< Hz
    int soundSpeed = 0;   ///< m/s
    int steerAngle = 0;   ///< thousandths of a degree
    int apexAngle = 0;    ///< virtual apex, thousandths of a degree; 0: none
    int lines = 0;        ///< in a frame, over the whole aperture
    int samples = 0;      ///< in a line
    UPoint origin; ///< centre of curvature, or of a flat probe's face; a pixel of the upright image
    UPoint micronsPerPixel; ///< equal in x and y: the image has true proportions
    int width = 0;          ///< size of the upright image
    int height = 0;
    Orientation orientation; ///< of the image on the screen

    ImageTurn Turn() const { return {orientation, CSize(width, height)}; }

    /// The size of the image on the screen.
    CSize Size() const { return Turn().Size(); }

    /// The pixel of a sample on a scan line.
    CPoint Pixel(int line, int sample) const;

    /// The scan line (x) and sample (y) nearest to a pixel. A pixel outside the frame gives a
    /// position on its edge.
    UPoint ScanPosition(CPoint pixel) const;

    /// The place in the frame that is shown at a position of the image, and that position.
    FramePoint InFrame(const PixelPoint& pixel) const;
    PixelPoint PixelOf(const FramePoint& point) const;

    /// Draws the line of constant depth between two scan lines with the selected pen. The context
    /// begins at the image's corner.
    void DrawDepthLine(CDC& dc, int sample, int line1, int line2) const;

    /// The pixel of the probe's face at which a beam through two places enters the body; each is a
    /// scan line (x) and a sample (y).
    CPoint EntryOfBeam(const UPoint& first, const UPoint& second) const;

    /// The distance between two pixels.
    double Millimetres(CPoint a, CPoint b) const;

    /// The distance along a scan line from one sample to another.
    double DepthMillimetres(int sample1, int sample2) const;

    /// The depth of the whole frame.
    double DepthMillimetres() const;

    /// The microns from one sample to the next.
    double SampleMicrons() const;

    /// The mask of the imaged region: a byte for each pixel, rows from the top, not 0 inside.
    std::vector<std::uint8_t> Mask() const;

    /// The input of the conversion of whole frames to upright images. It points to the probe of
    /// this object.
    qor_utils::ScanGeometry ToScanGeometry() const;
};

/// The probe that a recording's description names.
ZelProbe ProbeOf(const uDataDesc& stream);

/// Chooses the scale and the position at which the frames of a recording fill an image of `size`
/// pixels on the screen: whole, centred sideways, with a margin all round.
ImagingParameters FitImage(const CineDescription& cine, CSize size,
                           const Orientation& orientation = {});

/// Shows a part of a fitted image `zoom` times as large, with a place of the frame in the middle,
/// or as near to it as the frame's edges allow. A frame that is lower or narrower than the image
/// stays where it is fitted in that direction.
ImagingParameters ZoomImage(const ImagingParameters& fitted, double zoom, const FramePoint& middle);

} // namespace exam
