#pragma once

#include "status/StatusDisplay.h"
#include "tour/TourReport.h"
#include "window/MainWindow.h"

#include <cstddef>
#include <functional>
#include <string>

namespace exam {

/// The recordings of the sample study, and the probes on simulated patients, in the order in which
/// they are added.
enum SampleSource : std::size_t
{
    curvedRecording,
    linearRecording,
    simulatedCurved,
    simulatedLinear,
    simulatedPhased
};

/// The objects that the steps of a tour work on.
struct TourContext
{
    TourReport& report;
    ExamState& state;
    MainWindow& window;
    StatusDisplay& status;
    std::wstring folder; ///< folder of the pictures and files that the tour leaves

    using Place = TourReport::Place;

    /// Lets the window paint all changes and saves the picture as NAME.png. This counts as a step,
    /// which fails when there is only one colour in the picture.
    void Picture(const std::wstring& name, Place place = Place::Current());
    /// These do so with another window, and with a part of the screen.
    void PictureOf(HWND other, const std::wstring& name, Place place = Place::Current());
    void PictureOf(const CRect& part, const std::wstring& name, Place place = Place::Current());

    /// Presses a key, which the window handles before this returns.
    void Key(UINT key);

    /// Calls `open`, which shows a modal form of that title. Once it is open, `work` is called with
    /// it, and ends it.
    void WorkForm(const char* titleKey, const std::function<void()>& open,
                  std::function<void(HWND)> work);

    /// Posts a message to a window's queue, as the user's mouse would, and lets the window handle
    /// it, and what was pending before and comes of it.
    void Post(HWND to, UINT message, WPARAM wParam, LPARAM lParam);

    /// Lets all windows of this thread, or one window, handle their messages.
    void HandlePending(HWND only = nullptr);

    /// Lets the windows handle their messages until a condition holds. False when it does not hold
    /// within a generous time.
    bool WaitUntil(const std::function<bool()>& condition);

    /// A value of the mark that the study got last, as the exam measures it; -1: there is none.
    double LastValue(std::size_t index = 0) const;

    /// Sets the codec of movies in the profile.
    void SetCodec(const wchar_t* name);

private:
    void Keep(HBITMAP bitmap, const std::wstring& name, Place place);
};

/// True when both files have the same bytes, and any.
bool HoldSameBytes(const std::wstring& one, const std::wstring& other);

/// Walks through every subsystem the application uses.
void TakeTour(TourContext& context);

/// The stations, one source file each.
void TourEnvironment(TourContext& context);
void TourPaths(TourContext& context);
void TourTexts(TourContext& context);
void TourImages(TourContext& context);
void TourMeasurements(TourContext& context);
void TourSimulation(TourContext& context);
void TourRecording(TourContext& context);
void TourPanel(TourContext& context);
void TourService(TourContext& context);
void TourOverlays(TourContext& context);
void TourStatus(TourContext& context);
void TourWindow(TourContext& context);

/// Ends the application by its own button; nothing can come after it.
void TourEnd(TourContext& context);

} // namespace exam
