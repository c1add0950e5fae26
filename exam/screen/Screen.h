#pragma once

#include "state/ExamState.h"

#include <afxwin.h>

namespace exam {

/// The purpose for which the screen is painted.
enum class ScreenUse
{
    display,
    movie ///< without the recording mark, the status text and the keys
};

/// The texts of the bars, which do not follow the frame.
struct BarTexts
{
    CString title;
    CString status;
};
BarTexts TextsOfBars(const ExamState& state);

/// Paints the whole client area: header, image with its scale and tools, recording mark, facts and
/// status line.
void DrawScreen(CDC& dc, const ExamState& state, ScreenUse use);

} // namespace exam
