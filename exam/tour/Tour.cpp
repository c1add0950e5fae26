#include "tour/Tour.h"

#include "base/Console.h"
#include "study/MarkValues.h"
#include "window/Capture.h"

#include <base/FileContents.h>

#include <filesystem>

namespace exam {

void TourReport::Step(bool held, const std::wstring& what)
{
    ++m_steps;
    if (!held) ++m_failed;
    WriteOut((held ? L"  \u2713 " : L"  \u2717 ") + what + L"\n");
}

void TourReport::Execute()
{
    for (POSITION place = GetHeadPosition(); place;)
        WriteOut(L"tour: nobody answered: " + std::wstring(GetNext(place)) + L"\n");
}

bool TourReport::Close()
{
    Execute();
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
    PictureOf(window.GetSafeHwnd(), name);
}

void TourContext::PictureOf(HWND other, const std::wstring& name)
{
    RedrawWindow(other, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
    report.Step(CaptureToPng(other, PathOf(name)), L"picture " + name + L".png");
}

void TourContext::PictureOf(const CRect& part, const std::wstring& name)
{
    report.Step(CaptureScreenToPng(part, PathOf(name)), L"picture " + name + L".png");
}

std::wstring TourContext::PathOf(const std::wstring& picture) const
{
    return folder + L"\\" + picture + L".png";
}

void TourContext::Key(UINT key)
{
    window.SendMessage(WM_KEYDOWN, key, 0);
}

double TourContext::LastValue(std::size_t index) const
{
    const StudyContent& study = state.Content();
    if (study.marks.empty()) return -1;
    const std::vector<MarkValue> values = ValuesOf(*study.marks.back(), study);
    return index < values.size() ? values[index].value : -1;
}

void TourContext::SetCodec(const wchar_t* name)
{
    AfxGetApp()->WriteProfileString(L"Settings\\Capture", L"RecordCodec", name);
}

void TourContext::Post(HWND to, UINT message, WPARAM wParam, LPARAM lParam)
{
    HandlePending(to);
    PostMessage(to, message, wParam, lParam);
    HandlePending(to);
}

void TourContext::HandlePending(HWND only)
{
    for (MSG next; PeekMessage(&next, only, 0, 0, PM_REMOVE);)
        DispatchMessage(&next);
}

bool TourContext::WaitUntil(const std::function<bool()>& condition)
{
    constexpr ULONGLONG patience = 20000; // milliseconds
    const ULONGLONG end = GetTickCount64() + patience;
    while (!condition() && GetTickCount64() < end) {
        MsgWaitForMultipleObjects(0, nullptr, FALSE, 100, QS_ALLINPUT);
        HandlePending();
    }
    return condition();
}

bool HoldSameBytes(const std::wstring& one, const std::wstring& other)
{
    constexpr std::size_t limit = 100'000'000; // more than any file of a tour has
    const std::optional<std::string> bytes = base::ReadFileWhole(one.c_str(), limit);
    return bytes && !bytes->empty() && bytes == base::ReadFileWhole(other.c_str(), limit);
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
    TourSimulation(context);
    TourRecording(context);
    TourPanel(context);
    TourService(context);
    TourOverlays(context);
    TourStatus(context);
    TourEnd(context);
}

} // namespace exam
