#include "tour/TourReport.h"

#include "base/Console.h"

#include <base/Encoding.h>

#include <cstdint>
#include <filesystem>

namespace exam {

namespace {

std::string FileName(const char* path)
{
    return std::filesystem::path(path).filename().string();
}

} // namespace

std::chrono::milliseconds TourReport::Worked()
{
    FILETIME moment = {};
    FILETIME kernel = {};
    FILETIME user = {};
    GetProcessTimes(GetCurrentProcess(), &moment, &moment, &kernel, &user);
    const auto ticks = [](const FILETIME& time) { // of 100 nanoseconds
        return static_cast<std::int64_t>(time.dwHighDateTime) << 32 | time.dwLowDateTime;
    };
    return std::chrono::milliseconds((ticks(kernel) + ticks(user)) / 10'000);
}

void TourReport::WriteTo(const std::wstring& file)
{
    m_file.open(std::filesystem::path(file), std::ios::binary);
}

void TourReport::Do(const std::wstring& what)
{
    if (!m_done.empty()) m_done += L", ";
    m_done += what;
}

void TourReport::Step(bool held, const std::wstring& what, Place place)
{
    const auto taken = std::chrono::round<std::chrono::milliseconds>(Clock::now() - m_begin);
    std::wstring picture;
    std::wstring problem = look ? look(picture) : std::wstring();
    const bool isLong = Worked() - m_worked > m_longestStep || taken > 6 * m_longestStep;
    if (problem.empty() && isLong) problem = L"it takes too long";
    if (!problem.empty()) held = false;
    const std::wstring said = problem.empty() ? what : what + L" (" + problem + L")";
    ++m_steps;
    if (!held) ++m_failed;
    WriteOut((held ? L"  \u2713 " : L"  \u2717 ") + said + L"\n");
    m_file << held << '\t' << taken.count() << '\t' << FileName(place.file) << '\t'
           << place.function << '\t' << base::Utf8FromWide(m_done) << '\t'
           << base::Utf8FromWide(said) << '\t' << base::Utf8FromWide(picture) << std::endl;
    m_done.clear();
    m_begin = Clock::now();
    m_worked = Worked();
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

} // namespace exam
