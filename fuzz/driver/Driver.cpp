// Runs a target on Windows: first with every known input, then with inputs made of them by a fixed
// seed.
//
//   fuzz_NAME.exe CORPUS FAULTS [SECONDS [SEED]]
//
// CORPUS is the folder of the known inputs; the input of a fault is written to the folder FAULTS.
// Without SECONDS, only the known inputs run. The last line counts the executions. A fault is a
// crash, an input that takes too long, or resources that are lost.
#include "FaultWatch.h"
#include "Mutation.h"

#include <fuzz/Input.h>
#include <test_support/Files.h>
#include <test_support/ResourceCounts.h>

#include <windows.h>
#include <psapi.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

namespace {

std::vector<std::string> ReadInputs(const std::wstring& folder)
{
    std::vector<std::wstring> paths;
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(folder, error))
        paths.push_back(entry.path().wstring());
    std::sort(paths.begin(), paths.end()); // the same order everywhere
    std::vector<std::string> inputs;
    for (const std::wstring& path : paths)
        inputs.push_back(test_support::ReadFile(path));
    return inputs;
}

// A target may not lose any of these from input to input.
struct Resources
{
    DWORD handles = test_support::HandleCount();
    DWORD drawingObjects = test_support::DrawingObjectCount();
    DWORD userObjects = test_support::UserObjectCount();
    SIZE_T bytes = PrivateBytes();

    static SIZE_T PrivateBytes()
    {
        PROCESS_MEMORY_COUNTERS counters = {};
        GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters);
        return counters.PagefileUsage;
    }
};

// The platform itself keeps a few of each for later.
const char* FindLoss(const Resources& before, const Resources& now)
{
    constexpr DWORD kept = 16;
    constexpr SIZE_T keptBytes = 64u << 20;
    if (now.handles > before.handles + kept) return "handles are lost";
    if (now.drawingObjects > before.drawingObjects + kept) return "drawing objects are lost";
    if (now.userObjects > before.userObjects + kept) return "user objects are lost";
    return now.bytes > before.bytes + keptBytes ? "memory is lost" : nullptr;
}

class Run
{
public:
    Run(const std::wstring& faults, const std::wstring& name) : m_watch(faults, name) {}

    void Execute(const std::string& input)
    {
        m_watch.Begin(input);
        // The bytes lie in a block of their own size, so that reading behind them is noticed.
        const std::vector<std::uint8_t> bytes(input.begin(), input.end());
        LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
        ++m_executions;
    }

    void Mutate(const std::vector<std::string>& known, unsigned seconds, unsigned seed)
    {
        const Resources before;
        fuzz::Mutation mutation(known, seed);
        const ULONGLONG end = GetTickCount64() + 1000ull * seconds;
        while (GetTickCount64() < end)
            Execute(mutation.Next());
        if (const char* const loss = FindLoss(before, Resources())) m_watch.Fail(loss);
    }

    unsigned Executions() const { return m_executions; }

private:
    fuzz::FaultWatch m_watch;
    unsigned m_executions = 0;
};

} // namespace

int wmain(int count, wchar_t** arguments)
{
    if (count < 3 || count > 5) return 2;
    const std::vector<std::string> known = ReadInputs(arguments[1]);
    if (known.empty()) {
        std::printf("no known input\n");
        return 1;
    }
    Run run(arguments[2], std::filesystem::path(arguments[0]).stem().wstring());
    for (const std::string& input : known)
        run.Execute(input);
    const unsigned seed =
        count > 4 ? static_cast<unsigned>(std::wcstoul(arguments[4], nullptr, 10)) : 1;
    if (count > 3)
        run.Mutate(known, static_cast<unsigned>(std::wcstoul(arguments[3], nullptr, 10)), seed);
    std::printf("done: %u executions, %u of them known\n", run.Executions(),
                static_cast<unsigned>(known.size()));
    return 0;
}
