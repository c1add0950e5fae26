#pragma once

#include <base/Handles.h>

#include <windows.h>

#include <string>

namespace test_support {

// Runs one test of this same program in a process of its own, for tests that end a process or must
// not touch this one. The child test is named "...DISABLED_..." so that it never runs by itself. It
// reads its input from the environment.
class ChildTest
{
public:
    // Starts the child; throws std::runtime_error when that fails.
    explicit ChildTest(const std::string& fullTestName);
    // Ends a child that is still running.
    ~ChildTest();
    ChildTest(const ChildTest&) = delete;
    ChildTest& operator=(const ChildTest&) = delete;

    HANDLE Process() const { return m_process.get(); }

    // The exit code, or STILL_ACTIVE when the child has not ended in time.
    DWORD Wait(DWORD milliseconds);

    // Ends the child at once, as a crash or the task manager would, and waits until it is gone.
    void Kill();

private:
    base::Process m_process;
};

// The value of an environment variable; empty when it is not set.
std::wstring EnvironmentVariable(const wchar_t* name);

} // namespace test_support
