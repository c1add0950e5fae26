#include "qor_imgproc/ConvertFrame.h"

#include "FrameRows.h"

#include <new>
#include <vector>

namespace qor_imgproc {

bool ConvertFrame(const qor_utils::ScanGeometry& geometry, const unsigned char* frame,
                  unsigned char* image, unsigned char background)
{
    if (!frame || !image || !FrameRows::HasImage(geometry)) return false;
    try {
        const auto width = static_cast<std::size_t>(geometry.width);
        FrameRows rows(geometry);
        std::vector<FramePixel> row(width);
        for (int y = 0; y < geometry.height; ++y, image += width) {
            rows.Row(y, row.data());
            InterpolateRun(frame, row.data(), row.data() + width, rows.Steps(), background, image);
        }
    } catch (const std::bad_alloc&) {
        return false; // nothing is written yet: both rows exist before the loop
    }
    return true;
}

} // namespace qor_imgproc
