#pragma once

#include <qor_imgproc/export.h>
#include <qor_utils/ScanGeometry.h>

namespace qor_imgproc {

/// Scan-converts a whole frame: `frame` holds geometry.lines x geometry.samples bytes, samples
/// running fastest; `image` receives geometry.width x geometry.height grey bytes, rows from the
/// top. Bilinear interpolation; `background` outside the first and last line and sample. False,
/// with nothing written, for null pointers or a geometry that FrameMap refuses. For many frames of
/// one geometry a FrameMap is several times faster. Any thread.
QOR_IMGPROC_API bool ConvertFrame(const qor_utils::ScanGeometry& geometry,
                                  const unsigned char* frame, unsigned char* image,
                                  unsigned char background = 0);

} // namespace qor_imgproc
