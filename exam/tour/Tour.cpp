#include "tour/Tour.h"

#include "image/Capture.h"
#include "app/Console.h"

#include <Utils_Statics/utilsExam.h>

#include <filesystem>

namespace exam {

void TourReport::Step(bool held, const std::wstring& what)
{
    ++m_steps;
    if (!held) ++m_failed;
    WriteOut((held ? L"  \u2713 " : L"  \u2717 ") + what + L"\n");
}

bool TourReport::Close() const
{
    const std::wstring steps = std::to_wstring(m_steps);
    if (m_failed == 0 && m_steps > 0) {
        WriteOut(L"tour: all " + steps + L" steps held\n");
        return true;
    }
    WriteOut(L"tour: " + std::to_wstring(m_failed) + L" of " + steps + L" steps failed\n");
    return false;
}

void TourContext::Picture(const std::wstring& name)
{
    window.UpdateWindow();
    const std::wstring path = folder + L"\\" + name + L".png";
    report.Step(CaptureToPng(window.GetSafeHwnd(), path), L"picture " + name + L".png");
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
}

} // namespace exam
