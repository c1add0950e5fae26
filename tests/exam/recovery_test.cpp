// The next start offers what an exam that crashed or was killed has left. exam.exe itself runs
// here, worked by the messages that a user's input becomes.
#include <base/Handles.h>
#include <gtest/gtest.h>
#include <test_support/Files.h>
#include <test_support/Program.h>
#include <test_support/TemporaryFolder.h>

#include <atltypes.h>

#include <windows.h>

#include <filesystem>
#include <functional>
#include <optional>
#include <string>

namespace {

namespace fs = std::filesystem;

constexpr DWORD patience = 60'000;

bool Await(const std::function<bool()>& holds)
{
    for (const ULONGLONG end = GetTickCount64() + patience; GetTickCount64() < end; Sleep(50))
        if (holds()) return true;
    return false;
}

// A window that is looked for among all.
struct Search
{
    DWORD process = 0;
    bool isBox = false; // a question, and not the main window
    HWND found = nullptr;
};

BOOL CALLBACK Look(HWND window, LPARAM search)
{
    auto& wanted = *reinterpret_cast<Search*>(search);
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    wchar_t name[64] = {};
    GetClassNameW(window, name, 64);
    CRect client;
    GetClientRect(window, &client);
    const bool isBox = std::wstring(name) == L"#32770";
    const bool isMain = !isBox && client.Width() >= 700 && client.Height() >= 500;
    if (process != wanted.process || !IsWindowVisible(window) || !(wanted.isBox ? isBox : isMain))
        return TRUE;
    wanted.found = window;
    return FALSE;
}

BOOL CALLBACK AddText(HWND child, LPARAM text)
{
    wchar_t own[4096] = {};
    GetWindowTextW(child, own, 4096);
    *reinterpret_cast<std::wstring*>(text) += own;
    return TRUE;
}

// An exam that runs as a process of its own, with the user's files in a folder.
class RunningExam
{
public:
    explicit RunningExam(const std::wstring& folder)
    {
        const std::wstring program = test_support::BesideProgram(L"exam.exe");
        std::wstring command = L"\"" + program + L"\" --profile \"" + folder +
                               L"\\exam.ini\" --recordings \"" + folder +
                               L"\\recordings\" --log \"" + folder + L"\\log\"";
        STARTUPINFOW startup{};
        startup.cb = sizeof startup;
        PROCESS_INFORMATION info{};
        EXPECT_TRUE(CreateProcessW(program.c_str(), command.data(), nullptr, nullptr, FALSE, 0,
                                   nullptr, nullptr, &startup, &info));
        base::Thread(info.hThread).reset();
        m_process.reset(info.hProcess);
        m_id = info.dwProcessId;
    }
    ~RunningExam() { Kill(); }

    void Kill()
    {
        TerminateProcess(m_process.get(), 99);
        WaitForSingleObject(m_process.get(), patience);
    }

    // Lets a thread of the exam call what is no code.
    void Crash()
    {
        const auto nowhere = reinterpret_cast<LPTHREAD_START_ROUTINE>(std::uintptr_t{0x10});
        const base::Thread thread(
            CreateRemoteThread(m_process.get(), nullptr, 0, nowhere, nullptr, 0, nullptr));
        EXPECT_TRUE(thread);
        EXPECT_EQ(Wait(), STATUS_ACCESS_VIOLATION);
    }

    DWORD Wait()
    {
        DWORD code = STILL_ACTIVE;
        WaitForSingleObject(m_process.get(), patience);
        GetExitCodeProcess(m_process.get(), &code);
        return code;
    }

    HWND Find(bool isBox) const
    {
        Search search{m_id, isBox};
        EnumWindows(Look, reinterpret_cast<LPARAM>(&search));
        return search.found;
    }

    // Waits for the question at the start; empty when the exam begins without one.
    std::wstring Question()
    {
        HWND box = nullptr;
        EXPECT_TRUE(Await([&] {
            box = Find(true);
            const HWND window = Find(false);
            return box || (window && IsWindowEnabled(window) && IsReady(window));
        }));
        std::wstring text;
        if (box) EnumChildWindows(box, AddText, reinterpret_cast<LPARAM>(&text));
        return text;
    }

