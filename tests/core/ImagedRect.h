#pragma once

#include "image/ImageView.h"

#include <cstddef>

namespace exam {

// The smallest rectangle that holds the imaged region; empty when there is none.
inline CRect ImagedRect(const ImageView& view)
{
    const std::vector<std::uint8_t> mask = view.Parameters().Mask();
    const auto width = static_cast<std::size_t>(view.Parameters().Size().cx);
    CRect box;
    for (std::size_t i = 0; i < mask.size(); ++i)
        if (mask[i] != 0)
            box |= CRect(CPoint(static_cast<int>(i % width), static_cast<int>(i / width)),
                         CSize(1, 1));
    return box;
}

} // namespace exam
