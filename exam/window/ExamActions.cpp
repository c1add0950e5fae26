#include "window/ExamActions.h"

#include "window/Capture.h"

#include <pro_actions/CProActionCollection.h>
#include <pro_actions/NotifiedConsumer.h>
#include <pro_actions/VocabularyLoading.h>
#include <Utils_Statics/GetStr.h>
#include <Utils_Statics/MouseCapture.h>

#include <algorithm>
#include <filesystem>
#include <utility>

namespace exam {

namespace {

namespace fs = std::filesystem;

constexpr int tenthsOfDegree = 10;
constexpr int fullTurn = 3600;

// Files may hold any number. Within these bounds no sum or product here overflows, and every
// meaningful action fits.
constexpr int mostParam = 10000;

struct Context
{
    MainWindow& window;
    const std::wstring& pictures;
    int param;
};

void SaveImage(const Context& context)
{
    std::error_code error; // a missing folder shows when the file is written
    fs::create_directories(context.pictures, error);
    std::wstring path;
    for (int number = 1; path.empty() || fs::exists(path, error); ++number)
        path = context.pictures + L"\\picture-" + std::to_wstring(number) + L".png";
    context.window.UpdateWindow(); // the picture shows the latest change too
    const bool saved = CaptureToPng(context.window.GetSafeHwnd(), path);
    context.window.SetStatus(
        GetStr(saved ? "exam.picture.saved" : "exam.picture.notsaved", path.c_str()));
}

void ClearMeasurements(const Context& context)
{
    MeasureTools& tools = context.window.Tools();
    tools.Distance().Show(false);
    tools.Angle().Show(false);
    tools.Region().Show(false);
}

void Rotate(const Context& context)
{
    const int angle = context.window.Rotation() + context.param * tenthsOfDegree;
    context.window.SetRotation((angle % fullTurn + fullTurn) % fullTurn);
}

void ChangePointer(const Context& context)
{
    const bool isPointer = MouseCapture::GetInput() == InputPointer;
    context.window.Tools().SetInput(isPointer ? InputTrackball : InputPointer);
}

struct Entry
{
    const wchar_t* type;
    const wchar_t* action;
    void (*carryOut)(const Context&);
};

// The names are those of the vocabulary, where the parameters are explained.
constexpr Entry entries[] = {
    {L"Imaging", L"Freeze", [](const Context& c) { c.window.SetFrozen(!c.window.IsFrozen()); }},
    {L"Imaging", L"Gain", [](const Context& c) { c.window.ChangeGain(c.param); }},
    {L"Imaging", L"Depth", [](const Context& c) { c.window.ChangeDepth(c.param); }},
    {L"Imaging", L"Rotate", Rotate},
    {L"Mode", L"B", [](const Context& c) { c.window.ShowStrip(false); }},
    {L"Mode", L"PulsedDoppler",
     [](const Context& c) { c.window.ShowStrip(!c.window.IsStripShown()); }},
    {L"Measurement", L"Distance",
     [](const Context& c) { c.window.ToggleTool(c.window.Tools().Distance()); }},
    {L"Measurement", L"Angle",
     [](const Context& c) { c.window.ToggleTool(c.window.Tools().Angle()); }},
    {L"Measurement", L"Area",
     [](const Context& c) { c.window.ToggleTool(c.window.Tools().Region()); }},
    {L"Measurement", L"NextPoint", [](const Context&) { MouseCapture::LockNext(); }},
    {L"Measurement", L"Clear", ClearMeasurements},
    {L"Document", L"SaveImage", SaveImage},
    {L"Document", L"Record", [](const Context& c) { c.window.ToggleRawRecording(); }},
    {L"Document", L"RecordMovie", [](const Context& c) { c.window.ToggleMovieRecording(); }},
    {L"Cine", L"Step", [](const Context& c) { c.window.StepFrames(c.param); }},
    {L"Probe", L"Next", [](const Context& c) { c.window.NextImage(); }},
    {L"Probe", L"Select",
     [](const Context& c) { c.window.SelectImage(static_cast<std::size_t>(c.param)); }},
    {L"Console", L"Pointer", ChangePointer},
    {L"Console", L"Cancel", [](const Context& c) { c.window.EndRecording(); }},
    {L"Exam", L"End", [](const Context& c) { c.window.DestroyWindow(); }},
};

const Entry* FindEntry(const ActionInfo& action)
{
    for (const Entry& entry : entries) {
        const ActionType type = CProActionCollection::MapActionType(entry.type);
        if (type == action.type &&
            CProActionCollection::MapAction(type, entry.action) == action.action)
            return &entry;
    }
    return nullptr;
}

} // namespace

ExamActions::ExamActions(MainWindow& window, std::wstring pictures)
    : m_window(window), m_pictures(std::move(pictures))
{
}

void ExamActions::CarryOut(const ActionInfo& action)
{
    if (const Entry* const entry = FindEntry(action)) {
        const int param = std::clamp<int>(action.param, -mostParam, mostParam);
        entry->carryOut({m_window, m_pictures, param});
        pro_actions::SignalActionNotification(action.type, action.action, action.param);
        return;
    }
    const std::wstring type = pro_actions::ActionTypeName(action.type);
    const std::wstring name = pro_actions::ActionName(action.type, action.action);
    m_window.SetStatus(GetStr("exam.action.noeffect", type.c_str(), name.c_str()));
}

} // namespace exam
