#pragma once

#include <base/CompilerExtensions.h>
#include <Utils_Statics/IProAgent.h>

#include <chrono>
#include <fstream>
#include <functional>
#include <string>

namespace exam {

/// Prints a line for each step of a tour, with a tick or a cross, and writes what a page about the
/// tour is made of. It is the agent of the unattended run, whose texts are the questions that
/// nobody answered.
class TourReport : public IProAgent
{
public:
    /// The place in the sources that a step is taken at.
    struct Place
    {
        const char* file;
        const char* function;
        static Place Current(const char* file = BASE_CALLERS_FILE,
                             const char* function = BASE_CALLERS_FUNCTION)
        {
            return {file, function};
        }
    };

    /// A step fails, too, when the process works on it for longer than this, or waits for six times
    /// as long. The clock alone does not tell, because it runs on while other programs work.
    explicit TourReport(std::chrono::milliseconds longestStep = std::chrono::seconds(5))
        : m_longestStep(longestStep)
    {
        m_agent = this;
    }

    /// Writes the steps to a file from now on, a line each, as it ends. Its columns are parted by
    /// tabs: 1 when the step held, its milliseconds, the source, the function, what the user did,
    /// what was held, and the picture of the screen or nothing.
    void WriteTo(const std::wstring& file);

    /// Looks at the screen after each step. The result is a sentence that says what is wrong there,
    /// or nothing; the argument gets the name of a new picture, if there is one.
    std::function<std::wstring(std::wstring& picture)> look;

    void Step(bool held, const std::wstring& what, Place place = Place::Current());

    /// The processor time of all threads of this process until now.
    static std::chrono::milliseconds Worked();

    /// Tells what the user does in the step that comes next.
    void Do(const std::wstring& what);

    /// Prints the verdict. True when there was at least one step and all steps held.
    bool Close();

private:
    /// Prints the questions.
    void Execute() override;

    using Clock = std::chrono::steady_clock;

    std::chrono::milliseconds m_longestStep;
    int m_steps = 0;
    int m_failed = 0;
    std::ofstream m_file;
    std::wstring m_done;
    Clock::time_point m_begin = Clock::now();
    std::chrono::milliseconds m_worked = Worked(); // until the step before
};

} // namespace exam
