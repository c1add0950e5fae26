#pragma once

#include <windows.h>

#include <atomic>
#include <string>
#include <thread>

namespace fuzz {

/// Ends the program when an input crashes it, ends it or takes longer than twenty seconds. The
/// input is written to a file first, and one line tells where. There is one watch in a program.
class FaultWatch
{
public:
    /// Faults go to `folder`, in files named after `name`.
    FaultWatch(std::wstring folder, std::wstring name);
    ~FaultWatch();
    FaultWatch(const FaultWatch&) = delete;
    FaultWatch& operator=(const FaultWatch&) = delete;

    /// The input that runs from here on; it has to stay until the next call.
    void Begin(const std::string& input);

    /// Writes the input, tells the fault and ends the program.
    [[noreturn]] void Fail(const char* what) noexcept;

private:
    static LONG WINAPI OnException(EXCEPTION_POINTERS* exception);
    static void OnAbort(int);
    void WatchTime();

    std::wstring m_path;
    std::atomic<const std::string*> m_input{nullptr};
    std::atomic<unsigned> m_begun{0};
    std::atomic<bool> m_ends{false};
    std::thread m_timer;
};

} // namespace fuzz
