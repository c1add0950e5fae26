// Station 5: measuring on the image with the mouse, through the arbitration, with posted messages;
// the outline of a turned image.
#include "measure/RotatedOutline.h"
#include "tour/Tour.h"

#include <Utils_Statics/MouseCapture.h>

#include <cmath>

namespace exam {

namespace {

// Works the main window with the mouse. In trackball style the tools move the cursor, which brings
// mouse messages of its own.
class Mouse
{
public:
    explicit Mouse(TourContext& context) : m_context(context) {}

    void Press(CPoint at) { Post(WM_LBUTTONDOWN, MK_LBUTTON, at); }
    void Drag(CPoint to) { Post(WM_MOUSEMOVE, MK_LBUTTON, to); }
    void Move(CPoint to) { Post(WM_MOUSEMOVE, 0, to); }
    void Release(CPoint at) { Post(WM_LBUTTONUP, 0, at); }
    void Key(UINT key) { m_context.Post(m_context.window.GetSafeHwnd(), WM_KEYDOWN, key, 0); }

    void DragPoint(CPoint from, CPoint to)
    {
        Press(from);
        Drag(to);
        Release(to);
    }

private:
    void Post(UINT message, WPARAM flags, CPoint imagePoint)
    {
        const CPoint at = imagePoint + m_context.state.Layout().image.TopLeft();
        m_context.Post(m_context.window.GetSafeHwnd(), message, flags, MAKELPARAM(at.x, at.y));
    }

    TourContext& m_context;
};

bool Near(double value, double expected, double tolerance)
{
    return std::abs(value - expected) <= tolerance;
}

// Two points on one scan line are 40 mm apart by their samples, and the caliper has to measure
// that.
void Distance(TourContext& context, Mouse& mouse)
{
    const DistanceCaliper& caliper = context.state.Tools().Distance();
    const ImagingParameters& image = context.state.View().Parameters();
    mouse.Key('1');
    const CPoint shallow = image.Pixel(60, 300);
    const CPoint deep = image.Pixel(60, 300 + 779); // 779 samples of 51.343 um
    mouse.DragPoint(caliper.Points()[0], shallow);
    mouse.DragPoint(caliper.Points()[1], deep);
    context.report.Step(caliper.Points()[0] == shallow && caliper.Points()[1] == deep,
                        L"the caliper's points are dragged with the mouse");
    context.report.Step(Near(caliper.Millimetres(), 40.0, 1.5 * image.micronsPerPixel.x / 1000.0),
                        L"the caliper measures 40 mm along a slanted scan line");
    context.report.Step(!MouseCapture::IsLocked(),
                        L"nobody holds the pointer after the button is released");
}

void Angle(TourContext& context, Mouse& mouse)
{
    const AngleTool& angle = context.state.Tools().Angle();
    mouse.Key('2');
    const CPoint vertex(300, 320);
    mouse.DragPoint(angle.Points()[1], vertex);
    mouse.DragPoint(angle.Points()[0], vertex + CPoint(100, 0));
    mouse.DragPoint(angle.Points()[2], vertex + CPoint(100, -100));
    context.report.Step(Near(angle.Degrees(), 45.0, 0.01), L"the angle tool measures 45 degrees");
}

void Region(TourContext& context, Mouse& mouse)
{
    const RegionBox& region = context.state.Tools().Region();
    const ImagingParameters& image = context.state.View().Parameters();
    mouse.Key('3');
    mouse.DragPoint(region.Points()[0], image.Pixel(150, 500));
    mouse.DragPoint(region.Points()[1], image.Pixel(200, 900));
    context.report.Step(Near(region.DepthMillimetres(), 400 * 0.0513434, 0.3),
                        L"the region's depth follows the scan lines");
    // The chord is between lines 150 and 200 at the radius of sample 900.
    const double radius = 26.4 + 900 * 0.0513434;
    const double chord = 2 * radius * std::sin(50 * (std::acos(-1.0) / 2 + 0.5) / 240 / 2);
    context.report.Step(Near(region.WidthMillimetres(), chord, 1.5),
                        L"its deep side is as long as the geometry says");
}

// The result stays that of the frame it was measured on.
void Belonging(TourContext& context)
{
    const DistanceCaliper& caliper = context.state.Tools().Distance();
    const CString before = caliper.Readout();
    const std::vector<CPoint> places = caliper.Points();
    context.state.ChangeDepth(-1);
    context.report.Step(caliper.IsVisible() && caliper.Points() != places &&
                            caliper.Readout() == before,
                        L"at another depth a distance keeps its value and its place in the frame");
    context.state.SelectImage(linearRecording);
    const bool hidden = !caliper.IsVisible();
    context.state.SelectImage(curvedRecording);
    context.state.ChangeDepth(1);
    context.report.Step(hidden && caliper.IsVisible() && caliper.Points() == places &&
                            caliper.Readout() == before,
                        L"another frame does not show it; back on its own it is the same");
}

void PressBeyondReach(TourContext& context, Mouse& mouse)
{
    mouse.Press({5, 5});
    context.report.Step(!MouseCapture::IsLocked(), L"a press far from every point grabs nothing");
    mouse.Release({5, 5});
}

void Trackball(TourContext& context, Mouse& mouse)
{
    const DistanceCaliper& caliper = context.state.Tools().Distance();
    mouse.Key('P');
    mouse.Key(VK_TAB);
    const bool first = MouseCapture::GetLock() == &caliper;
    const CPoint before = caliper.Points()[0];
    mouse.Move(before + CPoint(7, 5));
    const bool moved = caliper.Points()[0] == before + CPoint(7, 5);
    mouse.Move(before);
    mouse.Key(VK_TAB);
    mouse.Key(VK_TAB);
    context.report.Step(first && moved && MouseCapture::GetLock() == &context.state.Tools().Angle(),
                        L"in trackball style Tab steps from point to point and from tool to tool");
    mouse.Key('P');
    context.report.Step(!MouseCapture::IsLocked(), L"switching the style lets go of the pointer");
}

// A turned image's bounding box.
void Outline(TourContext& context)
{
    const RotatedOutline outline = RotateImageOutline(CSize(400, 300), 300);
    // w cos a + h sin a and w sin a + h cos a at 30 degrees
    context.report.Step(std::abs(outline.bounds.Width() - 496) <= 1 &&
                            std::abs(outline.bounds.Height() - 460) <= 1,
                        L"an image turned by 30 degrees is held by its bounding box");
    context.state.Rotate(300);
    context.Picture(L"turned-outline");
    context.state.Rotate(-context.state.Rotation());
}

} // namespace

void TourMeasurements(TourContext& context)
{
    context.state.SelectImage(curvedRecording);
    Mouse mouse(context);
    Distance(context, mouse);
    Angle(context, mouse);
    Region(context, mouse);
    Belonging(context);
    PressBeyondReach(context, mouse);
    Trackball(context, mouse);
    context.Picture(L"measurements");
    for (const UINT key : {L'1', L'2', L'3'})
        mouse.Key(key);
    Outline(context);
}

} // namespace exam
