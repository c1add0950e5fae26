#include "test_support/ChildTest.h"

#include "test_support/Program.h"

#include <stdexcept>

namespace test_support {

ChildTest::ChildTest(const std::string& fullTestName)
{
    const std::wstring program = ProgramPath();
    std::wstring command = L"\"" + program + L"\" --gtest_also_run_disabled_tests --gtest_filter=" +
                           std::wstring(fullTestName.begin(), fullTestName.end());
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION info{};
    if (!CreateProcessW(program.c_str(), command.data(), nullptr, nullptr, FALSE, 0, nullptr,
                        nullptr, &startup, &info))
        throw std::runtime_error("cannot start the child test " + fullTestName);
    base::Thread(info.hThread).reset();
    m_process.reset(info.hProcess);
}

ChildTest::~ChildTest()
{
    Kill();
}

DWORD ChildTest::Wait(DWORD milliseconds)
{
    DWORD code = STILL_ACTIVE;
    if (WaitForSingleObject(m_process.get(), milliseconds) == WAIT_OBJECT_0)
        GetExitCodeProcess(m_process.get(), &code);
    return code;
}

void ChildTest::Kill()
{
    TerminateProcess(m_process.get(), 99);
    WaitForSingleObject(m_process.get(), 10000);
}

std::wstring EnvironmentVariable(const wchar_t* name)
{
    std::wstring value(32767, L'\0'); // the longest
    value.resize(GetEnvironmentVariableW(name, value.data(), 32767));
    return value;
}

} // namespace test_support
