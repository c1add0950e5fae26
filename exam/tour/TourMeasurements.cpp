// Station 5: measuring on the image with the mouse, through the arbitration, with posted messages;
// a mirrored and turned image.
#include "measure/MarkSurface.h"
#include "service/Terms.h"
#include "study/StudyFile.h"
#include "tour/TourMouse.h"

#include <Utils_Statics/GetStr.h>
#include <Utils_Statics/MouseCapture.h>

#include <cmath>

namespace exam {

namespace {

bool Near(double value, double expected, double tolerance)
{
    return std::abs(value - expected) <= tolerance;
}

// Counts the marks of the study.
std::size_t Count(const TourContext& context)
{
    return context.state.Content().marks.size();
}

// Two points on one scan line are 40 mm apart by their samples, and the distance has to be that.
void Distance(TourContext& context, Mouse& mouse)
{
    const ImagingParameters& image = context.state.View().Parameters();
    mouse.Key('1');
    context.report.Step(context.state.Marks().Chosen() == MarkKind::distance,
                        L"a key chooses what the next drag measures");
    mouse.DragPoint(image.Pixel(60, 300), image.Pixel(60, 300 + 779)); // of 51.343 um
    context.report.Step(Near(context.LastValue(), 40.0, 1.5 * image.micronsPerPixel.x / 1000.0),
                        L"a drag along a slanted scan line measures 40 mm");
    context.report.Step(!MouseCapture::IsLocked(),
                        L"nobody holds the pointer after the button is released");
}

void Angle(TourContext& context, Mouse& mouse)
{
    const CPoint vertex(300, 320);
    mouse.Key('2');
    mouse.DragPoint(vertex, vertex + CPoint(100, 0));
    const bool first = Near(context.LastValue(), 60, 0.5);
    mouse.DragPoint(vertex + CPoint(50, -87), vertex + CPoint(100, -100));
    context.report.Step(first && Near(context.LastValue(), 45.0, 0.5),
                        L"an angle follows each of its three points");
}

// The area of an ellipse, of an outline and of a rectangle, by the size of a pixel.
void Areas(TourContext& context, Mouse& mouse)
{
    const double pixel = context.state.View().Parameters().micronsPerPixel.x / 10000.0; // cm
    mouse.Key('4');
    mouse.DragPoint({300, 180}, {400, 180}); // the other axis is 0.6 times as long
    context.report.Step(Near(context.LastValue(1), std::acos(-1.0) * 50 * 30 * pixel * pixel, 0.05),
                        L"an ellipse has the area of its axes");
    mouse.Key('5');
    mouse.Press({250, 240});
    for (const CPoint corner : {CPoint(330, 240), CPoint(330, 300), CPoint(250, 300)})
        mouse.Drag(corner);
    mouse.Release({250, 300});
    context.report.Step(Near(context.LastValue(1), 80 * 60 * pixel * pixel, 0.05),
                        L"an outline has the area that was drawn round");
    mouse.Key('3');
    mouse.DragPoint({360, 180}, {420, 240});
    context.report.Step(Near(context.LastValue(2), 60 * 60 * pixel * pixel, 0.05),
                        L"a rectangle has the area of its sides");
}

void WholeLine(TourContext& context, Mouse& mouse)
{
    mouse.Key('1');
    mouse.DragPoint({280, 140}, {380, 140});
    const double length = context.LastValue();
    mouse.DragPoint({330, 140}, {330, 120});
    const CPoint there(280, 120);
    const std::vector<int> shown = context.state.Marks().Shown();
    const Mark& mark = *FindMark(context.state.Content(), shown.back());
    const ImagingParameters& image = context.state.View().Parameters();
    const UPoint end = image.ScanPosition(there);
    context.report.Step(Near(context.LastValue(), length, 1e-6) &&
                            Near(mark.points[0].x, end.x, 2) && Near(mark.points[0].y, end.y, 4),
                        L"a line that is dragged between its ends moves as a whole");
}

void Steps(TourContext& context, Mouse& mouse)
{
    const std::size_t all = Count(context);
    const double length = context.LastValue();
    for (const UINT key : {VK_RIGHT, VK_RIGHT, VK_RIGHT})
        mouse.Key(key);
    const StudyContent moved = context.state.Content();
    mouse.Key(VK_DELETE);
    const bool deleted = Count(context) == all - 1;
    context.state.Undo();
    context.report.Step(deleted && Count(context) == all, L"a mark is deleted, and comes back");
    context.state.Undo();
    const bool back = Near(context.LastValue(), length, 1e-9);
    context.state.Redo();
    context.report.Step(back && context.state.Content() == moved,
                        L"a point moves by tenths of a pixel, in one step that can be taken back");
    while (context.state.Undo()) {
    }
    const bool empty = Count(context) == 0;
    while (context.state.Redo()) {
    }
    const bool deletedAgain = Count(context) == all - 1;
    context.state.Undo();
    context.report.Step(empty && deletedAgain && context.state.Content() == moved,
                        L"everything is taken back, and done again");
}

// The result stays that of the frame it was measured on.
void Belonging(TourContext& context)
{
    const double before = context.LastValue();
    const std::size_t shown = context.state.Marks().Shown().size();
    context.state.ChangeDepth(-1);
    context.report.Step(Near(context.LastValue(), before, 1e-9),
                        L"at another depth a distance keeps its value");
    context.state.SelectImage(linearRecording);
    const bool hidden = context.state.Marks().Shown().empty();
    context.state.SelectImage(curvedRecording);
    context.state.ChangeDepth(1);
    context.report.Step(hidden && context.state.Marks().Shown().size() == shown,
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
    mouse.Key('P');
    mouse.Key('1');
    const IMouseHandler* const made = MouseCapture::GetLock();
    const double length = context.LastValue();
    const CPoint first = CPoint(context.state.View().Parameters().width / 2 - 40,
                                context.state.View().Parameters().height / 2);
    mouse.Move({first.x - 20, first.y});
    const bool moved = made && context.LastValue() > length;
    mouse.Key(VK_TAB);
    context.report.Step(
        moved && MouseCapture::GetLock() == made,
        L"in trackball style a mark comes at once, and Tab steps to its next point");
    mouse.Key('P');
    context.report.Step(!MouseCapture::IsLocked(), L"switching the style lets go of the pointer");
}

// Texts, arrows and the patient lie in the study too.
void Annotations(TourContext& context, Mouse& mouse)
{
    context.state.ChooseMark(MarkKind::text, L"Liver");
    mouse.Press({200, 300});
    mouse.Release({200, 300});
    const std::vector<std::wstring> terms = AnnotationTerms();
    context.report.Step(terms.size() > 1, L"the protocol offers terms for annotations");
    context.state.ChooseMark(MarkKind::term, terms.empty() ? L"" : terms.back());
    mouse.Press({300, 130});
    mouse.Release({300, 130});
    mouse.Key('W');
    mouse.DragPoint({440, 330}, {390, 300});
    const auto& marks = context.state.Content().marks;
    context.report.Step(marks.size() > 2 && marks.back()->kind == MarkKind::arrow &&
                            marks[marks.size() - 3]->text == L"Liver" &&
                            marks[marks.size() - 2]->kind == MarkKind::term,
                        L"a text, a term and an arrow stand on the image");
    context.Picture(L"annotations");
}

void PatientForm(TourContext& context)
{
    constexpr int nameField = 100;
    const auto here = TourContext::Place::Current();
    context.WorkForm(
        "exam.command.patient", [&] { context.window.Exam().EditPatient(); },
        [&](HWND form) {
            SetDlgItemTextW(form, nameField, L"Ada Sample");
            context.PictureOf(form, L"patient-form", here);
            SendMessageW(form, WM_COMMAND, IDOK, 0);
        });
    const bool changed = context.state.Content().patient.name == L"Ada Sample";
    context.state.Undo();
    context.report.Step(changed && context.state.Content().patient.name != L"Ada Sample",
                        L"the patient's form changes the study, which can be taken back");
}

void Kept(TourContext& context)
{
    context.state.Document().Rename(context.state.Marks().Shown().front(), L"Liver");
    const bool saved = context.window.Exam().SaveStudy();
    StudyFile file;
    StudyContent read;
    const std::wstring problem = file.Open(context.state.StudyFolder(), read);
    context.report.Step(saved && problem.empty() && read == context.state.Content(),
                        L"the study keeps its measurements in its own files");
}

// An image that is mirrored and turned, in fewer grey levels, with the first measurement on it.
void Turned(TourContext& context, Mouse& mouse)
{
    const Mark mark = *context.state.Content().marks.front();
    const FrameSurface surface(context.state.View(), context.state.Layout().image.TopLeft());
    const PixelPoint before = surface.PixelOf(mark.points.front());
    mouse.Key('H');
    mouse.Key('R');
    context.state.MoveGreyWindow(-28, -136);
    const PixelPoint after = surface.PixelOf(mark.points.front());
    const MarkPoint back = surface.PointAt(after);
    const bool isThere =
        Near(back.x, mark.points.front().x, 0.001) && Near(back.y, mark.points.front().y, 0.001);
    context.report.Step(PixelAt(after) != PixelAt(before) && isThere &&
                            *context.state.Content().marks.front() == mark,
                        L"a measurement stays where it was made on the tissue when the image is "
                        L"mirrored and turned");
    context.Picture(L"turned-image");
    context.state.ResetGreyWindow();
    context.state.Rotate(-context.state.ImageOrientation().quarters * 90);
    mouse.Key('H');
    context.report.Step(PixelAt(surface.PixelOf(mark.points.front())) == PixelAt(before),
                        L"and comes back with the image");
}

} // namespace

void TourMeasurements(TourContext& context)
{
    context.state.SelectImage(curvedRecording);
    Mouse mouse(context);
    Distance(context, mouse);
    Angle(context, mouse);
    Areas(context, mouse);
    WholeLine(context, mouse);
    context.Picture(L"measurements");
    Steps(context, mouse);
    Belonging(context);
    PressBeyondReach(context, mouse);
    Trackball(context, mouse);
    Annotations(context, mouse);
    PatientForm(context);
    Kept(context);
    Turned(context, mouse);
}

} // namespace exam
