#pragma once

#include "app/MainWindow.h"
#include "app/Session.h"

#include <string>

namespace exam {

// Counts the steps of a tour and prints a line for each, with a tick or a cross.
class TourReport
{
public:
    void Step(bool held, const std::wstring& what);

    // Prints the verdict; true when all steps held and there was one.
    bool Close() const;

private:
    int m_steps = 0;
    int m_failed = 0;
};

// What the steps of a tour work on.
struct TourContext
{
    TourReport& report;
    MainWindow& window;
    Session& session;
    std::wstring folder; // receives pictures and files

    // Lets the window paint what has changed and saves it as NAME.png; a step of its own.
    void Picture(const std::wstring& name);
};

// Walks through every subsystem the application uses.
void TakeTour(TourContext& context);

// The stations, one source file each.
void TourEnvironment(TourContext& context);
void TourPaths(TourContext& context);
void TourTexts(TourContext& context);
void TourImages(TourContext& context);
void TourMeasurements(TourContext& context);
void TourDoppler(TourContext& context);
void TourRecording(TourContext& context);

} // namespace exam
