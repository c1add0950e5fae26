#pragma once

#include "base/ScreenLayout.h"
#include "image/ImagingParameters.h"

#include <afxwin.h>

namespace exam {

/// Draws the depth scale beside the image, or below it when the image lies on its side: a tick
/// every half centimetre from the probe's face on. The ticks of whole centimetres are longer and
/// numbered. The context begins at the image's corner.
void DrawRuler(CDC& dc, const ScreenLayout& layout, const ImagingParameters& image);

} // namespace exam
