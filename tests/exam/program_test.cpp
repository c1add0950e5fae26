// exam.exe is tried as the system sees it: its kind, its resources, and where its output goes.
#include "base/Resources.h"

#include <base/Handles.h>
#include <gtest/gtest.h>
#include <test_support/Files.h>
#include <test_support/Program.h>
#include <test_support/TemporaryFolder.h>

#include <windows.h>

#include <cstring>
#include <string>
#include <utility>
#include <vector>

namespace {

std::wstring Exam()
{
    return test_support::BesideProgram(L"exam.exe");
}

WORD Subsystem(const std::string& image)
{
    IMAGE_DOS_HEADER dos;
    std::memcpy(&dos, image.data(), sizeof dos);
    IMAGE_NT_HEADERS headers; // headers of this program, which has the architecture of exam.exe
    std::memcpy(&headers, image.data() + dos.e_lfanew, sizeof headers);
    return headers.OptionalHeader.Subsystem;
}

std::wstring VersionText(const wchar_t* name)
{
    DWORD ignored = 0;
    std::vector<char> data(GetFileVersionInfoSizeW(Exam().c_str(), &ignored));
    if (data.empty()) return L"no version resource";
    GetFileVersionInfoW(Exam().c_str(), 0, static_cast<DWORD>(data.size()), data.data());
    wchar_t* text = nullptr;
    UINT length = 0;
    const std::wstring path = std::wstring(L"\\StringFileInfo\\040904b0\\") + name;
    return VerQueryValueW(data.data(), path.c_str(), reinterpret_cast<void**>(&text), &length)
               ? text
               : L"no such text";
}

// A new console for this process, in place of the one that it was started from.
class OwnConsole
{
public:
    OwnConsole()
    {
        FreeConsole();
        m_made = AllocConsole() != FALSE;
    }
    ~OwnConsole()
    {
        if (m_made) FreeConsole();
    }
    OwnConsole(const OwnConsole&) = delete;
    OwnConsole& operator=(const OwnConsole&) = delete;

    explicit operator bool() const { return m_made; }

    // The text in the first rows.
    std::wstring Text() const
    {
        const base::File screen(CreateFileW(L"CONOUT$", GENERIC_READ | GENERIC_WRITE,
                                            FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                            OPEN_EXISTING, 0, nullptr));
        std::wstring text(2000, L' ');
        DWORD read = 0;
        ReadConsoleOutputCharacterW(screen.get(), text.data(), 2000, {0, 0}, &read);
        text.resize(read);
        return text;
    }

private:
    bool m_made = false;
};

// exam.exe with its window, which a user closes.
class RunningExam
{
public:
    explicit RunningExam(const std::wstring& arguments)
    {
        STARTUPINFOW start{};
        start.cb = sizeof start;
        PROCESS_INFORMATION process{};
        std::wstring line = L"exam.exe " + arguments;
        if (!CreateProcessW(Exam().c_str(), line.data(), nullptr, nullptr, FALSE, 0, nullptr,
                            nullptr, &start, &process))
            return;
        m_process.reset(process.hProcess);
        CloseHandle(process.hThread);
    }
    ~RunningExam()
    {
        if (m_process) TerminateProcess(m_process.get(), 1);
    }
    RunningExam(const RunningExam&) = delete;
    RunningExam& operator=(const RunningExam&) = delete;

    // The title of its window, once it is there.
    std::wstring Title()
    {
        for (int i = 0; i < 300 && !m_window && IsRunning(100); ++i)
            EnumWindows(TakeWindow, reinterpret_cast<LPARAM>(this));
        wchar_t title[100] = {};
        GetWindowTextW(m_window, title, 100);
        return title;
    }

    // Waits, and tells whether it still runs.
    bool IsRunning(DWORD milliseconds)
    {
        return m_process && WaitForSingleObject(m_process.get(), milliseconds) == WAIT_TIMEOUT;
    }

    // The exit code; MAXDWORD when it does not end.
    DWORD Close()
    {
        PostMessageW(m_window, WM_CLOSE, 0, 0);
        DWORD code = MAXDWORD;
        if (!IsRunning(60000)) GetExitCodeProcess(m_process.get(), &code);
        m_process.reset();
        return code;
    }

private:
    static BOOL CALLBACK TakeWindow(HWND window, LPARAM self)
    {
        auto* const exam = reinterpret_cast<RunningExam*>(self);
        DWORD process = 0;
        GetWindowThreadProcessId(window, &process);
        const bool isMain = process == GetProcessId(exam->m_process.get()) &&
                            IsWindowVisible(window) && !GetWindow(window, GW_OWNER);
        if (isMain) exam->m_window = window;
        return !isMain;
    }

