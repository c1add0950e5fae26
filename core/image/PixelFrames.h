#pragma once

#include "image/FrameSource.h"

#include <windows.h>

#include <cstdint>
#include <vector>

namespace exam {

/// Frames of coloured pixels without a scale: those of a picture or a movie. A column of pixels
/// takes the place of a line, so that they are shown, zoomed and marked as echoes are.
class PixelFrames : public FrameSource
{
public:
    static constexpr int mostPixels = 8192; ///< in a row or a column

    const CineDescription& Description() const override { return m_description; }
    int Frames() const override { return m_description.count; }
    bool IsPicture() const override { return true; }

protected:
    /// False for a size or a count that cannot be shown.
    bool Describe(SIZE size, int frames, int framesPer1000s);

    /// Fills `bytes` as ReadFrame() does, from a bitmap of 24 or 32 bits a pixel and the size that
    /// was described. False for any other one.
    bool ToPlanes(const BITMAPINFOHEADER& header, const std::uint8_t* rows,
                  std::vector<std::uint8_t>& bytes) const;

private:
    CineDescription m_description;
};

} // namespace exam
