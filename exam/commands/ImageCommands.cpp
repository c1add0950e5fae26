#include "commands/Command.h"

namespace exam {

namespace {

constexpr int quarterTurn = 90; // degrees
constexpr int levelStep = 8;

using State = ExamState;

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

int IsOnDisplay(const State& state, int param)
{
    return state.Current() == static_cast<std::size_t>(param);
}

constexpr Command imageCommands[] = {
    {.key = {.code = VK_RETURN},
     .action = {L"Imaging", L"Freeze"},
     .text = {"exam.button.Freeze", "exam.tip.freeze"},
     .carryOut = [](Examination& e, int) { e.State().SetFrozen(!e.State().IsFrozen()); },
     .value = [](const State& s, int) -> int { return s.IsFrozen(); }},
    {.key = {.code = VK_OEM_PLUS, .repeats = true, .param = 1},
     .action = {L"Imaging", L"Gain"},
     .text = {"exam.command.gain.up", "exam.tip.gain.up"},
     .carryOut = ChangeGain,
     .value = [](const State& s, int) { return s.Gain(); },
     .isNumber = true},
    {.key = {.code = VK_OEM_MINUS, .repeats = true, .param = -1},
     .text = {"exam.command.gain.down", "exam.tip.gain.down"},
     .carryOut = ChangeGain},
    {.key = {.code = VK_OEM_PERIOD, .repeats = true, .param = 1},
     .action = {L"Imaging", L"Depth"},
     .text = {"exam.command.depth.more", "exam.tip.depth.more"},
     .carryOut = ChangeDepth,
     .value = [](const State& s, int) { return s.DepthMillimetres(); },
     .isNumber = true},
    {.key = {.code = VK_OEM_COMMA, .repeats = true, .param = -1},
     .text = {"exam.command.depth.less", "exam.tip.depth.less"},
     .carryOut = ChangeDepth},
    {.key = {.code = 'H'},
     .action = {L"Imaging", L"FlipHorizontal"},
     .text = {"exam.command.flip.sides", "exam.tip.flip.sides"},
     .carryOut = [](Examination& e, int) { e.State().FlipSides(); },
     .value = [](const State& s, int) -> int { return s.ImageOrientation().flipsSides; }},
    {.key = {.code = 'H', .withControl = true},
     .action = {L"Imaging", L"FlipVertical"},
     .text = {"exam.command.flip.depth", "exam.tip.flip.depth"},
     .carryOut = [](Examination& e, int) { e.State().FlipDepth(); },
     .value = [](const State& s, int) -> int { return s.ImageOrientation().flipsDepth; }},
    {.key = {.code = 'R', .param = quarterTurn},
     .action = {L"Imaging", L"Rotate"},
     .text = {"exam.command.rotate", "exam.tip.rotate"},
     .carryOut = [](Examination& e, int param) { e.State().Rotate(param); },
     .value = [](const State& s, int) { return s.ImageOrientation().quarters * quarterTurn; },
     .isNumber = true},
    {.key = {.code = 'N', .repeats = true, .param = -levelStep},
     .text = {"exam.command.window.narrower", "exam.tip.window.narrower"},
     .carryOut = [](Examination& e, int param) { e.State().MoveGreyWindow(0, param); }},
    {.key = {.code = 'M', .repeats = true, .param = levelStep},
     .text = {"exam.command.window.wider", "exam.tip.window.wider"},
     .carryOut = [](Examination& e, int param) { e.State().MoveGreyWindow(0, param); }},
    {.key = {.code = 'N', .withControl = true, .repeats = true, .param = -levelStep},
     .text = {"exam.command.window.lower", "exam.tip.window.lower"},
     .carryOut = [](Examination& e, int param) { e.State().MoveGreyWindow(param, 0); }},
    {.key = {.code = 'M', .withControl = true, .repeats = true, .param = levelStep},
     .text = {"exam.command.window.higher", "exam.tip.window.higher"},
     .carryOut = [](Examination& e, int param) { e.State().MoveGreyWindow(param, 0); }},
    {.key = {.code = '0', .withControl = true},
     .text = {"exam.command.window.whole", "exam.tip.window.whole"},
     .carryOut = [](Examination& e, int) { e.State().ResetGreyWindow(); },
     .isPossible = [](const State& s) { return s.Levels() != GreyWindow(); }},
    {.key = {.code = 'B'},
     .action = {L"Mode", L"B"},
     .text = {"exam.command.bmode", "exam.tip.bmode"},
     .carryOut = [](Examination& e, int) { e.State().ShowStrip(false); },
     .value = [](const State&, int) { return 1; }},
    {.key = {.code = 'S'},
     .action = {L"Mode", L"PulsedDoppler"},
     .text = {"exam.command.strip", "exam.tip.strip"},
     .carryOut = [](Examination& e, int) { e.State().ShowStrip(!e.State().IsStripShown()); },
     .value = [](const State& s, int) -> int { return s.IsStripShown(); }},
    {.key = {.code = 'F', .repeats = true, .param = 1},
     .action = {L"Cine", L"Step"},
     .text = {"exam.command.frame.next", "exam.tip.frame"},
     .carryOut = StepFrames},
    {.key = {.code = VK_F5},
     .action = {L"Cine", L"Play"},
     .text = {"exam.command.play", "exam.tip.play"},
     .carryOut = [](Examination& e, int) { e.State().SetFrozen(!e.State().IsFrozen()); },
     .value = [](const State& s, int) -> int { return !s.IsFrozen(); }},
    {.key = {.code = 'D', .repeats = true, .param = -1},
     .text = {"exam.command.previous", "exam.tip.previous"},
     .carryOut = StepFrames},
    {.key = {.code = VK_HOME},
     .action = {L"Cine", L"First"},
     .text = {"exam.command.first", "exam.tip.first"},
     .carryOut = [](Examination& e, int) { e.State().ShowPosition(e.State().Loop().first); }},
    {.key = {.code = VK_END},
     .action = {L"Cine", L"Last"},
     .text = {"exam.command.last", "exam.tip.last"},
     .carryOut = [](Examination& e, int) { e.State().ShowPosition(e.State().Loop().second); }},
    {.key = {.code = VK_UP, .withControl = true, .param = 1},
     .action = {L"Cine", L"Speed"},
     .text = {"exam.command.faster", "exam.tip.faster"},
     .carryOut = [](Examination& e, int param) { e.State().ChangeSpeed(param); }},
    {.key = {.code = VK_DOWN, .withControl = true, .param = -1},
     .text = {"exam.command.slower", "exam.tip.slower"},
     .carryOut = [](Examination& e, int param) { e.State().ChangeSpeed(param); }},
    {.key = {.code = VK_HOME, .withControl = true},
     .action = {L"Cine", L"TrimStart"},
     .text = {"exam.command.loopbegin", "exam.tip.loopbegin"},
     .carryOut = [](Examination& e, int) { e.State().BeginLoop(); }},
    {.key = {.code = VK_END, .withControl = true},
     .action = {L"Cine", L"TrimEnd"},
     .text = {"exam.command.loopend", "exam.tip.loopend"},
     .carryOut = [](Examination& e, int) { e.State().EndLoop(); }},
    {.key = {.code = 'L', .withControl = true},
     .action = {L"Cine", L"Loop"},
     .text = {"exam.command.loop", "exam.tip.loop"},
     .carryOut = [](Examination& e, int) { e.State().ClearLoop(); }},
    {.key = {.code = VK_PRIOR, .repeats = true, .param = 4},
     .action = {L"Spectral", L"Baseline"},
     .text = {"exam.command.baseline.up", "exam.tip.baseline.up"},
     .carryOut = [](Examination& e, int param) { e.State().MoveBaseline(param); },
     .isPossible = IsFlowShown},
    {.key = {.code = VK_NEXT, .repeats = true, .param = -4},
     .text = {"exam.command.baseline.down", "exam.tip.baseline.down"},
     .carryOut = [](Examination& e, int param) { e.State().MoveBaseline(param); },
     .isPossible = IsFlowShown},
    {.key = {.code = VK_SPACE},
     .action = {L"Probe", L"Next"},
     .text = {"exam.command.image", "exam.tip.image"},
     .carryOut = [](Examination& e, int) { e.State().NextImage(); }},
    {.key = {.code = VK_F6},
     .action = {L"Probe", L"Select"},
     .text = {"exam.command.curved", "exam.tip.curved"},
     .carryOut = SelectImage,
     .value = IsOnDisplay,
     .params = 5},
    {.key = {.code = VK_F7, .param = 1},
     .text = {"exam.command.linear", "exam.tip.linear"},
     .carryOut = SelectImage,
     .value = IsOnDisplay},
    {.key = {.code = '1', .withControl = true, .param = 2},
     .text = {"exam.command.simulated.curved", "exam.tip.simulated.curved"},
     .carryOut = SelectImage,
     .value = IsOnDisplay},
    {.key = {.code = '2', .withControl = true, .param = 3},
     .text = {"exam.command.simulated.linear", "exam.tip.simulated.linear"},
     .carryOut = SelectImage,
     .value = IsOnDisplay},
    {.key = {.code = '3', .withControl = true, .param = 4},
     .text = {"exam.command.simulated.phased", "exam.tip.simulated.phased"},
     .carryOut = SelectImage,
     .value = IsOnDisplay},
};

} // namespace

std::span<const Command> ImageCommands()
{
    return imageCommands;
}

} // namespace exam