    base::Process m_process;
    HWND m_window = nullptr;
};

std::size_t Count(const std::string& text, const std::string& part)
{
    std::size_t count = 0;
    for (auto at = text.find(part); at != std::string::npos; at = text.find(part, at + 1))
        ++count;
    return count;
}

// Runs exam.exe without handles for its output. The result is its exit code.
DWORD RunWithoutHandles(std::wstring arguments)
{
    STARTUPINFOW start{};
    start.cb = sizeof start;
    PROCESS_INFORMATION process{};
    arguments = L"exam.exe " + arguments;
    if (!CreateProcessW(Exam().c_str(), arguments.data(), nullptr, nullptr, FALSE, 0, nullptr,
                        nullptr, &start, &process))
        return MAXDWORD;
    const base::Process running(process.hProcess);
    const base::Thread thread(process.hThread);
    WaitForSingleObject(running.get(), 60000);
    DWORD code = MAXDWORD;
    GetExitCodeProcess(running.get(), &code);
    return code;
}

} // namespace

TEST(ExamProgram, OpensNoConsoleWindow)
{
    EXPECT_EQ(Subsystem(test_support::ReadFile(Exam())), IMAGE_SUBSYSTEM_WINDOWS_GUI);
}

TEST(ExamProgram, WritesToTheConsoleOfItsParent)
{
    const OwnConsole console;
    if (!console) GTEST_SKIP() << "this platform gives no console here";
    // A parent's handles are passed on to its children; without them only the console is left.
    SetStdHandle(STD_OUTPUT_HANDLE, nullptr);
    SetStdHandle(STD_ERROR_HANDLE, nullptr);
    EXPECT_EQ(RunWithoutHandles(L"--surprise"), 2u);
    EXPECT_NE(console.Text().find(L"exam: unknown argument '--surprise'"), std::wstring::npos);
}

TEST(ExamProgram, HasAnIconInTheUsualSizes)
{
    const base::Module program(LoadLibraryExW(Exam().c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE));
    ASSERT_TRUE(program);
    for (const int size : {16, 24, 32, 48, 64}) {
        const auto icon = static_cast<HICON>(
            LoadImageW(program.get(), MAKEINTRESOURCEW(IDI_EXAM), IMAGE_ICON, size, size, 0));
        ASSERT_NE(icon, nullptr) << size;
        ICONINFO info{};
        BITMAP bitmap{};
        GetIconInfo(icon, &info);
        GetObjectW(info.hbmColor, sizeof bitmap, &bitmap);
        EXPECT_EQ(bitmap.bmWidth, size);
        DeleteObject(info.hbmColor);
        DeleteObject(info.hbmMask);
        DestroyIcon(icon);
    }
}

TEST(ExamProgram, NamesItsVersion)
{
    EXPECT_EQ(VersionText(L"ProductVersion"), L"" EXAM_VERSION);
    EXPECT_EQ(VersionText(L"FileVersion"), L"" EXAM_VERSION);
    EXPECT_EQ(VersionText(L"OriginalFilename"), L"exam.exe");
}

// Every source of lines is at work: a plugged probe, the status row, frames that run.
TEST(ExamProgram, LogsItsStartAndItsEndOnceAndLittleBetween)
{
    const test_support::TemporaryFolder folder;
    const std::wstring profile = folder / L"exam.ini";
    test_support::WriteFile(profile, "[Settings\\Devices]\r\nProbe=1\r\n[Settings\\Status]\r\n"
                                     "NetworkConnection=1\r\nStreaming=1\r\n");
    RunningExam exam(L"--profile \"" + profile + L"\" --log \"" + folder / L"log" +
                     L"\" --recordings \"" + folder.Path() + L"\"");
    ASSERT_FALSE(exam.Title().empty());
    ASSERT_TRUE(exam.IsRunning(6000)); // a probe reports once in five seconds
    EXPECT_EQ(exam.Close(), 0u);
    const std::string log = test_support::ReadFile(folder / L"log\\exam.log");
    EXPECT_EQ(Count(log, " starts."), 1u) << log;
    EXPECT_EQ(Count(log, "The exam ends with exit code 0."), 1u) << log;
    EXPECT_LT(Count(log, "\n"), 30u) << log;
}

TEST(ExamProgram, StartsWithTheSettingsThatWereKept)
{
    const test_support::TemporaryFolder folder;
    const std::wstring profile = folder / L"exam.ini";
    const std::pair<const char*, const wchar_t*> titles[] = {
        {"en", L"Sample patient, sample study"}, {"de", L"Beispielpatient, Beispielstudie"}};
    for (const auto& [language, title] : titles) {
        test_support::WriteFile(profile,
                                std::string("[Settings\\Exam]\r\nLanguage=") + language + "\r\n");
        RunningExam exam(L"--profile \"" + profile + L"\" --log \"" + folder / L"log" +
                         L"\" --recordings \"" + folder.Path() + L"\"");
        EXPECT_EQ(exam.Title(), title);
        EXPECT_EQ(exam.Close(), 0u);
    }
}
