#pragma once

#include "image/CineFile.h"
#include "image/ImagingParameters.h"

#include <afxwin.h>
#include <qor_imgproc/FrameMap.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace exam {

/// One frame of a recording, scan-converted for display.
class ImageView
{
public:
    /// Fits the frames of `cine` into an image of `size` pixels, which is black until Show().
    void SetRecording(const CineFile& cine, CSize size);

    /// Converts frame number `frame` of `cine`, which is the recording that was set. False when it
    /// cannot be read; the image stays what it was.
    bool Show(const CineFile& cine, int frame);

    void Paint(CDC& dc, CPoint at) const;

    const ImagingParameters& Parameters() const { return m_parameters; }

    /// The image's grey levels, rows from the top; 0 outside the imaged region.
    std::span<const std::uint8_t> GreyLevels() const { return m_grey; }

    /// Grey level of a pixel; 0 outside the imaged region and outside the image.
    int Grey(CPoint pixel) const;

    /// The smallest rectangle that holds the imaged region; empty when there is none.
    CRect ImagedRect() const { return m_imagedRect; }

    /// The pixel of the imaged region that is nearest to `pixel`: itself, where it lies inside.
    /// Without an imaged region the result is `pixel`.
    CPoint NearestImaged(CPoint pixel) const;

private:
    bool Contains(CPoint pixel) const;
    bool IsImaged(CPoint pixel) const;
    std::size_t IndexOf(CPoint pixel) const;

    ImagingParameters m_parameters;
    std::vector<std::uint8_t> m_frame; // as it lies in the file
    std::optional<qor_imgproc::FrameMap>
        m_map;                        // worked out once a recording, applied to each frame
    std::vector<std::uint8_t> m_mask; // not 0: inside the imaged region
    CRect m_imagedRect;
    std::vector<std::uint8_t> m_grey; // rows from the top, without padding
};

} // namespace exam
