#pragma once

#include "FramePixel.h"

#include <qor_utils/ConversionModel.h>
#include <qor_utils/ScanGeometry.h>

#include <vector>

namespace qor_imgproc {

// The pixels of a scan-converted image, one row after the other.
class FrameRows
{
public:
    // Throws std::bad_alloc when memory is short.
    explicit FrameRows(const qor_utils::ScanGeometry& geometry);

    // True when the geometry has an image; FrameMap states the conditions.
    static bool HasImage(const qor_utils::ScanGeometry& geometry);

    // Writes the pixels of row `y`, as many as the image is wide. The geometry must have an image.
    void Row(int y, FramePixel* pixels);

    FrameSteps Steps() const;

private:
    template <qor_utils::ScanShape shape>
    void ToScan(double y);
    FramePixel MakePixel(const qor_utils::ScanPoint& scan) const;

    qor_utils::ScanGeometry m_geometry;
    qor_utils::ConversionModel m_model;
    double m_left; // microns of the first pixel
    double m_step; // microns to the next pixel
    std::vector<qor_utils::ScanPoint> m_row;
};

} // namespace qor_imgproc
