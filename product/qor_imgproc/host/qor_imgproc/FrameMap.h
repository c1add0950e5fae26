#pragma once

#include <qor_imgproc/export.h>
#include <qor_utils/ScanGeometry.h>

#include <memory>

namespace qor_imgproc {

/// The map from a frame's bytes to an image, computed once for a geometry and applied to any number
/// of frames. It takes eight bytes for each image pixel, which copies share. It never changes, so
/// any number of threads may convert with it.
class QOR_IMGPROC_API FrameMap
{
public:
    /// Builds the map. It is not valid (Valid() says so, Convert does nothing) when the geometry
    /// has no image: a size that is not positive, a probe without a geometry, a zero scale, a frame
    /// of more than 2^31 - 1 bytes, an image of more than 2^26 pixels or too little memory.
    explicit FrameMap(const qor_utils::ScanGeometry& geometry);

    /// True when the map can convert.
    bool Valid() const;

    /// Scan-converts one frame (lines x samples bytes, samples running fastest) into width x height
    /// grey bytes, rows from the top. Interpolation is bilinear; pixels outside the frame get
    /// `background`. False, with nothing written, when the map is not valid or a pointer is null.
    bool Convert(const unsigned char* frame, unsigned char* image,
                 unsigned char background = 0) const;

private:
    struct Pixels;

    std::shared_ptr<const Pixels> m_pixels;
};

} // namespace qor_imgproc
