#include "image/ImageTurn.h"

#include <afxwin.h>

#include <cstddef>

namespace exam {

void ImageTurn::TurnDrawing(CDC& dc) const
{
    const auto element = [this](std::size_t i) { return static_cast<FLOAT>(m_matrix[i]); };
    const XFORM turn = {element(0), element(3), element(1), element(4), element(2), element(5)};
    SetGraphicsMode(dc.GetSafeHdc(), GM_ADVANCED);
    SetWorldTransform(dc.GetSafeHdc(), &turn);
}

} // namespace exam
