// Station 1: the exam environment and the state-change signal.
#include "base/StateChanges.h"
#include "tour/Tour.h"

#include <Utils_Statics/utilsExam.h>

#include <cwchar>

namespace exam {

namespace {

bool s_researchMode = false;

void ConsoleModel(TourReport& report)
{
    const EConsoleType given = utilsExam::GetConsoleType();
    utilsExam::SetConsoleType(utilsExam::MapConsoleType(L"Tavren"));
    report.Step(std::wcscmp(utilsExam::MapConsoleName(utilsExam::GetConsoleType()), L"Tavren") == 0,
                L"the console model is set and named");
    utilsExam::SetConsoleType(given);
}

void Modes(TourReport& report)
{
    utilsExam::SetFullscreen(true);
    utilsExam::SetLayoutLeft(true);
    report.Step(utilsExam::IsFullscreen() && utilsExam::IsLayoutLeft(),
                L"full screen and left layout are kept");
    utilsExam::SetFullscreen(false);
    utilsExam::SetLayoutLeft(false);

    utilsExam::SetIsResearchModeActiveCallback([] { return s_researchMode; });
    const bool before = utilsExam::IsResearchModeActive();
    s_researchMode = true;
    report.Step(!before && utilsExam::IsResearchModeActive(),
                L"research mode is asked of the application");
    s_researchMode = false;
    utilsExam::SetIsResearchModeActiveCallback(nullptr);
}

void Signal(TourContext& context)
{
    const unsigned before = context.window.ChangesSeen();
    TellChange(stateImageChanged);
    context.report.Step(context.window.ChangesSeen() == before + 1,
                        L"the main window hears of a state change");
}

} // namespace

void TourEnvironment(TourContext& context)
{
    context.report.Step(AfxGetApp() != nullptr && AfxGetMainWnd() == &context.window,
                        L"the framework knows the application and its main window");
    CRect client;
    context.window.GetClientRect(&client);
    context.report.Step(client.Width() == 1024 && client.Height() == 768,
                        L"the main window shows 1024 x 768 pixels");
    ConsoleModel(context.report);
    Modes(context.report);
    Signal(context);
}

} // namespace exam
