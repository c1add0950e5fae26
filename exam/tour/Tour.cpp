#include "tour/Tour.h"

#include "commands/Commands.h"
#include "image/PictureFile.h"
#include "record/MovieSettings.h"
#include "screen/Screen.h"
#include "study/MarkValues.h"
#include "tour/TourScreen.h"
#include "window/Capture.h"

#include <base/FileContents.h>
#include <Utils_Statics/GetStr.h>

#include <filesystem>
#include <utility>

namespace exam {

namespace {

// A timer does the work with the modal form of the title, once it finds it open.
struct FormWork
{
    CString title;
    std::function<void(HWND)> work;
};
FormWork s_form;

void CALLBACK WorkOpenForm(HWND, UINT, UINT_PTR timer, DWORD)
{
    const HWND form = FindWindowW(L"#32770", s_form.title);
    if (!form) return;
    KillTimer(nullptr, timer);
    s_form.work(form);
}

void TellKey(TourReport& report, UINT key)
{
    if (const Command* const command = CommandOfKey(key))
        report.Do(std::wstring(L"key ") + KeyName(*command).GetString());
}

// Keeps what is seen after each step. The picture of all windows is kept as a file of its own
// whenever it is not the last one.
class TourEye
{
public:
    explicit TourEye(TourContext& context) : m_context(context)
    {
        std::error_code error;
        std::filesystem::remove_all(Folder(), error); // pictures of an earlier tour
        std::filesystem::create_directories(Folder(), error);
        m_context.report.look = [this](std::wstring& picture) { return Look(picture); };
    }
    ~TourEye() { m_context.report.look = {}; }
    TourEye(const TourEye&) = delete;
    TourEye& operator=(const TourEye&) = delete;

private:
    std::wstring Folder() const { return m_context.folder + L"\\steps"; }

    std::wstring Look(std::wstring& picture)
    {
        if (!m_context.window.GetSafeHwnd()) return {};
        RepaintWindows();
        if (std::wstring clipped = FindClippedWindow(); !clipped.empty())
            return L"the window '" + clipped + L"' leaves the screen";
        if (std::wstring cut = FindCut(); !cut.empty()) return L"the text '" + cut + L"' is cut";
        return Keep(picture);
    }

    std::wstring FindCut() const
    {
        const ExamState& state = m_context.state;
        std::wstring cut = FindCutText([&](CDC& dc) { DrawScreen(dc, state, ScreenUse::display); });
        return cut.empty() ? FindCutLabel() : cut;
    }

    std::wstring Keep(std::wstring& picture)
    {
        const base::Bitmap bitmap = Capture(nullptr, AreaOfWindows());
        std::vector<std::uint32_t> pixels = PixelsOf(bitmap.get());
        if (IsEmpty(pixels)) return L"nothing is seen";
        if (pixels == m_pixels) return {};
        m_pixels = std::move(pixels);
        picture = std::to_wstring(++m_pictures) + L".png";
        return SavePng(bitmap.get(), Folder() + L"\\" + picture) ? L"" : L"no picture is kept";
    }

    TourContext& m_context;
    std::vector<std::uint32_t> m_pixels;
    int m_pictures = 0;
};

} // namespace

void TourContext::Picture(const std::wstring& name, Place place)
{
    PictureOf(window.GetSafeHwnd(), name, place);
}

void TourContext::PictureOf(HWND other, const std::wstring& name, Place place)
{
    RepaintWindows();
    CRect client;
    GetClientRect(other, &client);
    Keep(Capture(other, client).get(), name, place);
}

void TourContext::PictureOf(const CRect& part, const std::wstring& name, Place place)
{
    Keep(Capture(nullptr, part).get(), name, place);
}

void TourContext::Keep(HBITMAP bitmap, const std::wstring& name, Place place)
{
    const bool held =
        !IsEmpty(PixelsOf(bitmap)) && SavePng(bitmap, folder + L"\\" + name + L".png");
    report.Step(held, L"picture " + name + L".png", place);
}

void TourContext::Key(UINT key)
{
    TellKey(report, key);
    window.SendMessage(WM_KEYDOWN, key, 0);
}

void TourContext::WorkForm(const char* titleKey, const std::function<void()>& open,
                           std::function<void(HWND)> work)
{
    constexpr UINT delay = 200; // milliseconds, until it is open
    s_form = {GetStr(titleKey), std::move(work)};
    SetTimer(nullptr, 0, delay, WorkOpenForm);
    open();
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
    AfxGetApp()->WriteProfileString(movieSection, codecEntry, name);
}

void TourContext::Post(HWND to, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_KEYDOWN) TellKey(report, static_cast<UINT>(wParam));
    if (message == WM_LBUTTONDOWN) report.Do(L"mouse");
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
    context.report.WriteTo(context.folder + L"\\steps.txt");
    const TourEye eye(context);
    TourEnvironment(context);
    TourPaths(context);
    TourTexts(context);
    TourImages(context);
    TourMeasurements(context);
    TourSimulation(context);
    TourRecording(context);
    TourPanel(context);
    TourOverlays(context);
    TourStatus(context);
    TourWindow(context);
    TourService(context);
    TourEnd(context);
}

} // namespace exam
