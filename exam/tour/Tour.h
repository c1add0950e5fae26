#pragma once

#include "image/Session.h"
#include "tour/TourReport.h"
#include "window/ConsoleControls.h"
#include "window/MainWindow.h"

#include <cstddef>
#include <functional>
#include <string>

namespace exam {

/// The recordings of the sample study, in the order in which the session holds them.
enum SampleRecording : std::size_t
{
    curvedRecording,
    linearRecording
};

/// The objects that the steps of a tour work on.
struct TourContext
{
    TourReport& report;
    MainWindow& window;
    ConsoleControls& controls;
    Session& session;
    std::wstring folder; ///< folder of the pictures and files that the tour leaves

    /// Lets the window paint all changes and saves the picture as NAME.png. This counts as a step.
    void Picture(const std::wstring& name);

    void ShowRecording(SampleRecording recording);

    /// Lets the windows handle their messages until a condition holds. False when it does not hold
    /// within a generous time.
    bool WaitUntil(const std::function<bool()>& condition);
};

/// Walks through every subsystem the application uses.
void TakeTour(TourContext& context);

/// The stations, one source file each.
void TourEnvironment(TourContext& context);
void TourPaths(TourContext& context);
void TourTexts(TourContext& context);
void TourImages(TourContext& context);
void TourMeasurements(TourContext& context);
void TourDoppler(TourContext& context);
void TourRecording(TourContext& context);
void TourPanel(TourContext& context);
void TourService(TourContext& context);
void TourOverlays(TourContext& context);

/// Ends the application by its own button; nothing can come after it.
void TourEnd(TourContext& context);

} // namespace exam
