// Uses the application for a time as a random user does, and reads its resources.
//
//   soak.exe PROGRAM FOLDER SECONDS SEED
//
// PROGRAM is the application. FOLDER is where it keeps everything; the files that are opened lie in
// FOLDER\files. A fault is an application that ends or hangs, and a figure that is not flat.
#include "RandomUser.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>

namespace {

namespace fs = std::filesystem;

constexpr unsigned mostReadings = 60;
constexpr unsigned leastInterval = 2; // seconds between two readings

std::vector<std::wstring> FilesOf(const std::wstring& folder)
{
    std::vector<std::wstring> files;
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(folder, error))
        files.push_back(entry.path().wstring());
    std::ranges::sort(files); // the same order everywhere
    return files;
}

class Soak
{
public:
    Soak(const std::wstring& program, const std::wstring& folder, unsigned seconds, unsigned seed)
        : m_seconds(seconds), m_exam(program, folder),
          m_user(m_exam, FilesOf(folder + L"\\files"), seed)
    {
    }

    void Run()
    {
        if (!m_exam.IsReady()) return Tell("the application cannot be started");
        m_user.PressAll();
        m_user.FillProbes();
        if (!m_exam.Answers()) return TellOfSilence();
        m_begin = GetTickCount64();
        soak::PrintHeader();
        for (unsigned next = 0; Passed() < m_seconds && m_faults == 0;) {
            Act();
            if (m_faults > 0 || Passed() < next) continue;
            Read();
            next = Passed() + std::max(leastInterval, m_seconds / mostReadings);
        }
        if (m_faults > 0) return;
        m_faults += soak::Judge(m_readings);
        Leave();
    }

    unsigned Faults() const { return m_faults; }
    unsigned Actions() const { return m_actions; }

private:
    unsigned Passed() const { return static_cast<unsigned>((GetTickCount64() - m_begin) / 1000); }

    void Tell(const char* fault)
    {
        std::printf("fault: %s\n", fault);
        ++m_faults;
    }

    // The window goes first when the application ends.
    void TellOfSilence()
    {
        Tell(m_exam.IsRunning(1000) ? "the application hangs" : "the application has ended");
    }

    void Act()
    {
        m_user.Act();
        ++m_actions;
        if (!m_exam.Answers()) TellOfSilence();
    }

    void Read()
    {
        m_user.Rest();
        std::optional<soak::Reading> reading = m_exam.Read();
        if (!reading) return TellOfSilence();
        reading->seconds = Passed();
        reading->actions = m_actions;
        soak::Print(*reading);
        m_readings.push_back(*reading);
    }

    void Leave()
    {
        m_user.Rest();
        soak::PressKeys({VK_CONTROL, 'Q'});
        if (m_exam.ExitCode() != 0) Tell("the application does not end as it should");
    }

    unsigned m_seconds;
    ULONGLONG m_begin = 0;
    soak::DrivenExam m_exam;
    soak::RandomUser m_user;
    std::vector<soak::Reading> m_readings;
    unsigned m_actions = 0;
    unsigned m_faults = 0;
};

} // namespace

int wmain(int count, wchar_t** arguments)
{
    if (count != 5) return 2;
    Soak soak(arguments[1], arguments[2],
              static_cast<unsigned>(std::wcstoul(arguments[3], nullptr, 10)),
              static_cast<unsigned>(std::wcstoul(arguments[4], nullptr, 10)));
    soak.Run();
    std::printf("soak: %u actions, %u faults\n", soak.Actions(), soak.Faults());
    return soak.Faults() == 0 ? 0 : 1;
}
