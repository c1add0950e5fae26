#include "tour/TourReport.h"

#include "base/Console.h"

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

} // namespace exam
