#pragma once

#include "image/ImagingParameters.h"

#include <afxwin.h>

namespace exam {

// Draws the depth scale beside the image: a tick every half centimetre from the probe's face down.
// The ticks of whole centimetres are longer and numbered. `x` is the column of the scale in pixels
// of the image.
void DrawRuler(CDC& dc, const ImagingParameters& image, int x);

} // namespace exam
