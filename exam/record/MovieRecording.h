#pragma once

#include "record/PixelCanvas.h"
#include "record/Recording.h"
#include "screen/ScreenContent.h"

#include <Utils_Statics/CCineStoreAVI.h>

#include <vector>

namespace exam {

// Records what the screen shows as a movie. The screen at the start is the background. Each frame
// places these on it:
// - plane 0: the image with its scale, tools and those windows over it that are to be recorded;
// - plane 1: the spectral strip, while it is shown;
// - plane 2, in two regions: the facts and the turned outline beside the image;
// - plane 3: a mark that moves along the lower edge of the strip;
// - plane 4: the movie's own time, in the upper left corner of the image or of the strip.
// Recording mark, status text and keys are not in the movie.
class MovieRecording : public Recording
{
public:
    explicit MovieRecording(const ScreenContent& content);

    bool Start(const std::wstring& path, const Announcement& announcement) override;
    bool AddFrame() override;
    bool Finish() override;
    bool IsWhole(const std::wstring& path, int frames) const override;

private:
    using Plane = std::vector<unsigned int>;

    void DrawCurrentScreen();
    void DrawTime();
    void DrawSweep();

    const ScreenContent& m_content;
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
