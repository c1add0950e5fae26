#pragma once

#include "app/Session.h"
#include "image/ImageView.h"
#include "measure/MeasureTools.h"
#include "measure/SimulatedFlow.h"

#include <afxwin.h>

namespace exam
{

// What the screen shows, beside the session's recording.
struct ScreenContent
{
    const Session& session;
    const ImageView& view;
    const MeasureTools& tools;
    SimulatedFlow& flow;
    bool stripShown = false;
    int rotation = 0; // tenths of a degree; 0: no rotated outline
    CString status{};
};

// Paints the whole client area: header, image with its scale and tools, facts, status line.
void DrawScreen(CDC& dc, const ScreenContent& content);

} // namespace exam
