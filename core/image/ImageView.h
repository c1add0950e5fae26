#pragma once

#include "image/FrameSource.h"
#include "image/GreyWindow.h"
#include "image/ImagingParameters.h"

#include <qor_imgproc/FrameMap.h>

#include <afxwin.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace exam {

/// One frame, scan-converted for display.
class ImageView
{
public:
    /// Fits the frames of `source` into an image of `size` pixels, which is black until Show(). It
    /// shows the first `depth` samples of each line, or all of them for 0.
    void SetSource(const FrameSource& source, CSize size, int depth = 0);

    /// The image is shown between so many times smaller and larger than it is fitted.
    static constexpr double mostZoom = 8;
    double LeastZoom() const;
    double Zoom() const { return m_zoom; }

    /// Change the part of the frame that the image shows from the next Show() on, within the
    /// frame's edges. Another recording is shown as the one before it.
    void ZoomAt(double factor, CPoint pixel); ///< what the pixel shows stays there
    void Pan(CSize pixels);                   ///< what is shown moves by so many pixels
    void ShowWhole();                         ///< fitted
    void ShowSamples();                       ///< a pixel for each sample of a line, at the middle

    /// Says how the frames of the next SetSource() lie in the image.
    void SetOrientation(const Orientation& orientation) { m_orientation = orientation; }

    /// Set the gain of the frames that are shown from now on, in decibels, and their grey levels.
    void SetGain(int decibels) { m_gain = decibels; }
    void SetGreyWindow(const GreyWindow& window) { m_window = window; }

    /// Converts frame number `frame` of `source`, which must be the one that was set. False
    /// when it cannot be read; the image is unchanged then.
    bool Show(const FrameSource& source, int frame);

    void Paint(CDC& dc, CPoint at) const;
    /// Fills what is painted outside the imaged region with a colour.
    void FillOutside(CDC& dc, CPoint at, COLORREF colour) const;

    const ImagingParameters& Parameters() const { return m_parameters; }

    /// The image's grey levels, or the green of a picture, rows from the top; 0 outside the imaged
    /// region.
    std::span<const std::uint8_t> GreyLevels() const { return m_grey; }

    /// Grey level of a pixel; 0 outside the imaged region and outside the image.
    int Grey(CPoint pixel) const;

private:
    void Look();
    PixelPoint Centre() const;
    FramePoint Middle() const;
    void CutLines(int samples);
    void ChangeLevels();
    void Convert(const std::uint8_t* frame);
    void ConvertColours();
    bool Contains(CPoint pixel) const;
    std::size_t IndexOf(CPoint pixel) const;

    Orientation m_orientation;
    CSize m_size{};
    ImagingParameters m_fitted;
    double m_zoom = 1;
    FramePoint m_middle; // while the image is zoomed
    ImagingParameters m_parameters;
    std::vector<std::uint8_t> m_frame;          // the shown samples, line by line
    std::optional<qor_imgproc::FrameMap> m_map; // made by Look(), applied to each frame
    std::vector<std::uint8_t> m_upright;        // before it is turned
    std::vector<std::uint8_t> m_grey;           // rows from the top, without padding
    bool m_isPicture = false;
    std::vector<std::uint8_t> m_pixels; // of a picture: blue, green, red and 0; else empty
    int m_gain = 0;                     // decibels
    GreyWindow m_window;
};

} // namespace exam