    void Answer(int button)
    {
        PostMessageW(Find(true), WM_COMMAND, static_cast<WPARAM>(button), 0);
        EXPECT_TRUE(Await([&] { return Find(true) == nullptr; }));
    }

    void Press(UINT key) const { PostMessageW(Find(false), WM_KEYDOWN, key, 0); }

    // Sets the folder of the recordings in the form of the settings.
    void RecordInto(const std::wstring& folder)
    {
        constexpr int field = 102;
        Press(VK_F12);
        EXPECT_TRUE(Await([&] { return GetDlgItem(Find(true), field) != nullptr; }));
        SendMessageW(GetDlgItem(Find(true), field), WM_SETTEXT, 0,
                     reinterpret_cast<LPARAM>(folder.c_str()));
        Answer(IDOK);
    }

    // Measures a distance in the middle of the image.
    void Measure() const
    {
        const HWND window = Find(false);
        CRect client;
        GetClientRect(window, &client);
        const LPARAM from = MAKELPARAM(client.Width() * 2 / 5, client.Height() * 2 / 5);
        const LPARAM to = MAKELPARAM(client.Width() * 2 / 5 + 60, client.Height() * 2 / 5);
        Press('1');
        PostMessageW(window, WM_LBUTTONDOWN, MK_LBUTTON, from);
        PostMessageW(window, WM_MOUSEMOVE, MK_LBUTTON, to);
        PostMessageW(window, WM_LBUTTONUP, 0, to);
    }

    void Close()
    {
        PostMessageW(Find(false), WM_CLOSE, 0, 0);
        EXPECT_EQ(Wait(), 0u);
    }

private:
    // True when the exam waits for input.
    bool IsReady(HWND window) const
    {
        return WaitForInputIdle(m_process.get(), 0) == 0 &&
               SendMessageTimeoutW(window, WM_NULL, 0, 0, SMTO_NORMAL, 1000, nullptr) != 0 &&
               GetMenu(window) != nullptr;
    }

    base::Process m_process;
    DWORD m_id = 0;
};

class RecoveryTest : public testing::Test
{
protected:
    RecoveryTest() { SetEnvironmentVariableW(L"LOCALAPPDATA", m_folder.Path().c_str()); }

    std::wstring Study(const std::wstring& name) const
    {
        return m_folder / (L"Kestrow\\Exam\\patients\\P1\\" + name);
    }
    int MarksIn(const std::wstring& study) const
    {
        const std::wstring path = Study(study) + L"\\study.xml";
        if (!test_support::FileExists(path)) return 0;
        const std::string text = test_support::ReadFile(path);
        int marks = 0;
        for (auto at = text.find("<mark "); at != std::string::npos;
             at = text.find("<mark ", at + 1))
            ++marks;
        return marks;
    }
    std::wstring Recording() const { return m_folder / L"recordings\\recording-001.cine"; }

    // Records until the file holds frames.
    static void Record(const RunningExam& exam, const std::wstring& path)
    {
        exam.Press('C');
        ASSERT_TRUE(Await([&] {
            std::error_code error; // the file comes with the first frame
            const auto size = fs::file_size(path, error);
            return !error && size > 1'000'000;
        }));
    }

    // Works with an exam until its measurement is kept and its recording holds frames.
    void Work(RunningExam& exam)
    {
        ASSERT_EQ(exam.Question(), L"");
        exam.Measure();
        ASSERT_TRUE(Await([&] { return MarksIn(L"S1") == 1; }));
        Record(exam, Recording());
    }

    test_support::TemporaryFolder m_folder;
};

bool Has(const std::wstring& text, const std::wstring& part)
{
    return text.find(part) != std::wstring::npos;
}

} // namespace

TEST_F(RecoveryTest, AfterAKillTheStudyAndTheRecordingAreOffered)
{
    {
        RunningExam killed(m_folder.Path());
        Work(killed);
        killed.Kill();
    }
    {
        RunningExam next(m_folder.Path());
        const std::wstring question = next.Question();
        EXPECT_TRUE(Has(question, L"annotations: 1,")) << question.c_str();
        EXPECT_TRUE(Has(question, Study(L"S1"))) << question.c_str();
        EXPECT_TRUE(Has(question, Recording())) << question.c_str();
        EXPECT_FALSE(Has(question, L"crash")) << question.c_str();
        next.Answer(IDYES);
        next.Measure(); // on the recording, which is on display
        EXPECT_TRUE(Await([&] { return MarksIn(L"S1") == 2; }));
        next.Close();
    }
    RunningExam third(m_folder.Path());
    EXPECT_EQ(third.Question(), L"");
    third.Close();
}

