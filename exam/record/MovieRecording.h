#pragma once

#include "record/PixelCanvas.h"
#include "record/Recording.h"
#include "state/ExamState.h"

#include <Utils_Statics/CCineStoreAVI.h>

#include <vector>

namespace exam {

// Records the screen as a movie. The screen at the start is the background. Each frame places these
// on it:
// - Plane 0 is the image with its scale, its tools and those windows over it that are recorded.
// - Plane 1 is the spectral strip, while it is shown.
// - Plane 2 holds two regions: the facts and the turned outline beside the image.
// - Plane 3 is a mark that moves along the lower edge of the strip.
// - Plane 4 is the movie's own time, in the upper left corner of the image or of the strip.
// The recording mark, the status text and the keys are not in the movie.
class MovieRecording : public Recording
{
public:
    // State and painter outlive this object.
    MovieRecording(const ExamState& state, const Painter& paint);

    bool Start(const std::wstring& path, const Announcement& announcement) override;
    bool AddFrame() override;
    bool Finish() override;
    bool IsWhole(const std::wstring& path, int frames) const override;

private:
    using Plane = std::vector<unsigned int>;

    void DrawTime();
    void DrawSweep();

    const ExamState& m_state;
    const Painter& m_paint;
    double m_rate; // frames per second
    int m_frames = 0;
    PixelCanvas m_screen;
    PixelCanvas m_time;
    CBitmap m_imageMask;
    CBitmap m_stripMask;
    Plane m_image;
    Plane m_strip;
    Plane m_panel;
    Plane m_sweep;
    Plane m_clock;
    CCineStoreAVI m_store;
};

} // namespace exam
