#include "window/ExamStates.h"

#include <pro_actions/CProActionCollection.h>
#include <pro_actions/IActionStateConsumer.h>
#include <Utils_Statics/MouseCapture.h>

#include <algorithm>

namespace exam {

namespace {

struct Context
{
    const MainWindow& window;
    const Session& session;
    int param;
};

struct Entry
{
    const wchar_t* type;
    const wchar_t* action;
    int param;
    int (*value)(const Context&);
};

bool IsAnyToolVisible(const MainWindow& window)
{
    const auto tools = window.Tools().All();
    return std::any_of(tools.begin(), tools.end(),
                       [](const ImageTool* tool) { return tool->IsVisible(); });
}

int IsOnDisplay(const Context& c)
{
    return c.session.Current() == static_cast<std::size_t>(c.param);
}

// The names are those of the vocabulary.
constexpr Entry entries[] = {
    {L"Imaging", L"Freeze", 0, [](const Context& c) -> int { return c.window.IsFrozen(); }},
    {L"Imaging", L"Gain", 0, [](const Context& c) { return c.window.Gain(); }},
    {L"Imaging", L"Depth", 0, [](const Context& c) { return c.window.DepthMillimetres(); }},
    {L"Imaging", L"Rotate", 0, [](const Context& c) { return c.window.Rotation() / 10; }},
    {L"Mode", L"B", 0, [](const Context&) { return 1; }},
    {L"Mode", L"PulsedDoppler", 0, [](const Context& c) -> int { return c.window.IsStripShown(); }},
    {L"Measurement", L"Measure", 0,
     [](const Context& c) -> int { return IsAnyToolVisible(c.window); }},
    {L"Measurement", L"Distance", 0,
     [](const Context& c) -> int { return c.window.Tools().Distance().IsVisible(); }},
    {L"Measurement", L"Angle", 0,
     [](const Context& c) -> int { return c.window.Tools().Angle().IsVisible(); }},
    {L"Measurement", L"Area", 0,
     [](const Context& c) -> int { return c.window.Tools().Region().IsVisible(); }},
    {L"Document", L"Record", 0,
     [](const Context& c) -> int {
         return c.window.IsRecording() && !c.window.IsRecordingMovie();
     }},
    {L"Document", L"RecordMovie", 0,
     [](const Context& c) -> int { return c.window.IsRecordingMovie(); }},
    {L"Probe", L"Select", 0, IsOnDisplay},
    {L"Probe", L"Select", 1, IsOnDisplay},
    {L"Console", L"Pointer", 0,
     [](const Context&) -> int { return MouseCapture::GetInput() == InputTrackball; }},
};

ActionStateInfo StateOf(const Entry& entry)
{
    const ActionType type = CProActionCollection::MapActionType(entry.type);
    return {type, CProActionCollection::MapAction(type, entry.action), entry.param};
}

} // namespace

ExamStates::ExamStates(const MainWindow& window, const Session& session)
    : m_window(window), m_session(session)
{
}

void ExamStates::BroadcastAll()
{
    m_told.clear();
    BroadcastChanges();
}

void ExamStates::OnStateChange(StateChangeType, unsigned int, long)
{
    BroadcastChanges();
}

void ExamStates::BroadcastChanges()
{
    for (const Entry& entry : entries) {
        const ActionStateInfo state = StateOf(entry);
        const int value = entry.value({m_window, m_session, entry.param});
        const auto told = m_told.find(state);
        if (told != m_told.end() && told->second == value) continue;
        m_told[state] = value;
        IActionStateConsumer::ActionStateSignal(state, value);
    }
}

} // namespace exam
