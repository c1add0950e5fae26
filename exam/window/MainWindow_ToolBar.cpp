// MainWindow: the effect and the look of the tool bar's buttons.
#include "window/MainWindow.h"

namespace exam {

ToolButton MainWindow::MeasureButton(ImageTool& tool, const wchar_t* picture, const char* tipKey)
{
    return {picture, tool.NameKey(), tipKey, [this, &tool] { ToggleTool(tool); },
            [&tool] { return tool.IsVisible() ? ButtonForm::framed : ButtonForm::normal; }};
}

// Only one recording runs at a time. Its button ends it, and the other one cannot be pushed.
ButtonForm MainWindow::RecordForm(bool isMovie) const
{
    if (!IsRecording()) return ButtonForm::normal;
    return IsRecordingMovie() == isMovie ? ButtonForm::framed : ButtonForm::disabled;
}

std::vector<ToolButton> MainWindow::ToolButtons()
{
    return {MeasureButton(m_tools.Distance(), L"distance.png", "exam.tip.distance"),
            MeasureButton(m_tools.Angle(), L"angle.png", "exam.tip.angle"),
            MeasureButton(m_tools.Region(), L"region.png", "exam.tip.region"),
            {L"raw.png", "exam.button.raw", "exam.tip.raw", [this] { ToggleRawRecording(); },
             [this] { return RecordForm(false); }},
            {L"movie.png", "exam.button.movie", "exam.tip.movie",
             [this] { ToggleMovieRecording(); }, [this] { return RecordForm(true); }}};
}

} // namespace exam
