#pragma once

#include "image/ImageView.h"
#include "image/Session.h"
#include "measure/MeasureTools.h"
#include "measure/SimulatedFlow.h"

#include <afxwin.h>

#include <optional>

namespace exam {

class Overlays;

/// The content of the screen. The referenced objects outlive it.
struct ScreenContent
{
    const Session& session;
    const ImageView& view;
    const MeasureTools& tools;
    SimulatedFlow& flow;
    bool stripShown = false;
    int rotation = 0; ///< tenths of a degree; 0: no rotated outline
    CString status{};
    bool keysShown = true;               ///< true: shows the list of keys beside the status
    std::optional<int> recordedFrames{}; ///< set during a recording
    Overlays* overlays = nullptr;        ///< the windows over the image; null when there are none
};

} // namespace exam
