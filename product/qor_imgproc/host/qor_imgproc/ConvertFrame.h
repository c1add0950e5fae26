#pragma once

#include <qor_imgproc/export.h>
#include <qor_utils/ScanGeometry.h>

namespace qor_imgproc {

/// Scan-converts a whole frame. `frame` has geometry.lines x geometry.samples bytes, samples
/// running fastest. `image` receives geometry.width x geometry.height grey bytes, rows from the
/// top. Interpolation is bilinear; pixels outside the first and last line and sample get
/// `background`. False, with nothing written, for null pointers or a geometry that FrameMap
/// refuses. For many frames of one geometry a FrameMap is several times faster. Any thread may call
/// this.
QOR_IMGPROC_API bool ConvertFrame(const qor_utils::ScanGeometry& geometry,
                                  const unsigned char* frame, unsigned char* image,
                                  unsigned char background = 0);

} // namespace qor_imgproc
