#include "commands/Command.h"

#include <Utils_Statics/MouseCapture.h>

namespace exam {

namespace {

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

constexpr Command measureCommands[] = {
    {.action = {L"Measurement", L"Measure"}, .value = IsMeasuring},
    {.key = {.code = '1'},
     .action = {L"Measurement", L"Distance"},
     .text = {"study.kind.distance", "exam.tip.distance"},
     .picture = L"distance.png",
     .carryOut = Choose<MarkKind::distance>,
     .value = IsChosen<MarkKind::distance>},
    {.key = {.code = '2'},
     .action = {L"Measurement", L"Angle"},
     .text = {"study.kind.angle", "exam.tip.angle"},
     .picture = L"angle.png",
     .carryOut = Choose<MarkKind::angle>,
     .value = IsChosen<MarkKind::angle>},
    {.key = {.code = '3'},
     .action = {L"Measurement", L"Area"},
     .text = {"study.kind.rectangle", "exam.tip.rectangle"},
     .picture = L"region.png",
     .carryOut = Choose<MarkKind::rectangle>,
     .value = IsChosen<MarkKind::rectangle>},
    {.key = {.code = '4'},
     .action = {L"Measurement", L"Ellipse"},
     .text = {"study.kind.ellipse", "exam.tip.ellipse"},
     .carryOut = Choose<MarkKind::ellipse>,
     .value = IsChosen<MarkKind::ellipse>},
    {.key = {.code = '5'},
     .action = {L"Measurement", L"Trace"},
     .text = {"study.kind.trace", "exam.tip.trace"},
     .carryOut = Choose<MarkKind::trace>,
     .value = IsChosen<MarkKind::trace>},
    {.key = {.code = '6'},
     .action = {L"Measurement", L"Velocity"},
     .text = {"study.kind.velocity", "exam.tip.velocity"},
     .carryOut = Choose<MarkKind::velocity>,
     .value = IsChosen<MarkKind::velocity>,
     .isPossible = IsFlowShown},
    {.key = {.code = '7'},
     .action = {L"Measurement", L"Time"},
     .text = {"study.kind.time", "exam.tip.time"},
     .carryOut = Choose<MarkKind::time>,
     .value = IsChosen<MarkKind::time>,
     .isPossible = IsFlowShown},
    {.key = {.code = '8'},
     .action = {L"Measurement", L"HeartRate"},
     .text = {"study.kind.heartRate", "exam.tip.heartRate"},
     .carryOut = Choose<MarkKind::heartRate>,
     .value = IsChosen<MarkKind::heartRate>,
     .isPossible = IsFlowShown},
    {.key = {.code = '9'},
     .action = {L"Spectral", L"AutoTrace"},
     .text = {"study.kind.flow", "exam.tip.flow"},
     .carryOut = Choose<MarkKind::flow>,
     .value = IsChosen<MarkKind::flow>,
     .isPossible = IsFlowShown},
    {.key = {.code = 'Z', .withControl = true, .repeats = true},
     .action = {L"Measurement", L"Undo"},
     .text = {"exam.command.undo", "exam.tip.undo"},
     .carryOut = [](Examination& e, int) { e.State().Undo(); },
     .isPossible = [](const State& s) { return s.Document().CanUndo(); }},
    {.key = {.code = 'Y', .withControl = true, .repeats = true},
     .text = {"exam.command.redo", "exam.tip.redo"},
     .carryOut = [](Examination& e, int) { e.State().Redo(); },
     .isPossible = [](const State& s) { return s.Document().CanRedo(); }},
    {.key = {.code = VK_DELETE},
     .text = {"exam.command.delete", "exam.tip.delete"},
     .carryOut = [](Examination& e, int) { e.State().RemoveSelected(); },
     .isPossible = IsMarkSelected},
    {.key = {.code = VK_BACK},
     .text = {"exam.command.removepoint", "exam.tip.removepoint"},
     .carryOut = [](Examination& e, int) { e.State().Marks().RemovePoint(); },
     .isPossible = [](const State& s) { return s.Marks().CanRemovePoint(); }},
    {.key = {.code = VK_F2},
     .text = {"exam.command.rename", "exam.tip.rename"},
     .carryOut = [](Examination& e, int) { e.RenameSelected(); },
     .isPossible = IsMarkSelected},
    {.key = {.code = VK_LEFT, .repeats = true},
     .text = {"exam.command.precise.left", "exam.tip.precise"},
     .carryOut = [](Examination& e, int) { e.MovePrecisely(-1, 0); }},
    {.key = {.code = VK_RIGHT, .repeats = true},
     .text = {"exam.command.precise.right", "exam.tip.precise"},
     .carryOut = [](Examination& e, int) { e.MovePrecisely(1, 0); }},
    {.key = {.code = VK_UP, .repeats = true},
     .text = {"exam.command.precise.up", "exam.tip.precise"},
     .carryOut = [](Examination& e, int) { e.MovePrecisely(0, -1); }},
    {.key = {.code = VK_DOWN, .repeats = true},
     .text = {"exam.command.precise.down", "exam.tip.precise"},
     .carryOut = [](Examination& e, int) { e.MovePrecisely(0, 1); }},
    {.key = {.code = VK_TAB, .repeats = true},
     .action = {L"Measurement", L"NextPoint"},
     .text = {"exam.command.point", "exam.tip.point"},
     .carryOut = [](Examination& e, int) { e.NextPoint(); }},
    {.key = {.code = VK_DELETE, .withControl = true},
     .action = {L"Measurement", L"Clear"},
     .text = {"exam.command.clear", "exam.tip.clear"},
     .carryOut = [](Examination& e, int) { e.State().RemoveShown(); }},
    {.key = {.code = 'T'},
     .action = {L"Annotation", L"Annotate"},
     .text = {"study.kind.text", "exam.tip.text"},
     .carryOut = [](Examination& e, int) { e.Annotate(); },
     .value = IsChosen<MarkKind::text>},
    {.key = {.code = 'T', .withControl = true},
     .action = {L"Annotation", L"Text"},
     .text = {"study.kind.term", "exam.tip.term"},
     .carryOut = [](Examination& e, int) { e.AnnotateWithTerm(); },
     .value = IsChosen<MarkKind::term>},
    {.key = {.code = 'W'},
     .action = {L"Annotation", L"Arrow"},
     .text = {"study.kind.arrow", "exam.tip.arrow"},
     .carryOut = Choose<MarkKind::arrow>,
     .value = IsChosen<MarkKind::arrow>},
    {.key = {.code = 'P'},
     .action = {L"Console", L"Pointer"},
     .text = {"exam.command.pointer", "exam.tip.pointer"},
     .carryOut = ChangePointer,
     .value = [](const State&, int) -> int { return MouseCapture::GetInput() == InputTrackball; }},
};

} // namespace

std::span<const Command> MeasureCommands()
{
    return measureCommands;
}

} // namespace exam
