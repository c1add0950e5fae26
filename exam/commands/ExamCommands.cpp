#include "commands/Command.h"

namespace exam {

namespace {

using State = ExamState;

// Only one recording runs at a time, so the other kind cannot begin meanwhile.
template <bool isMovie>
int IsRecorded(const State& state, int = 0)
{
    return state.Recording() && state.Recording()->isMovie == isMovie;
}

template <bool isMovie>
bool CanRecord(const State& state)
{
    const bool isShowable = isMovie || !state.HasSource() || !state.Source().IsPicture();
    return IsRecorded<!isMovie>(state) == 0 && isShowable;
}

constexpr Command examCommands[] = {
    {.key = {.code = 'S', .withControl = true},
     .text = {"exam.command.save", "exam.tip.save"},
     .carryOut = [](Examination& e, int) { e.SaveStudy(); }},
    {.key = {.code = 'E', .withControl = true},
     .action = {L"Document", L"Export"},
     .text = {"exam.command.table", "exam.tip.table"},
     .carryOut = [](Examination& e, int) { e.ExportTable(); }},
    {.key = {.code = 'P', .withControl = true},
     .action = {L"Document", L"Print"},
     .text = {"exam.command.report", "exam.tip.report"},
     .carryOut = [](Examination& e, int) { e.ExportReport(); }},
    {.key = {.code = 'G'},
     .action = {L"Document", L"SaveImage"},
     .text = {"exam.command.picture", "exam.tip.picture"},
     .carryOut = [](Examination& e, int) { e.SavePicture(); }},
    {.key = {.code = 'C'},
     .action = {L"Document", L"Record"},
     .text = {"exam.command.raw", "exam.tip.raw"},
     .picture = L"raw.png",
     .carryOut = [](Examination& e, int) { e.ToggleRecording(false); },
     .value = IsRecorded<false>,
     .isPossible = CanRecord<false>},
    {.key = {.code = 'V'},
     .action = {L"Document", L"RecordMovie"},
     .text = {"exam.command.movie", "exam.tip.movie"},
     .picture = L"movie.png",
     .carryOut = [](Examination& e, int) { e.ToggleRecording(true); },
     .value = IsRecorded<true>,
     .isPossible = CanRecord<true>},
    {.key = {.code = VK_F8},
     .text = {"exam.command.mark", "exam.tip.mark"},
     .carryOut = [](Examination& e, int) { e.MarkRecording(); },
     .isPossible = [](const State& s) { return s.Recording().has_value(); }},
    {.key = {.code = VK_F9},
     .text = {"exam.command.finished", "exam.tip.finished"},
     .carryOut = [](Examination& e, int) { e.OpenFinished(); }},
    {.key = {.code = VK_F4},
     .action = {L"Patient", L"Edit"},
     .text = {"exam.command.patient", "exam.tip.patient"},
     .carryOut = [](Examination& e, int) { e.EditPatient(); }},
    {.key = {.code = 'O', .withControl = true},
     .text = {"exam.command.open", "exam.tip.open"},
     .carryOut = [](Examination& e, int) { e.ChooseImage(); }},
    {.key = {.code = VK_F3},
     .text = {"exam.command.recent", "exam.tip.recent"},
     .carryOut = [](Examination& e, int) { e.Window().ShowRecent(); },
     .opensRecent = true},
    {.key = {.code = 'I'},
     .text = {"exam.command.images", "exam.tip.images"},
     .carryOut = [](Examination& e, int) { e.Window().ToggleImages(); }},
    {.key = {.code = 'B', .withControl = true},
     .text = {"exam.command.remove", "exam.tip.remove"},
     .carryOut = [](Examination& e, int) { e.RemoveStudyImage(e.State().ImageName()); },
     .isPossible = [](const State& s) { return !s.Recording(); }},
    {.key = {.code = 'E'},
     .action = {L"Console", L"Cancel"},
     .text = {"exam.button.Stop", "exam.tip.stop"},
     .carryOut = [](Examination& e, int) { e.EndRecording(); }},
    {.key = {.code = 'Z'},
     .text = {"exam.command.pack", "exam.tip.pack"},
     .carryOut = [](Examination& e, int) { e.Pack(); },
     .isPossible = [](const State& s) { return !s.Recording(); }},
    {.key = {.code = 'U'},
     .text = {"exam.command.unpack", "exam.tip.unpack"},
     .carryOut = [](Examination& e, int) { e.Unpack(); }},
    {.key = {.code = VK_ESCAPE},
     .text = {"exam.command.cancel", "exam.tip.cancel"},
     .carryOut = [](Examination& e, int) { e.Cancel(); }},
    {.key = {.code = 'Q', .withControl = true},
     .action = {L"Exam", L"End"},
     .text = {"exam.button.End", "exam.tip.end"},
     .carryOut = [](Examination& e, int) { e.Leave(); }},
};

} // namespace

std::span<const Command> ExamCommands()
{
    return examCommands;
}

} // namespace exam
