#pragma once

#include <test_support/Files.h>
#include <test_support/TemporaryFolder.h>

#include <functional>
#include <string>
#include <vector>

// The script does what an application does with the library, in steps that can be repeated.
namespace faults {

// A step keeps what it saw of the library: the results, and the truth behind them.
class Outcome
{
public:
    // A result that tells whether the operation succeeded.
    void Result(bool succeeded)
    {
        m_tells = m_tells || !succeeded;
        m_seen += succeeded ? " yes" : " no";
    }
    // A text, which is empty when the operation failed.
    void Text(const std::wstring& text)
    {
        Result(!text.empty());
        Sees(text);
    }
    // A value that the contract allows beside the usual one, when the platform refuses.
    void Value(const std::wstring& value, const std::wstring& otherwise)
    {
        if (value == otherwise) m_tells = true;
        Sees(value);
    }
    // These are there afterwards.
    void Sees(const std::wstring& fact) { m_seen += ' ' + std::string(fact.begin(), fact.end()); }
    void Sees(long long number) { m_seen += ' ' + std::to_string(number); }

    const std::string& Seen() const { return m_seen; }
    bool Tells() const { return m_tells; }

private:
    std::string m_seen;
    bool m_tells = false;
};

struct Step
{
    std::string name;
    std::function<void(Outcome&)> run;
    // False where the contract knows no result: nothing is drawn, shown or set then.
    bool hasResult = true;
};

std::vector<Step> FileSteps(const test_support::TemporaryFolder& folder);
std::vector<Step> RecordingSteps(const test_support::TemporaryFolder& folder);
std::vector<Step> PictureSteps(const test_support::TemporaryFolder& folder);
std::vector<Step> WindowSteps();
std::vector<Step> StatusSteps();
std::vector<Step> FrameworkSteps();
std::vector<Step> ComputingSteps(const test_support::TemporaryFolder& folder);

// A number for many bytes.
inline long long Sum(const void* bytes, std::size_t size)
{
    unsigned sum = 2166136261u;
    for (std::size_t i = 0; i < size; ++i)
        sum = (sum ^ static_cast<const unsigned char*>(bytes)[i]) * 16777619u;
    return sum;
}

// The content of a file; "(none)" without one.
inline std::wstring Content(const std::wstring& path)
{
    if (!test_support::FileExists(path)) return L"(none)";
    const std::string bytes = test_support::ReadFile(path);
    return std::to_wstring(bytes.size()) + L":" + std::to_wstring(Sum(bytes.data(), bytes.size()));
}

} // namespace faults
