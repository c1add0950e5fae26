#pragma once

#include "image/ImageView.h"
#include "image/Session.h"
#include "measure/MeasureTools.h"
#include "measure/SimulatedFlow.h"

#include <afxwin.h>

#include <optional>

namespace exam {

class Overlays;

/// What the screen shows. The referenced objects outlive it.
struct ScreenContent
{
    const Session& session;
    const ImageView& view;
    const MeasureTools& tools;
    SimulatedFlow& flow;
    bool stripShown = false;
    int rotation = 0; ///< tenths of a degree; 0: no rotated outline
    CString status{};
    bool keysShown = true;               ///< the list of keys beside the status
    std::optional<int> recordedFrames{}; ///< set while a recording is under way
    Overlays* overlays = nullptr;        ///< the windows over the image, where there are any
};

} // namespace exam
