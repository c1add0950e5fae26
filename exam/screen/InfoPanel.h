#pragma once

#include "image/ImagingParameters.h"
#include "app/Session.h"

#include <afxwin.h>

namespace exam
{

// The column of facts beside the image: console, modes, probe and depth, in the current language.
void DrawInfoPanel(CDC& dc, const CRect& area, const Session& session, const ImagingParameters& image);

} // namespace exam
