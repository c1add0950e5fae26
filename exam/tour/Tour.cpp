#include "tour/Tour.h"

#include "base/StateChanges.h"
#include "window/Capture.h"

#include <Utils_Statics/utilsExam.h>

#include <filesystem>

namespace exam {

void TourContext::Picture(const std::wstring& name)
{
    window.RedrawWindow(nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
    const std::wstring path = folder + L"\\" + name + L".png";
    report.Step(CaptureToPng(window.GetSafeHwnd(), path), L"picture " + name + L".png");
}

void TourContext::ShowRecording(SampleRecording recording)
{
    session.Select(recording);
    TellChange(stateImageChanged);
}

bool TourContext::WaitUntil(const std::function<bool()>& condition)
{
    constexpr ULONGLONG patience = 20000; // milliseconds
    const ULONGLONG end = GetTickCount64() + patience;
    MSG next;
    while (!condition() && GetTickCount64() < end) {
        MsgWaitForMultipleObjects(0, nullptr, FALSE, 100, QS_ALLINPUT);
        while (PeekMessage(&next, nullptr, 0, 0, PM_REMOVE))
            DispatchMessage(&next);
    }
    return condition();
}

void TakeTour(TourContext& context)
{
    std::error_code error;
    std::filesystem::create_directories(context.folder, error);
    if (error) {
        context.report.Step(false, L"the folder " + context.folder + L" can be made");
        return;
    }
    TourEnvironment(context);
    TourPaths(context);
    TourTexts(context);
    TourImages(context);
    TourMeasurements(context);
    TourDoppler(context);
    TourRecording(context);
    TourPanel(context);
    TourService(context);
    TourOverlays(context);
}

} // namespace exam
