#include "FaultWatch.h"

#include <base/Handles.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <utility>

namespace fuzz {

namespace {

FaultWatch* s_watch = nullptr;

constexpr DWORD longestMilliseconds = 20'000;
constexpr DWORD lookEvery = 100;

// The status of a program that an input has ended.
constexpr int faultStatus = 77;

} // namespace

FaultWatch::FaultWatch(std::wstring folder, std::wstring name)
    : m_path(std::move(folder) + L"\\fault-" + std::move(name))
{
    s_watch = this;
    SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX);
    SetUnhandledExceptionFilter(OnException);
    std::signal(SIGABRT, OnAbort);
    m_timer = std::thread(&FaultWatch::WatchTime, this);
}

FaultWatch::~FaultWatch()
{
    m_ends = true;
    m_timer.join();
    s_watch = nullptr;
}

void FaultWatch::Begin(const std::string& input)
{
    m_input = &input;
    ++m_begun;
}

void FaultWatch::Fail(const char* what) noexcept
{
    const std::string* const input = m_input;
    const base::File file(CreateFileW(m_path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                      FILE_ATTRIBUTE_NORMAL, nullptr));
    DWORD written = 0;
    if (file && input)
        WriteFile(file.get(), input->data(), static_cast<DWORD>(input->size()), &written, nullptr);
    std::printf("fault: %s; the input of %lu bytes is in %ls\n", what, written, m_path.c_str());
    std::fflush(stdout);
    TerminateProcess(GetCurrentProcess(), faultStatus);
    std::abort(); // the call above does not return
}

LONG WINAPI FaultWatch::OnException(EXCEPTION_POINTERS* exception)
{
    char what[64];
    std::snprintf(what, sizeof what, "exception %08lX at %p",
                  exception->ExceptionRecord->ExceptionCode,
                  exception->ExceptionRecord->ExceptionAddress);
    s_watch->Fail(what);
}

void FaultWatch::OnAbort(int)
{
    s_watch->Fail("the program was aborted");
}

void FaultWatch::WatchTime()
{
    unsigned last = 0;
    DWORD waited = 0;
    while (!m_ends) {
        Sleep(lookEvery);
        waited = m_begun == last ? waited + lookEvery : 0;
        last = m_begun;
        if (waited >= longestMilliseconds && last != 0) Fail("an input takes too long");
    }
}

} // namespace fuzz
