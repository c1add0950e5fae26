#pragma once

#include "study/StudyContent.h"

#include <qor_utils/ConversionModel.h>

namespace exam {

/// The positions on the frames of one recording, in millimetres of the body: x to the right as the
/// probe has it, y away from the probe (docs/conversion-model.md). Nothing here depends on how a
/// frame is displayed.
class FrameScale
{
public:
    explicit FrameScale(const Acquisition& acquisition);

    /// False for a recording without a geometry; its positions mean nothing.
    bool IsKnown() const { return m_model.Shape() != qor_utils::ScanShape::none; }

    MarkPoint ToMillimetres(const MarkPoint& scan) const;
    MarkPoint ToScan(const MarkPoint& millimetres) const;

private:
    qor_utils::ConversionModel m_model;
};

/// Moves all points of a mark by the same way: millimetres on a frame, seconds and metres per
/// second on the strip. False, with nothing changed, when the frame has no geometry.
bool MovePoints(Mark& mark, const Acquisition& acquisition, const MarkPoint& by);

} // namespace exam
