#pragma once

#include "ImagingParameters.h"

#include <afxwin.h>

#include <cstdint>
#include <vector>

namespace exam
{

// One frame, scan-converted for display.
class ImageView
{
public:
    // Converts frame number `frame` of `cine` to an image of `size` pixels.
    void Show(const CineFile& cine, int frame, CSize size);

    void Paint(CDC& dc, CPoint at) const;

    const ImagingParameters& parameters() const { return m_parameters; }

    // Grey level of a pixel; 0 outside the imaged region and outside the image.
    int Grey(CPoint pixel) const;

private:
    ImagingParameters m_parameters;
    std::vector<std::uint8_t> m_grey; // rows from the top, without padding
};

} // namespace exam
