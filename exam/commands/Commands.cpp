#include "commands/Commands.h"

#include "service/CrashOnPurpose.h"

#include <pro_actions/CProActionCollection.h>
#include <pro_actions/IActionStateConsumer.h>
#include <pro_actions/NotifiedConsumer.h>
#include <pro_actions/VocabularyLoading.h>
#include <Utils_Statics/GetStr.h>
#include <Utils_Statics/MouseCapture.h>

#include <algorithm>

namespace exam {

namespace {

constexpr int tenthsOfDegree = 10;

// Files may hold any number. Within these bounds no sum or product here overflows, and every
// meaningful action fits.
constexpr int mostParam = 10000;

constexpr double zoomStep = 1.25;
constexpr int panPart = 10;

using State = ExamState;

// Lets the next press begin a mark of a kind.
template <MarkKind kind>
void Choose(Examination& exam, int)
{
    exam.State().ChooseMark(kind);
}

template <MarkKind kind>
int IsChosen(const State& state, int)
{
    return state.Marks().Chosen() == kind;
}

bool HasFlow(const State& state)
{
    return state.IsStripShown() && state.Strip().HasFlow();
}

bool IsMarkSelected(const State& state)
{
    return state.Marks().Selected() != 0;
}

void ChangePointer(Examination& exam, int)
{
    const bool isPointer = MouseCapture::GetInput() == InputPointer;
    exam.State().SetInput(isPointer ? InputTrackball : InputPointer);
}

int IsMeasuring(const State& state, int)
{
    return state.Marks().Chosen() || !state.Marks().Shown().empty();
}

void SelectImage(Examination& exam, int param)
{
    exam.State().SelectImage(static_cast<std::size_t>(param));
}

void ChangeGain(Examination& exam, int param)
{
    exam.State().ChangeGain(param);
}

void ChangeDepth(Examination& exam, int param)
{
    exam.State().ChangeDepth(param);
}

void StepFrames(Examination& exam, int param)
{
    exam.State().StepFrames(param);
}

// The image's middle stays where it is.
void Zoom(Examination& exam, double factor)
{
    if (!exam.State().HasSource()) return;
    const ImagingParameters& image = exam.State().View().Parameters();
    exam.State().ZoomAt(factor, {image.width / 2, image.height / 2});
}

// Looks further into a direction, by a part of the image's size.
void Pan(Examination& exam, int right, int down)
{
    if (!exam.State().HasSource()) return;
    const ImagingParameters& image = exam.State().View().Parameters();
    exam.State().Pan({right * image.width / panPart, down * image.height / panPart});
}

int IsOnDisplay(const State& state, int param)
{
    return state.Current() == static_cast<std::size_t>(param);
}

// Only one recording runs at a time, so the other kind cannot begin meanwhile.
template <bool isMovie>
int IsRecorded(const State& state, int = 0)
{
    return state.Recording() && state.Recording()->isMovie == isMovie;
}

template <bool isMovie>
bool CanRecord(const State& state)
{
    return IsRecorded<!isMovie>(state) == 0;
}

// The names of types and actions are those of the vocabulary.
constexpr Command commands[] = {
    {.key = VK_RETURN,
     .menu = Menu::image,
     .type = L"Imaging",
     .action = L"Freeze",
     .nameKey = "exam.button.Freeze",
     .tipKey = "exam.tip.freeze",
     .carryOut = [](Examination& e, int) { e.State().SetFrozen(!e.State().IsFrozen()); },
     .value = [](const State& s, int) -> int { return s.IsFrozen(); }},
    {.key = VK_OEM_PLUS,
     .repeats = true,
     .keyParam = 1,
     .menu = Menu::image,
     .type = L"Imaging",
     .action = L"Gain",
     .nameKey = "exam.command.gain.up",
     .tipKey = "exam.tip.gain.up",
     .carryOut = ChangeGain,
     .value = [](const State& s, int) { return s.Gain(); },
     .isNumber = true},
    {.key = VK_OEM_MINUS,
     .repeats = true,
     .keyParam = -1,
     .menu = Menu::image,
     .nameKey = "exam.command.gain.down",
     .tipKey = "exam.tip.gain.down",
     .carryOut = ChangeGain},
    {.key = VK_OEM_PERIOD,
     .repeats = true,
     .keyParam = 1,
     .menu = Menu::image,
     .type = L"Imaging",
     .action = L"Depth",
     .nameKey = "exam.command.depth.more",
     .tipKey = "exam.tip.depth.more",
     .carryOut = ChangeDepth,
     .value = [](const State& s, int) { return s.DepthMillimetres(); },
     .isNumber = true},
    {.key = VK_OEM_COMMA,
     .repeats = true,
     .keyParam = -1,
     .menu = Menu::image,
     .nameKey = "exam.command.depth.less",
     .tipKey = "exam.tip.depth.less",
     .carryOut = ChangeDepth},
    {.key = 'R',
     .repeats = true,
     .keyParam = 15,
     .menu = Menu::image,
     .type = L"Imaging",
     .action = L"Rotate",
     .nameKey = "exam.command.rotate",
     .tipKey = "exam.tip.rotate",
     .carryOut = [](Examination& e, int param) { e.State().Rotate(param * tenthsOfDegree); },
     .value = [](const State& s, int) { return s.Rotation() / tenthsOfDegree; },
     .isNumber = true},
    {.key = 'B',
     .menu = Menu::image,
     .type = L"Mode",
     .action = L"B",
     .nameKey = "exam.command.bmode",
     .tipKey = "exam.tip.bmode",
     .carryOut = [](Examination& e, int) { e.State().ShowStrip(false); },
     .value = [](const State&, int) { return 1; }},
    {.key = 'S',
     .menu = Menu::image,
     .type = L"Mode",
     .action = L"PulsedDoppler",
     .nameKey = "exam.command.strip",
     .tipKey = "exam.tip.strip",
     .carryOut = [](Examination& e, int) { e.State().ShowStrip(!e.State().IsStripShown()); },
     .value = [](const State& s, int) -> int { return s.IsStripShown(); }},
    {.type = L"Measurement", .action = L"Measure", .value = IsMeasuring},
    {.key = '1',
     .menu = Menu::measure,
     .type = L"Measurement",
     .action = L"Distance",
     .picture = L"distance.png",
     .nameKey = "study.kind.distance",
     .tipKey = "exam.tip.distance",
     .carryOut = Choose<MarkKind::distance>,
     .value = IsChosen<MarkKind::distance>},
    {.key = '2',
     .menu = Menu::measure,
     .type = L"Measurement",
     .action = L"Angle",
     .picture = L"angle.png",
     .nameKey = "study.kind.angle",
     .tipKey = "exam.tip.angle",
     .carryOut = Choose<MarkKind::angle>,
     .value = IsChosen<MarkKind::angle>},
    {.key = '3',
     .menu = Menu::measure,
     .type = L"Measurement",
     .action = L"Area",
     .picture = L"region.png",
     .nameKey = "study.kind.rectangle",
     .tipKey = "exam.tip.rectangle",
     .carryOut = Choose<MarkKind::rectangle>,
     .value = IsChosen<MarkKind::rectangle>},
    {.key = '4',
     .menu = Menu::measure,
     .type = L"Measurement",
     .action = L"Ellipse",
     .nameKey = "study.kind.ellipse",
     .tipKey = "exam.tip.ellipse",
     .carryOut = Choose<MarkKind::ellipse>,
     .value = IsChosen<MarkKind::ellipse>},
    {.key = '5',
     .menu = Menu::measure,
     .type = L"Measurement",
     .action = L"Trace",
     .nameKey = "study.kind.trace",
     .tipKey = "exam.tip.trace",
     .carryOut = Choose<MarkKind::trace>,
     .value = IsChosen<MarkKind::trace>},
    {.key = '6',
     .menu = Menu::measure,
     .type = L"Measurement",
     .action = L"Velocity",
     .nameKey = "study.kind.velocity",
     .tipKey = "exam.tip.velocity",
     .carryOut = Choose<MarkKind::velocity>,
     .value = IsChosen<MarkKind::velocity>,
     .isPossible = HasFlow},
    {.key = '7',
     .menu = Menu::measure,
     .type = L"Measurement",
     .action = L"Time",
     .nameKey = "study.kind.time",
     .tipKey = "exam.tip.time",
     .carryOut = Choose<MarkKind::time>,
     .value = IsChosen<MarkKind::time>,
     .isPossible = HasFlow},
    {.key = '8',
     .menu = Menu::measure,
     .type = L"Measurement",
     .action = L"HeartRate",
     .nameKey = "study.kind.heartRate",
     .tipKey = "exam.tip.heartRate",
     .carryOut = Choose<MarkKind::heartRate>,
     .value = IsChosen<MarkKind::heartRate>,
     .isPossible = HasFlow},
    {.key = '9',
     .menu = Menu::measure,
     .type = L"Spectral",
     .action = L"AutoTrace",
     .nameKey = "study.kind.flow",
     .tipKey = "exam.tip.flow",
     .carryOut = Choose<MarkKind::flow>,
     .value = IsChosen<MarkKind::flow>,
     .isPossible = HasFlow},
    {.key = 'Z',
     .withControl = true,
     .repeats = true,
     .menu = Menu::measure,
     .type = L"Measurement",
     .action = L"Undo",
     .nameKey = "exam.command.undo",
     .tipKey = "exam.tip.undo",
     .carryOut = [](Examination& e, int) { e.State().Undo(); },
     .isPossible = [](const State& s) { return s.Document().CanUndo(); }},
    {.key = 'Y',
     .withControl = true,
     .repeats = true,
     .menu = Menu::measure,
     .nameKey = "exam.command.redo",
     .tipKey = "exam.tip.redo",
     .carryOut = [](Examination& e, int) { e.State().Redo(); },
     .isPossible = [](const State& s) { return s.Document().CanRedo(); }},
    {.key = VK_DELETE,
     .menu = Menu::measure,
     .nameKey = "exam.command.delete",
     .tipKey = "exam.tip.delete",
     .carryOut = [](Examination& e, int) { e.State().RemoveSelected(); },
     .isPossible = IsMarkSelected},
    {.key = VK_F2,
     .menu = Menu::measure,
     .nameKey = "exam.command.rename",
     .tipKey = "exam.tip.rename",
     .carryOut = [](Examination& e, int) { e.RenameSelected(); },
     .isPossible = IsMarkSelected},
    {.key = VK_LEFT,
     .repeats = true,
     .menu = Menu::measure,
     .nameKey = "exam.command.precise.left",
     .tipKey = "exam.tip.precise",
     .carryOut = [](Examination& e, int) { e.MovePrecisely(-1, 0); }},
    {.key = VK_RIGHT,
     .repeats = true,
     .menu = Menu::measure,
     .nameKey = "exam.command.precise.right",
     .tipKey = "exam.tip.precise",
     .carryOut = [](Examination& e, int) { e.MovePrecisely(1, 0); }},
    {.key = VK_UP,
     .repeats = true,
     .menu = Menu::measure,
     .nameKey = "exam.command.precise.up",
     .tipKey = "exam.tip.precise",
     .carryOut = [](Examination& e, int) { e.MovePrecisely(0, -1); }},
    {.key = VK_DOWN,
     .repeats = true,
     .menu = Menu::measure,
     .nameKey = "exam.command.precise.down",
     .tipKey = "exam.tip.precise",
     .carryOut = [](Examination& e, int) { e.MovePrecisely(0, 1); }},
    {.key = 'S',
     .withControl = true,
     .menu = Menu::exam,
     .nameKey = "exam.command.save",
     .tipKey = "exam.tip.save",
     .carryOut = [](Examination& e, int) { e.SaveStudy(); }},
    {.key = 'E',
     .withControl = true,
     .menu = Menu::exam,
     .type = L"Document",
     .action = L"Export",
     .nameKey = "exam.command.table",
     .tipKey = "exam.tip.table",
     .carryOut = [](Examination& e, int) { e.ExportTable(); }},
    {.key = 'P',
     .withControl = true,
     .menu = Menu::exam,
     .type = L"Document",
     .action = L"Print",
     .nameKey = "exam.command.report",
     .tipKey = "exam.tip.report",
     .carryOut = [](Examination& e, int) { e.ExportReport(); }},
    {.key = VK_TAB,
     .repeats = true,
     .menu = Menu::measure,
     .type = L"Measurement",
     .action = L"NextPoint",
     .nameKey = "exam.command.point",
     .tipKey = "exam.tip.point",
     .carryOut = [](Examination&, int) { MouseCapture::LockNext(); }},
    {.key = VK_DELETE,
     .withControl = true,
     .menu = Menu::measure,
     .type = L"Measurement",
     .action = L"Clear",
     .nameKey = "exam.command.clear",
     .tipKey = "exam.tip.clear",
     .carryOut = [](Examination& e, int) { e.State().RemoveShown(); }},
    {.key = 'G',
     .menu = Menu::exam,
     .type = L"Document",
     .action = L"SaveImage",
     .nameKey = "exam.command.picture",
     .tipKey = "exam.tip.picture",
     .carryOut = [](Examination& e, int) { e.SavePicture(); }},
    {.key = 'C',
     .menu = Menu::exam,
     .type = L"Document",
     .action = L"Record",
     .picture = L"raw.png",
     .nameKey = "exam.command.raw",
     .tipKey = "exam.tip.raw",
     .carryOut = [](Examination& e, int) { e.ToggleRecording(false); },
     .value = IsRecorded<false>,
     .isPossible = CanRecord<false>},
    {.key = 'V',
     .menu = Menu::exam,
     .type = L"Document",
     .action = L"RecordMovie",
     .picture = L"movie.png",
     .nameKey = "exam.command.movie",
     .tipKey = "exam.tip.movie",
     .carryOut = [](Examination& e, int) { e.ToggleRecording(true); },
     .value = IsRecorded<true>,
     .isPossible = CanRecord<true>},
    {.key = 'F',
     .repeats = true,
     .keyParam = 1,
     .menu = Menu::image,
     .type = L"Cine",
     .action = L"Step",
     .nameKey = "exam.command.frame.next",
     .tipKey = "exam.tip.frame",
     .carryOut = StepFrames},
    {.key = 'T',
     .menu = Menu::measure,
     .type = L"Annotation",
     .action = L"Annotate",
     .nameKey = "study.kind.text",
     .tipKey = "exam.tip.text",
     .carryOut = [](Examination& e, int) { e.Annotate(); },
     .value = IsChosen<MarkKind::text>},
    {.key = 'W',
     .menu = Menu::measure,
     .type = L"Annotation",
     .action = L"Arrow",
     .nameKey = "study.kind.arrow",
     .tipKey = "exam.tip.arrow",
     .carryOut = Choose<MarkKind::arrow>,
     .value = IsChosen<MarkKind::arrow>},
    {.key = VK_F4,
     .menu = Menu::exam,
     .type = L"Patient",
     .action = L"Edit",
     .nameKey = "exam.command.patient",
     .tipKey = "exam.tip.patient",
     .carryOut = [](Examination& e, int) { e.EditPatient(); }},
    {.key = 'O',
     .withControl = true,
     .menu = Menu::exam,
     .nameKey = "exam.command.open",
     .tipKey = "exam.tip.open",
     .carryOut = [](Examination& e, int) { e.ChooseImage(); }},
    {.key = VK_F3,
     .menu = Menu::exam,
     .nameKey = "exam.command.recent",
     .tipKey = "exam.tip.recent",
     .carryOut = [](Examination& e, int) { e.ChooseRecentImage(); }},
    {.key = VK_F5,
     .menu = Menu::image,
     .type = L"Cine",
     .action = L"Play",
     .nameKey = "exam.command.play",
     .tipKey = "exam.tip.play",
     .carryOut = [](Examination& e, int) { e.State().SetFrozen(!e.State().IsFrozen()); },
     .value = [](const State& s, int) -> int { return !s.IsFrozen(); }},
    {.key = 'D',
     .repeats = true,
     .keyParam = -1,
     .menu = Menu::image,
     .nameKey = "exam.command.previous",
     .tipKey = "exam.tip.previous",
     .carryOut = StepFrames},
    {.key = VK_HOME,
     .menu = Menu::image,
     .type = L"Cine",
     .action = L"First",
     .nameKey = "exam.command.first",
     .tipKey = "exam.tip.first",
     .carryOut = [](Examination& e, int) { e.State().ShowPosition(e.State().Loop().first); }},
    {.key = VK_END,
     .menu = Menu::image,
     .type = L"Cine",
     .action = L"Last",
     .nameKey = "exam.command.last",
     .tipKey = "exam.tip.last",
     .carryOut = [](Examination& e, int) { e.State().ShowPosition(e.State().Loop().second); }},
    {.key = VK_UP,
     .withControl = true,
     .keyParam = 1,
     .menu = Menu::image,
     .type = L"Cine",
     .action = L"Speed",
     .nameKey = "exam.command.faster",
     .tipKey = "exam.tip.faster",
     .carryOut = [](Examination& e, int param) { e.State().ChangeSpeed(param); }},
    {.key = VK_DOWN,
     .withControl = true,
     .keyParam = -1,
     .menu = Menu::image,
     .nameKey = "exam.command.slower",
     .tipKey = "exam.tip.slower",
     .carryOut = [](Examination& e, int param) { e.State().ChangeSpeed(param); }},
    {.key = VK_HOME,
     .withControl = true,
     .menu = Menu::image,
     .type = L"Cine",
     .action = L"TrimStart",
     .nameKey = "exam.command.loopbegin",
     .tipKey = "exam.tip.loopbegin",
     .carryOut = [](Examination& e, int) { e.State().BeginLoop(); }},
    {.key = VK_END,
     .withControl = true,
     .menu = Menu::image,
     .type = L"Cine",
     .action = L"TrimEnd",
     .nameKey = "exam.command.loopend",
     .tipKey = "exam.tip.loopend",
     .carryOut = [](Examination& e, int) { e.State().EndLoop(); }},
    {.key = 'L',
     .withControl = true,
     .menu = Menu::image,
     .type = L"Cine",
     .action = L"Loop",
     .nameKey = "exam.command.loop",
     .tipKey = "exam.tip.loop",
     .carryOut = [](Examination& e, int) { e.State().ClearLoop(); }},
    {.key = VK_PRIOR,
     .repeats = true,
     .keyParam = 4,
     .menu = Menu::image,
     .type = L"Spectral",
     .action = L"Baseline",
     .nameKey = "exam.command.baseline.up",
     .tipKey = "exam.tip.baseline.up",
     .carryOut = [](Examination& e, int param) { e.State().MoveBaseline(param); },
     .isPossible = HasFlow},
    {.key = VK_NEXT,
     .repeats = true,
     .keyParam = -4,
     .menu = Menu::image,
     .nameKey = "exam.command.baseline.down",
     .tipKey = "exam.tip.baseline.down",
     .carryOut = [](Examination& e, int param) { e.State().MoveBaseline(param); },
     .isPossible = HasFlow},
    {.key = VK_SPACE,
     .menu = Menu::image,
     .type = L"Probe",
     .action = L"Next",
     .nameKey = "exam.command.image",
     .tipKey = "exam.tip.image",
     .carryOut = [](Examination& e, int) { e.State().NextImage(); }},
    {.key = VK_F6,
     .keyParam = 0,
     .menu = Menu::image,
     .type = L"Probe",
     .action = L"Select",
     .nameKey = "exam.command.curved",
     .tipKey = "exam.tip.curved",
     .carryOut = SelectImage,
     .value = IsOnDisplay,
     .params = 5},
    {.key = VK_F7,
     .keyParam = 1,
     .menu = Menu::image,
     .nameKey = "exam.command.linear",
     .tipKey = "exam.tip.linear",
     .carryOut = SelectImage,
     .value = IsOnDisplay},
    {.key = '1',
     .withControl = true,
     .keyParam = 2,
     .menu = Menu::image,
     .nameKey = "exam.command.simulated.curved",
     .tipKey = "exam.tip.simulated.curved",
     .carryOut = SelectImage,
     .value = IsOnDisplay},
    {.key = '2',
     .withControl = true,
     .keyParam = 3,
     .menu = Menu::image,
     .nameKey = "exam.command.simulated.linear",
     .tipKey = "exam.tip.simulated.linear",
     .carryOut = SelectImage,
     .value = IsOnDisplay},
    {.key = '3',
     .withControl = true,
     .keyParam = 4,
     .menu = Menu::image,
     .nameKey = "exam.command.simulated.phased",
     .tipKey = "exam.tip.simulated.phased",
     .carryOut = SelectImage,
     .value = IsOnDisplay},
    {.key = VK_OEM_PLUS,
     .withControl = true,
     .repeats = true,
     .menu = Menu::view,
     .nameKey = "exam.command.zoom.in",
     .tipKey = "exam.tip.zoom.in",
     .carryOut = [](Examination& e, int) { Zoom(e, zoomStep); }},
    {.key = VK_OEM_MINUS,
     .withControl = true,
     .repeats = true,
     .menu = Menu::view,
     .nameKey = "exam.command.zoom.out",
     .tipKey = "exam.tip.zoom.out",
     .carryOut = [](Examination& e, int) { Zoom(e, 1 / zoomStep); }},
    {.key = '0',
     .menu = Menu::view,
     .nameKey = "exam.command.zoom.whole",
     .tipKey = "exam.tip.zoom.whole",
     .carryOut = [](Examination& e, int) { e.State().ShowWhole(); }},
    {.key = 'O',
     .menu = Menu::view,
     .nameKey = "exam.command.zoom.samples",
     .tipKey = "exam.tip.zoom.samples",
     .carryOut = [](Examination& e, int) { e.State().ShowSamples(); }},
    {.key = VK_LEFT,
     .withControl = true,
     .repeats = true,
     .menu = Menu::view,
     .nameKey = "exam.command.pan.left",
     .tipKey = "exam.tip.pan.left",
     .carryOut = [](Examination& e, int) { Pan(e, 1, 0); }},
    {.key = VK_RIGHT,
     .withControl = true,
     .repeats = true,
     .menu = Menu::view,
     .nameKey = "exam.command.pan.right",
     .tipKey = "exam.tip.pan.right",
     .carryOut = [](Examination& e, int) { Pan(e, -1, 0); }},
    {.key = VK_PRIOR,
     .withControl = true,
     .repeats = true,
     .menu = Menu::view,
     .nameKey = "exam.command.pan.up",
     .tipKey = "exam.tip.pan.up",
     .carryOut = [](Examination& e, int) { Pan(e, 0, 1); }},
    {.key = VK_NEXT,
     .withControl = true,
     .repeats = true,
     .menu = Menu::view,
     .nameKey = "exam.command.pan.down",
     .tipKey = "exam.tip.pan.down",
     .carryOut = [](Examination& e, int) { Pan(e, 0, -1); }},
    {.key = 'P',
     .menu = Menu::measure,
     .type = L"Console",
     .action = L"Pointer",
     .nameKey = "exam.command.pointer",
     .tipKey = "exam.tip.pointer",
     .carryOut = ChangePointer,
     .value = [](const State&, int) -> int { return MouseCapture::GetInput() == InputTrackball; }},
    {.key = 'E',
     .menu = Menu::exam,
     .type = L"Console",
     .action = L"Cancel",
     .nameKey = "exam.button.Stop",
     .tipKey = "exam.tip.stop",
     .carryOut = [](Examination& e, int) { e.EndRecording(); }},
    {.key = 'L',
     .menu = Menu::view,
     .nameKey = "exam.command.language",
     .tipKey = "exam.tip.language",
     .carryOut = [](Examination& e, int) { e.State().NextLanguage(); }},
    {.key = 'K',
     .menu = Menu::view,
     .nameKey = "exam.command.panel",
     .tipKey = "exam.tip.panel",
     .carryOut = [](Examination& e, int) { e.Window().TogglePanel(); }},
    {.key = 'J',
     .menu = Menu::view,
     .nameKey = "exam.command.float",
     .tipKey = "exam.tip.float",
     .carryOut = [](Examination& e, int) { e.Window().FloatPanel(); }},
    {.key = 'K',
     .withControl = true,
     .menu = Menu::view,
     .nameKey = "exam.command.lock",
     .tipKey = "exam.tip.lock",
     .carryOut = [](Examination& e, int) { e.Window().TogglePanelLock(); }},
    {.key = 'R',
     .withControl = true,
     .menu = Menu::view,
     .nameKey = "exam.command.reset",
     .tipKey = "exam.tip.reset",
     .carryOut = [](Examination& e, int) { e.Window().ResetPanel(); }},
    {.key = 'Z',
     .menu = Menu::exam,
     .nameKey = "exam.command.pack",
     .tipKey = "exam.tip.pack",
     .carryOut = [](Examination& e, int) { e.Pack(); }},
    {.key = 'U',
     .menu = Menu::exam,
     .nameKey = "exam.command.unpack",
     .tipKey = "exam.tip.unpack",
     .carryOut = [](Examination& e, int) { e.Unpack(); }},
    {.key = VK_F1,
     .menu = Menu::help,
     .nameKey = "exam.command.keys",
     .tipKey = "exam.tip.keys",
     .carryOut = [](Examination& e, int) { e.Window().ToggleKeys(); }},
    {.key = 'A',
     .menu = Menu::help,
     .nameKey = "exam.command.about",
     .tipKey = "exam.tip.about",
     .carryOut = [](Examination& e, int) { e.Service().ToggleAbout(e.Window().Owner()); }},
    {.key = VK_F11,
     .menu = Menu::help,
     .nameKey = "exam.command.service",
     .tipKey = "exam.tip.service",
     .carryOut = [](Examination& e, int) { ShowServiceMenu(e.Window().Owner().GetSafeHwnd()); }},
    {.key = VK_ESCAPE,
     .menu = Menu::exam,
     .nameKey = "exam.command.cancel",
     .tipKey = "exam.tip.cancel",
     .carryOut = [](Examination& e, int) { e.Cancel(); }},
    {.key = 'Q',
     .withControl = true,
     .menu = Menu::exam,
     .type = L"Exam",
     .action = L"End",
     .nameKey = "exam.button.End",
     .tipKey = "exam.tip.end",
     .carryOut = [](Examination& e, int) { e.Leave(); }},
};

ActionStateInfo StateOf(const Command& command, int param)
{
    const ActionType type = CProActionCollection::MapActionType(command.type);
    return {type, CProActionCollection::MapAction(type, command.action), param};
}

// The name of a key by itself.
CString NameOfKey(UINT key)
{
    switch (key) {
    case VK_SPACE: return GetStr("exam.key.space");
    case VK_RETURN: return GetStr("exam.key.enter");
    case VK_DELETE: return GetStr("exam.key.delete");
    case VK_PRIOR: return GetStr("exam.key.pageup");
    case VK_NEXT: return GetStr("exam.key.pagedown");
    case VK_LEFT: return GetStr("exam.key.left");
    case VK_RIGHT: return GetStr("exam.key.right");
    case VK_UP: return GetStr("exam.key.up");
    case VK_DOWN: return GetStr("exam.key.down");
    case VK_TAB: return L"Tab";
    case VK_ESCAPE: return L"Esc";
    case VK_HOME: return GetStr("exam.key.home");
    case VK_END: return GetStr("exam.key.end");
    case VK_OEM_COMMA: return L",";
    case VK_OEM_PERIOD: return L".";
    case VK_OEM_PLUS: return L"+";
    case VK_OEM_MINUS: return L"\u2212";
    default: break;
    }
    CString name;
    if (key >= VK_F1 && key <= VK_F12)
        name.Format(L"F%u", key - VK_F1 + 1);
    else
        name.Format(L"%c", static_cast<wchar_t>(key));
    return name;
}

} // namespace

std::span<const Command> Commands()
{
    return commands;
}

const Command* CommandOfKey(UINT key, bool withControl)
{
    const auto* const found =
        std::find_if(std::begin(commands), std::end(commands), [&](const Command& each) {
            return key != 0 && each.key == key && each.withControl == withControl;
        });
    return found == std::end(commands) ? nullptr : found;
}

const Command* CommandOfAction(const ActionInfo& action)
{
    const auto* const found =
        std::find_if(std::begin(commands), std::end(commands), [&action](const Command& each) {
            if (!each.type) return false;
            const ActionStateInfo state = StateOf(each, 0);
            return state.type == action.type && state.action == action.action;
        });
    return found == std::end(commands) ? nullptr : found;
}

bool IsOn(const Command& command, const ExamState& state)
{
    return command.value && !command.isNumber && command.value(state, command.keyParam) != 0;
}

bool IsPossible(const Command& command, const ExamState& state)
{
    return command.carryOut && (!command.isPossible || command.isPossible(state));
}

CString KeyName(const Command& command)
{
    const CString key = NameOfKey(command.key);
    return command.withControl ? GetStr("exam.key.control", key.GetString()) : key;
}

CString TipOf(const Command& command)
{
    const CString tip = GetStr(command.tipKey);
    return GetStr("exam.tip.key", KeyName(command).GetString(), tip.GetString());
}

std::wstring KeyHelp()
{
    constexpr std::size_t width = 18; // the longest name has fourteen letters
    std::wstring help;
    for (const Command& command : commands) {
        if (command.key == 0) continue;
        std::wstring line = L"  " + std::wstring(KeyName(command));
        line.resize(width, L' ');
        help += line + GetStr(command.tipKey).GetString() + L"\n";
    }
    return help;
}

void CommandDesk::Press(const KeyPress& press)
{
    const Command* const command = CommandOfKey(press.key, press.control);
    if (!command || press.other || (press.isRepeat && !command->repeats)) return;
    CarryOut(*command);
}

void CommandDesk::CarryOut(const Command& command)
{
    if (IsPossible(command, m_exam.State())) command.carryOut(m_exam, command.keyParam);
}

void CommandDesk::CarryOut(const ActionInfo& action)
{
    const Command* const command = CommandOfAction(action);
    if (!command || !command->carryOut) {
        const std::wstring type = pro_actions::ActionTypeName(action.type);
        const std::wstring name = pro_actions::ActionName(action.type, action.action);
        return m_exam.State().SetStatus(GetStr("exam.action.noeffect", type.c_str(), name.c_str()));
    }
    if (!IsPossible(*command, m_exam.State())) return;
    command->carryOut(m_exam, std::clamp<int>(action.param, -mostParam, mostParam));
    pro_actions::SignalActionNotification(action.type, action.action, action.param);
}

void CommandDesk::BroadcastAll()
{
    m_told.clear();
    BroadcastChanges();
}

void CommandDesk::OnStateChange(StateChangeType, unsigned int, long)
{
    BroadcastChanges();
}

void CommandDesk::BroadcastChanges()
{
    for (const Command& command : commands) {
        for (int param = 0; command.type && command.value && param < command.params; ++param) {
            const ActionStateInfo state = StateOf(command, param);
            const int value = command.value(m_exam.State(), param);
            const auto told = m_told.find(state);
            if (told != m_told.end() && told->second == value) continue;
            m_told[state] = value;
            IActionStateConsumer::ActionStateSignal(state, value);
        }
    }
}

} // namespace exam
