#include "tour/TourReport.h"

#include "base/Console.h"

#include <base/Encoding.h>

#include <algorithm>
#include <filesystem>

namespace exam {

namespace {

std::string FileName(const char* path)
{
    return std::filesystem::path(path).filename().string();
}

// The name of a function alone, from its declaration with namespaces and parameters.
std::string FunctionName(std::string declaration)
{
    declaration.erase(std::min(declaration.find('('), declaration.size()));
    return declaration.substr(declaration.find_last_of(": ") + 1);
}

} // namespace

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
    if (problem.empty() && taken > m_longestStep) problem = L"it takes too long";
    if (!problem.empty()) held = false;
    const std::wstring said = problem.empty() ? what : what + L" (" + problem + L")";
    ++m_steps;
    if (!held) ++m_failed;
    WriteOut((held ? L"  \u2713 " : L"  \u2717 ") + said + L"\n");
    m_file << held << '\t' << taken.count() << '\t' << FileName(place.file_name()) << '\t'
           << FunctionName(place.function_name()) << '\t' << base::Utf8FromWide(m_done) << '\t'
           << base::Utf8FromWide(said) << '\t' << base::Utf8FromWide(picture) << std::endl;
    m_done.clear();
    m_begin = Clock::now();
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
