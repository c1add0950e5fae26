// Station 4: real echoes on the screen, at true proportions.
#include "tour/Tour.h"

#include <qor_utils/ZelProbe.h>

#include <cmath>
#include <set>
#include <string>

namespace exam {

namespace {

// Mean grey level of the image along the samples of a patch of scan lines.
double MeanGrey(const ImageView& view, int firstLine, int lastLine, int firstSample, int lastSample)
{
    double sum = 0;
    int count = 0;
    for (int line = firstLine; line <= lastLine; ++line)
        for (int sample = firstSample; sample <= lastSample; ++sample, ++count)
            sum += view.Grey(view.Parameters().Pixel(line, sample));
    return sum / count;
}

void CurvedFrame(TourContext& context)
{
    context.state.SelectImage(curvedRecording);
    const ImageView& view = context.state.View();
    const ImagingParameters& image = view.Parameters();
    context.report.Step(image.probe.type == qor_utils::curvedProbe && image.lines == 241,
                        L"the curved recording is on display");
    context.report.Step(MeanGrey(view, 115, 130, 1755, 1785) >
                            2 * MeanGrey(view, 115, 130, 1600, 1680),
                        L"its back wall is brighter than what lies before it");
    const CPoint apex = image.Pixel(120, 0);
    context.report.Step(view.Grey({2, apex.y}) == 0 && view.Grey({apex.x, apex.y - 3}) == 0,
                        L"nothing is shown outside the sector");
    // The chord of the probe's face is 2 r sin(half the sector), by the recording's published
    // geometry.
    const double chord = 2 * 26.4 * std::sin((std::acos(-1.0) / 2 + 0.5) / 2);
    const double shown = image.Millimetres(image.Pixel(0, 0), image.Pixel(240, 0));
    context.report.Step(std::abs(shown - chord) < 2 * image.micronsPerPixel.x / 1000.0,
                        L"the sector is as wide as the probe's geometry says");
    context.Picture(L"curved");
}

void LinearFrame(TourContext& context)
{
    context.state.SelectImage(linearRecording);
    const ImagingParameters& image = context.state.View().Parameters();
    const double width = image.Millimetres(image.Pixel(0, 0), image.Pixel(127, 0));
    const double depth = image.Millimetres(image.Pixel(64, 0), image.Pixel(64, 1535));
    context.report.Step(std::abs(width - 12.7) < 0.1 && std::abs(depth - 19.71) < 0.1,
                        L"the linear recording is a rectangle of 12.7 x 19.7 mm");
    context.Picture(L"linear");
}

void NextFrame(TourContext& context)
{
    context.Key('F');
    context.report.Step(context.state.Frame() == 1, L"a key shows the next frame");
    context.state.NextLanguage();
    context.Picture(L"linear-next-frame-other-language");
    context.state.NextLanguage();
}

void Play(TourContext& context)
{
    context.state.ShowPosition(2);
    context.state.BeginLoop();
    context.state.ShowPosition(3);
    context.state.EndLoop();
    context.state.ChangeSpeed(1);
    context.Key(VK_F5);
    std::set<int> seen;
    const bool played = context.WaitUntil([&] {
        seen.insert(context.state.FramePosition());
        return seen.size() == 2;
    });
    context.Picture(L"linear-loop");
    context.Key(VK_F5);
    context.report.Step(played && seen == std::set{2, 3} && context.state.IsFrozen(),
                        L"a loop of two frames plays, and stands still again");
    context.state.ChangeSpeed(-1);
    context.state.ClearLoop();
}

void Opened(TourContext& context)
{
    context.window.Exam().OpenImage(context.folder + L"\\no such file.cine");
    context.report.Step(std::wstring(context.state.Status()).find(L"no such file.cine") !=
                            std::wstring::npos,
                        L"a recording that cannot be opened is named");
    context.state.SetStatus(L"");
}

} // namespace

void TourImages(TourContext& context)
{
    CurvedFrame(context);
    LinearFrame(context);
    NextFrame(context);
    Play(context);
    Opened(context);
    context.state.SelectImage(curvedRecording);
}

} // namespace exam
