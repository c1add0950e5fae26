#include "commands/Command.h"
#include "service/CrashOnPurpose.h"

namespace exam {

namespace {

using State = ExamState;

constexpr double zoomStep = 1.25;

constexpr int panPart = 10;

// The image's middle stays where it is.
void Zoom(Examination& exam, double factor)
{
    if (!exam.State().HasSource()) return;
    const CSize size = exam.State().View().Parameters().Size();
    exam.State().ZoomAt(factor, {size.cx / 2, size.cy / 2});
}

// Looks further into a direction, by a part of the image's size.
void Pan(Examination& exam, int right, int down)
{
    if (!exam.State().HasSource()) return;
    const CSize size = exam.State().View().Parameters().Size();
    exam.State().Pan({right * size.cx / panPart, down * size.cy / panPart});
}

constexpr Command viewCommands[] = {
    {.key = {.code = VK_OEM_PLUS, .withControl = true, .repeats = true},
     .text = {"exam.command.zoom.in", "exam.tip.zoom.in"},
     .carryOut = [](Examination& e, int) { Zoom(e, zoomStep); }},
    {.key = {.code = VK_OEM_MINUS, .withControl = true, .repeats = true},
     .text = {"exam.command.zoom.out", "exam.tip.zoom.out"},
     .carryOut = [](Examination& e, int) { Zoom(e, 1 / zoomStep); }},
    {.key = {.code = '0'},
     .text = {"exam.command.zoom.whole", "exam.tip.zoom.whole"},
     .carryOut = [](Examination& e, int) { e.State().ShowWhole(); },
     .value = [](const State& s, int) -> int { return s.View().Zoom() == 1; }},
    {.key = {.code = 'O'},
     .text = {"exam.command.zoom.samples", "exam.tip.zoom.samples"},
     .carryOut = [](Examination& e, int) { e.State().ShowSamples(); }},
    {.key = {.code = VK_LEFT, .withControl = true, .repeats = true},
     .text = {"exam.command.pan.left", "exam.tip.pan.left"},
     .carryOut = [](Examination& e, int) { Pan(e, 1, 0); }},
    {.key = {.code = VK_RIGHT, .withControl = true, .repeats = true},
     .text = {"exam.command.pan.right", "exam.tip.pan.right"},
     .carryOut = [](Examination& e, int) { Pan(e, -1, 0); }},
    {.key = {.code = VK_PRIOR, .withControl = true, .repeats = true},
     .text = {"exam.command.pan.up", "exam.tip.pan.up"},
     .carryOut = [](Examination& e, int) { Pan(e, 0, 1); }},
    {.key = {.code = VK_NEXT, .withControl = true, .repeats = true},
     .text = {"exam.command.pan.down", "exam.tip.pan.down"},
     .carryOut = [](Examination& e, int) { Pan(e, 0, -1); }},
    {.key = {.code = 'L'},
     .text = {"exam.command.language", "exam.tip.language"},
     .carryOut = [](Examination& e, int) { e.Settings().NextLanguage(); }},
    {.key = {.code = VK_F12},
     .text = {"exam.command.settings", "exam.tip.settings"},
     .carryOut = [](Examination& e, int) { e.Settings().Edit(); }},
    {.key = {.code = 'D', .withControl = true},
     .text = {"exam.command.devices", "exam.tip.devices"},
     .carryOut = [](Examination& e, int) { e.ShowPage(&StatusPages::devices); }},
    {.key = {.code = VK_F12, .withControl = true},
     .text = {"exam.command.row", "exam.tip.row"},
     .carryOut = [](Examination& e, int) { e.ShowPage(&StatusPages::row); }},
    {.key = {.code = 'I', .withControl = true},
     .text = {"exam.command.settings.export", "exam.tip.settings.export"},
     .carryOut = [](Examination& e, int) { e.Settings().Export(); }},
    {.key = {.code = 'W', .withControl = true},
     .text = {"exam.command.settings.reset", "exam.tip.settings.reset"},
     .carryOut = [](Examination& e, int) { e.Settings().Reset(); }},
    {.key = {.code = 'K'},
     .text = {"exam.command.panel", "exam.tip.panel"},
     .carryOut = [](Examination& e, int) { e.Window().TogglePanel(); },
     .value = [](const State& s, int) -> int { return s.Panel().isShown; }},
    {.key = {.code = 'J'},
     .text = {"exam.command.float", "exam.tip.float"},
     .carryOut = [](Examination& e, int) { e.Window().FloatPanel(); },
     .value = [](const State& s, int) -> int { return s.Panel().isFloating; }},
    {.key = {.code = 'K', .withControl = true},
     .text = {"exam.command.lock", "exam.tip.lock"},
     .carryOut = [](Examination& e, int) { e.Window().TogglePanelLock(); },
     .value = [](const State& s, int) -> int { return s.Panel().isLocked; }},
    {.key = {.code = 'R', .withControl = true},
     .text = {"exam.command.reset", "exam.tip.reset"},
     .carryOut = [](Examination& e, int) { e.Window().ResetPanel(); }},
};

constexpr Command helpCommands[] = {
    {.key = {.code = VK_F1},
     .text = {"exam.command.keys", "exam.tip.keys"},
     .carryOut = [](Examination& e, int) { e.Window().ToggleKeys(); }},
    {.key = {.code = 'A'},
     .text = {"exam.command.about", "exam.tip.about"},
     .carryOut = [](Examination& e, int) { e.Service().ToggleAbout(e.Window().Owner()); }},
    {.key = {.code = VK_F11},
     .text = {"exam.command.service", "exam.tip.service"},
     .carryOut =
         [](Examination& e, int) {
             CrashByChoice([&](const auto& texts) { return e.Window().ChooseOneOf(texts); });
         }},
};

} // namespace

std::span<const Command> ViewCommands()
{
    return viewCommands;
}

std::span<const Command> HelpCommands()
{
    return helpCommands;
}

} // namespace exam
