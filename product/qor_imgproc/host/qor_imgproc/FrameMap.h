#pragma once

#include <qor_imgproc/export.h>
#include <qor_utils/ScanGeometry.h>

#include <memory>

namespace qor_imgproc {

/// The way from a frame's bytes to an image, worked out once for a geometry and then applied to any
/// number of frames. Eight bytes an image pixel, shared by copies. It never changes: any number of
/// threads may convert with it.
class QOR_IMGPROC_API FrameMap
{
public:
    /// Builds the map. It is not valid (Valid() says so, Convert does nothing) when the geometry
    /// has no image: a size that is not positive, a probe without a geometry, a zero scale, a frame
    /// of more than 2^31 - 1 bytes, an image of more than 2^26 pixels or too little memory.
    explicit FrameMap(const qor_utils::ScanGeometry& geometry);

    bool Valid() const;

    /// Scan-converts one frame (lines x samples bytes, samples running fastest) into width x height
    /// grey bytes, rows from the top: bilinear interpolation, `background` outside the frame.
    /// False, with nothing written, when the map is not valid or a pointer is null.
    bool Convert(const unsigned char* frame, unsigned char* image,
                 unsigned char background = 0) const;

private:
    struct Pixels;

    std::shared_ptr<const Pixels> m_pixels;
};

} // namespace qor_imgproc
