#pragma once

#include <string>

namespace exam {

/// Counts the steps of a tour and prints a line for each, with a tick or a cross.
class TourReport
{
public:
    void Step(bool held, const std::wstring& what);

    /// Prints the verdict. True when there was at least one step and all steps held.
    bool Close() const;

private:
    int m_steps = 0;
    int m_failed = 0;
};

} // namespace exam
