#pragma once

#include "image/ImagingParameters.h"

#include <afxwin.h>
#include <qor_imgproc/FrameMap.h>

#include <cstdint>
#include <optional>
#include <vector>

namespace exam
{

// One frame of a recording, scan-converted for display.
class ImageView
{
public:
    // Fits the frames of `cine` into an image of `size` pixels. Show() has to follow.
    void SetRecording(const CineFile& cine, CSize size);

    // Converts frame number `frame` of the recording that was set.
    void Show(const CineFile& cine, int frame);

    void Paint(CDC& dc, CPoint at) const;

    const ImagingParameters& parameters() const { return m_parameters; }

    // Grey level of a pixel; 0 outside the imaged region and outside the image.
    int Grey(CPoint pixel) const;

private:
    ImagingParameters m_parameters;
    std::optional<FrameMap> m_map;    // worked out once a recording, applied to each frame
    std::vector<std::uint8_t> m_grey; // rows from the top, without padding
};

} // namespace exam
