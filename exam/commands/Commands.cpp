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

using State = ExamState;

// A measurement belongs to one frame, so the frames stand still for it, unless they are recorded.
void Toggle(Examination& exam, ImageTool& tool)
{
    tool.Show(!tool.IsVisible());
    if (tool.IsOutside()) exam.State().SetStatus(GetStr("exam.measure.outside"));
    if (tool.IsVisible() && !exam.State().Recording()) exam.State().SetFrozen(true);
}

void ClearMeasurements(Examination& exam, int)
{
    for (ImageTool* const tool : exam.State().Tools().All())
        tool->Clear();
}

void ChangePointer(Examination& exam, int)
{
    const bool isPointer = MouseCapture::GetInput() == InputPointer;
    exam.State().SetInput(isPointer ? InputTrackball : InputPointer);
}

int IsAnyToolVisible(const State& state, int)
{
    const auto tools = state.Tools().All();
    return std::any_of(tools.begin(), tools.end(),
                       [](const ImageTool* tool) { return tool->IsVisible(); });
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
    {.type = L"Imaging",
     .action = L"Freeze",
     .carryOut = [](Examination& e, int) { e.State().SetFrozen(!e.State().IsFrozen()); },
     .value = [](const State& s, int) -> int { return s.IsFrozen(); }},
    {.type = L"Imaging",
     .action = L"Gain",
     .carryOut = [](Examination& e, int param) { e.State().ChangeGain(param); },
     .value = [](const State& s, int) { return s.Gain(); }},
    {.type = L"Imaging",
     .action = L"Depth",
     .carryOut = [](Examination& e, int param) { e.State().ChangeDepth(param); },
     .value = [](const State& s, int) { return s.DepthMillimetres(); }},
    {.key = 'R',
     .repeats = true,
     .keyParam = 15,
     .type = L"Imaging",
     .action = L"Rotate",
     .nameKey = "exam.button.Rotate",
     .tipKey = "exam.tip.rotate",
     .carryOut = [](Examination& e, int param) { e.State().Rotate(param * tenthsOfDegree); },
     .value = [](const State& s, int) { return s.Rotation() / tenthsOfDegree; }},
    {.type = L"Mode",
     .action = L"B",
     .carryOut = [](Examination& e, int) { e.State().ShowStrip(false); },
     .value = [](const State&, int) { return 1; }},
    {.key = 'S',
     .type = L"Mode",
     .action = L"PulsedDoppler",
     .nameKey = "exam.button.PulsedDoppler",
     .tipKey = "exam.tip.strip",
     .carryOut = [](Examination& e, int) { e.State().ShowStrip(!e.State().IsStripShown()); },
     .value = [](const State& s, int) -> int { return s.IsStripShown(); }},
    {.type = L"Measurement", .action = L"Measure", .value = IsAnyToolVisible},
    {.key = '1',
     .type = L"Measurement",
     .action = L"Distance",
     .picture = L"distance.png",
     .nameKey = "exam.tool.distance",
     .tipKey = "exam.tip.distance",
     .carryOut = [](Examination& e, int) { Toggle(e, e.State().Tools().Distance()); },
     .value = [](const State& s, int) -> int { return s.Tools().Distance().IsVisible(); }},
    {.key = '2',
     .type = L"Measurement",
     .action = L"Angle",
     .picture = L"angle.png",
     .nameKey = "exam.tool.angle",
     .tipKey = "exam.tip.angle",
     .carryOut = [](Examination& e, int) { Toggle(e, e.State().Tools().Angle()); },
     .value = [](const State& s, int) -> int { return s.Tools().Angle().IsVisible(); }},
    {.key = '3',
     .type = L"Measurement",
     .action = L"Area",
     .picture = L"region.png",
     .nameKey = "exam.tool.region",
     .tipKey = "exam.tip.region",
     .carryOut = [](Examination& e, int) { Toggle(e, e.State().Tools().Region()); },
     .value = [](const State& s, int) -> int { return s.Tools().Region().IsVisible(); }},
    {.key = VK_TAB,
     .repeats = true,
     .type = L"Measurement",
     .action = L"NextPoint",
     .nameKey = "exam.command.point",
     .tipKey = "exam.tip.point",
     .carryOut = [](Examination&, int) { MouseCapture::LockNext(); }},
    {.type = L"Measurement", .action = L"Clear", .carryOut = ClearMeasurements},
    {.type = L"Document",
     .action = L"SaveImage",
     .carryOut = [](Examination& e, int) { e.SavePicture(); }},
    {.key = 'C',
     .type = L"Document",
     .action = L"Record",
     .picture = L"raw.png",
     .nameKey = "exam.button.raw",
     .tipKey = "exam.tip.raw",
     .carryOut = [](Examination& e, int) { e.ToggleRecording(false); },
     .value = IsRecorded<false>,
     .isPossible = CanRecord<false>},
    {.key = 'V',
     .type = L"Document",
     .action = L"RecordMovie",
     .picture = L"movie.png",
     .nameKey = "exam.button.movie",
     .tipKey = "exam.tip.movie",
     .carryOut = [](Examination& e, int) { e.ToggleRecording(true); },
     .value = IsRecorded<true>,
     .isPossible = CanRecord<true>},
    {.key = 'F',
     .repeats = true,
     .keyParam = 1,
     .type = L"Cine",
     .action = L"Step",
     .nameKey = "exam.button.Frame",
     .tipKey = "exam.tip.frame",
     .carryOut = [](Examination& e, int param) { e.State().StepFrames(param); }},
    {.key = VK_SPACE,
     .type = L"Probe",
     .action = L"Next",
     .nameKey = "exam.command.image",
     .tipKey = "exam.tip.image",
     .carryOut = [](Examination& e, int) { e.State().NextImage(); }},
    {.type = L"Probe",
     .action = L"Select",
     .carryOut = [](Examination& e,
                    int param) { e.State().SelectImage(static_cast<std::size_t>(param)); },
     .value = IsOnDisplay,
     .params = 2},
    {.key = 'P',
     .type = L"Console",
     .action = L"Pointer",
     .nameKey = "exam.button.Pointer",
     .tipKey = "exam.tip.pointer",
     .carryOut = ChangePointer,
     .value = [](const State&, int) -> int { return MouseCapture::GetInput() == InputTrackball; }},
    {.type = L"Console",
     .action = L"Cancel",
     .carryOut = [](Examination& e, int) { e.EndRecording(); }},
    {.key = 'L',
     .nameKey = "exam.command.language",
     .tipKey = "exam.tip.language",
     .carryOut = [](Examination& e, int) { e.State().NextLanguage(); }},
    {.key = 'K',
     .nameKey = "exam.command.panel",
     .tipKey = "exam.tip.panel",
     .carryOut = [](Examination& e, int) { e.Window().TogglePanel(); }},
    {.key = 'K',
     .withControl = true,
     .nameKey = "exam.command.lock",
     .tipKey = "exam.tip.lock",
     .carryOut = [](Examination& e, int) { e.Window().TogglePanelLock(); }},
    {.key = 'R',
     .withControl = true,
     .nameKey = "exam.command.reset",
     .tipKey = "exam.tip.reset",
     .carryOut = [](Examination& e, int) { e.Window().ResetPanel(); }},
    {.key = 'Z',
     .nameKey = "exam.command.pack",
     .tipKey = "exam.tip.pack",
     .carryOut = [](Examination& e,
                    int) { e.State().SetStatus(e.Service().Pack(e.Window().Owner())); }},
    {.key = 'U',
     .nameKey = "exam.command.unpack",
     .tipKey = "exam.tip.unpack",
     .carryOut = [](Examination& e, int) { e.Unpack(); }},
    {.key = 'A',
     .nameKey = "exam.command.about",
     .tipKey = "exam.tip.about",
     .carryOut = [](Examination& e, int) { e.Service().ToggleAbout(e.Window().Owner()); }},
    {.key = VK_F11,
     .nameKey = "exam.command.service",
     .tipKey = "exam.tip.service",
     .carryOut = [](Examination& e, int) { ShowServiceMenu(e.Window().Owner().GetSafeHwnd()); }},
    {.key = VK_ESCAPE,
     .nameKey = "exam.command.cancel",
     .tipKey = "exam.tip.cancel",
     .carryOut = [](Examination& e, int) { e.Cancel(); }},
    {.key = 'Q',
     .withControl = true,
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

CString KeyName(const Command& command)
{
    const wchar_t letter[] = {static_cast<wchar_t>(command.key), L'\0'};
    if (command.withControl) return GetStr("exam.key.control", letter);
    switch (command.key) {
    case VK_SPACE: return GetStr("exam.key.space");
    case VK_TAB: return L"Tab";
    case VK_ESCAPE: return L"Esc";
    case VK_F11: return L"F11";
    default: return letter;
    }
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
    return command.value && command.value(state, command.keyParam) != 0;
}

bool IsPossible(const Command& command, const ExamState& state)
{
    return command.carryOut && (!command.isPossible || command.isPossible(state));
}

CString TipOf(const Command& command)
{
    const CString tip = GetStr(command.tipKey);
    return GetStr("exam.tip.key", KeyName(command).GetString(), tip.GetString());
}

std::wstring KeyHelp()
{
    constexpr std::size_t width = 13; // the longest name has nine letters
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
        for (int param = 0; command.value && param < command.params; ++param) {
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
