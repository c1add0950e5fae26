#include "qor_imgproc/FrameMap.h"

#include "FrameRows.h"

#include <new>

namespace qor_imgproc {

// The pixels of the image, row after row.
struct FrameMap::Pixels
{
    explicit Pixels(const qor_utils::ScanGeometry& geometry)
        : count(static_cast<std::size_t>(geometry.width) *
                static_cast<std::size_t>(geometry.height)),
          pixels(std::make_unique_for_overwrite<FramePixel[]>(count))
    {
        FrameRows rows(geometry);
        steps = rows.Steps();
        FramePixel* row = pixels.get();
        for (int y = 0; y < geometry.height; ++y, row += geometry.width)
            rows.Row(y, row);
    }

    std::size_t count;
    std::unique_ptr<FramePixel[]> pixels;
    FrameSteps steps;
};

FrameMap::FrameMap(const qor_utils::ScanGeometry& geometry)
{
    if (!FrameRows::HasImage(geometry)) return;
    try {
        m_pixels = std::make_shared<const Pixels>(geometry);
    } catch (const std::bad_alloc&) {
        // The map stays invalid, and Valid tells the caller.
    }
}

bool FrameMap::Valid() const
{
    return m_pixels != nullptr;
}

bool FrameMap::Convert(const unsigned char* frame, unsigned char* image,
                       unsigned char background) const
{
    if (!Valid() || !frame || !image) return false;
    const FramePixel* pixels = m_pixels->pixels.get();
    InterpolateRun(frame, pixels, pixels + m_pixels->count, m_pixels->steps, background, image);
    return true;
}

} // namespace qor_imgproc