// The next start is told another folder, so the settings do not tell it where to look.
TEST_F(RecoveryTest, ARecordingInAFolderThatWasChosenMeanwhileIsOffered)
{
    const std::wstring elsewhere = m_folder / L"elsewhere";
    {
        RunningExam killed(m_folder.Path());
        Work(killed);
        killed.RecordInto(elsewhere);
        killed.Press('C'); // the recording in the first folder is whole
        Record(killed, elsewhere + L"\\recording-001.cine");
        killed.Kill();
    }
    RunningExam next(m_folder.Path());
    const std::wstring question = next.Question();
    EXPECT_TRUE(Has(question, elsewhere + L"\\recording-001.cine")) << question.c_str();
    EXPECT_FALSE(Has(question, Recording())) << question.c_str();
    next.Answer(IDYES);
    next.Close();
}

TEST_F(RecoveryTest, ASecondExamKeepsAStudyOfItsOwn)
{
    RunningExam first(m_folder.Path());
    ASSERT_EQ(first.Question(), L"");
    first.Measure();
    ASSERT_TRUE(Await([&] { return MarksIn(L"S1") == 1; }));
    RunningExam second(m_folder.Path());
    ASSERT_EQ(second.Question(), L"");
    second.Measure();
    EXPECT_TRUE(Await([&] { return MarksIn(L"S2") == 1; }));
    EXPECT_EQ(MarksIn(L"S1"), 1);
    second.Close();
    first.Close();
}

TEST_F(RecoveryTest, WithoutAnythingToOfferNothingIsAsked)
{
    {
        RunningExam killed(m_folder.Path());
        ASSERT_EQ(killed.Question(), L"");
    }
    RunningExam next(m_folder.Path());
    EXPECT_EQ(next.Question(), L"");
    next.Close();
}

TEST_F(RecoveryTest, AfterACrashTheReportIsOfferedTooAndANewStudyCanBegin)
{
    {
        RunningExam crashed(m_folder.Path());
        Work(crashed);
        crashed.Crash();
    }
    // The crash reporter tells where the archive is.
    HWND message = nullptr;
    ASSERT_TRUE(Await([&] {
        message = FindWindowExW(nullptr, nullptr, nullptr, L"Crash report");
        return message != nullptr;
    }));
    PostMessageW(message, WM_CLOSE, 0, 0);
    {
        RunningExam next(m_folder.Path());
        const std::wstring question = next.Question();
        EXPECT_TRUE(Has(question, L"annotations: 1,")) << question.c_str();
        EXPECT_TRUE(Has(question, Recording())) << question.c_str();
        EXPECT_TRUE(Has(question, m_folder / L"log\\exam_")) << question.c_str();
        EXPECT_TRUE(Has(question, L".zip")) << question.c_str();
        next.Answer(IDNO);
        next.Measure();
        EXPECT_TRUE(Await([&] { return MarksIn(L"S2") == 1; }));
        EXPECT_EQ(MarksIn(L"S1"), 1);
        next.Close();
    }
}

TEST_F(RecoveryTest, TheCrashReporterSpeaksTheLanguageOfTheExam)
{
    WritePrivateProfileStringW(L"Settings\\Exam", L"Language", L"de",
                               (m_folder / L"exam.ini").c_str());
    RunningExam crashed(m_folder.Path());
    EXPECT_EQ(crashed.Question(), L"");
    crashed.Crash();
    HWND message = nullptr;
    std::wstring text;
    EXPECT_TRUE(Await([&] { // the box may be there before its text
        message = FindWindowExW(nullptr, nullptr, nullptr, L"Absturzbericht");
        text.clear();
        if (message) EnumChildWindows(message, AddText, reinterpret_cast<LPARAM>(&text));
        return Has(text, L"Der Absturzbericht liegt in " + m_folder.Path());
    })) << text.c_str();
    PostMessageW(message, WM_CLOSE, 0, 0);
}
