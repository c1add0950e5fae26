#pragma once

#include "record/PixelCanvas.h"
#include "record/Recording.h"
#include "screen/ScreenContent.h"

#include <Utils_Statics/CCineStoreAVI.h>

#include <vector>

namespace exam {

// Records what the screen shows as a movie: the screen at the start is the background, and every
// frame places on it
//  - the image with its scale and tools (plane 0),
//  - the spectral strip while it is shown (plane 1), with a mark that moves along its lower edge
//  (plane 3),
//  - the facts and the turned outline beside the image (the two regions of plane 2),
//  - the movie's own time (plane 4), in the upper left corner of the image, or of the strip while
//  that is shown.
// Recording mark, status text and keys are not in the movie.
class MovieRecording : public Recording
{
public:
    explicit MovieRecording(const ScreenContent& content);

    bool Start(const std::wstring& path, const Announcement& announcement) override;
    bool AddFrame() override;
    bool Finish() override;

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
