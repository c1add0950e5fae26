// The logger: what reaches the hook, the file and the debugger, and what it survives.
#include <qor_utils/zelLogger.h>
#include <qor_utils/zelPath.h>

#include <test_support/Files.h>
#include <test_support/InDirectory.h>
#include <test_support/TemporaryFolder.h>

#include <gtest/gtest.h>

#include <windows.h>

#include <atomic>
#include <mutex>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace {

using test_support::fileExists;
using test_support::readFile;
using test_support::TemporaryFolder;

constexpr std::size_t longestText = 65536;

struct Record
{
    std::string source;
    int line;
    int level;
    std::wstring text;
};

// Takes the hook for its lifetime and keeps what it is handed.
class Recorder
{
public:
    Recorder() { zelLogger::setHook(&take, this); }
    ~Recorder() { zelLogger::setHook(nullptr, nullptr); }
    Recorder(const Recorder&) = delete;
    Recorder& operator=(const Recorder&) = delete;

    const std::vector<Record>& records() const { return m_records; }
    std::wstring lastText() const { return m_records.empty() ? L"(no message)" : m_records.back().text; }

private:
    static void take(const zelLogger::Message& message, void* self)
    {
        auto& recorder = *static_cast<Recorder*>(self);
        const std::scoped_lock guard(recorder.m_lock);
        recorder.m_records.push_back({message.source, message.line, message.level, message.text});
    }

    std::mutex m_lock;
    std::vector<Record> m_records;
};

// A folder that is the log's for a while.
class LogFolder
{
public:
    LogFolder() { zelLogger::setDirectory(m_folder.path()); }
    ~LogFolder() { zelLogger::setDirectory(L""); }
    LogFolder(const LogFolder&) = delete;
    LogFolder& operator=(const LogFolder&) = delete;

    const std::wstring& path() const { return m_folder.path(); }
    std::wstring file(const std::wstring& ending = L".log") const
    {
        return m_folder / (L"qor_utils_logger_test" + ending);
    }

private:
    TemporaryFolder m_folder;
};

template <typename... Arguments>
void log(const wchar_t* format, Arguments... arguments)
{
    zelLogger::zelLogHelper("Utils_Statics/Test", 123, 4)(format, arguments...);
}

std::size_t count(const std::string& text, const std::string& part)
{
    std::size_t found = 0;
    for (auto at = text.find(part); at != std::string::npos; at = text.find(part, at + part.size()))
        ++found;
    return found;
}

TEST(LogHook, IsHandedSourceLineLevelAndText)
{
    const LogFolder folder;
    const Recorder recorder;
    zelLogger::zelLogHelper("Utils_Statics/Utils_Statics", 1332, 2)(L"Layout File - File %s not found.", L"a.xml");
    ASSERT_EQ(recorder.records().size(), 1u);
    EXPECT_EQ(recorder.records()[0].source, "Utils_Statics/Utils_Statics");
    EXPECT_EQ(recorder.records()[0].line, 1332);
    EXPECT_EQ(recorder.records()[0].level, 2);
    EXPECT_EQ(recorder.records()[0].text, L"Layout File - File a.xml not found.");
}

TEST(LogHook, IsNotCalledOnceItIsTakenAway)
{
    const LogFolder folder;
    Recorder recorder;
    zelLogger::setHook(nullptr, nullptr);
    log(L"x");
    EXPECT_TRUE(recorder.records().empty());
}

TEST(LogHook, MayLogItself)
{
    const LogFolder folder;
    int calls = 0;
    const auto hook = [](const zelLogger::Message&, void* data) {
        ++*static_cast<int*>(data);
        zelLogger::zelLogHelper("hook", 1, 4)(L"from the hook");
    };
    zelLogger::setHook(hook, &calls);
    log(L"from the caller");
    log(L"again");
    zelLogger::setHook(nullptr, nullptr);
    EXPECT_EQ(calls, 2);
    EXPECT_EQ(count(readFile(folder.file()), "from the hook"), 2u);
}

TEST(LogHook, MayThrow)
{
    const LogFolder folder;
    const auto hook = [](const zelLogger::Message&, void* data) {
        ++*static_cast<int*>(data);
        throw std::runtime_error("hook");
    };
    int calls = 0;
    zelLogger::setHook(hook, &calls);
    log(L"x");
    log(L"y");
    zelLogger::setHook(nullptr, nullptr);
    EXPECT_EQ(calls, 2);
}

TEST(LogHook, MayTakeItselfAway)
{
    const LogFolder folder;
    int calls = 0;
    const auto hook = [](const zelLogger::Message&, void* data) {
        ++*static_cast<int*>(data);
        zelLogger::setHook(nullptr, nullptr);
    };
    zelLogger::setHook(hook, &calls);
    log(L"x");
    log(L"y");
    EXPECT_EQ(calls, 1);
}

TEST(LogHook, IsLeftByOtherThreadsWhenSetHookReturns)
{
    struct Gate
    {
        HANDLE entered = CreateEventW(nullptr, TRUE, FALSE, nullptr);
        HANDLE leave = CreateEventW(nullptr, TRUE, FALSE, nullptr);
        std::atomic<int> calls = 0;
        std::atomic<bool> left = false;
        ~Gate()
        {
            CloseHandle(entered);
            CloseHandle(leave);
        }
    } gate;
    const LogFolder folder;
    const auto hook = [](const zelLogger::Message&, void* data) {
        auto& g = *static_cast<Gate*>(data);
        if (g.calls++ > 0) return; // only the first call waits
        SetEvent(g.entered);
        WaitForSingleObject(g.leave, 20'000);
        g.left = true;
    };
    zelLogger::setHook(hook, &gate);
    std::jthread logging([] { log(L"x"); });
    ASSERT_EQ(WaitForSingleObject(gate.entered, 20'000), WAIT_OBJECT_0);
    std::atomic<bool> leftAtReturn = false;
    std::jthread removing([&] {
        zelLogger::setHook(nullptr, nullptr);
        leftAtReturn = gate.left.load();
    });
    log(L"while it waits, other messages are not held up");
    SetEvent(gate.leave);
    removing.join();
    EXPECT_TRUE(leftAtReturn);
}

TEST(LogText, IsFormattedAsThePlatformFormatsWideText)
{
    const LogFolder folder;
    const Recorder recorder;
    log(L"%s|%S|%hs|%ls|%c|%d|%5.2f|%08x|%%", L"wide", "narrow", "narrow", L"wide", L'c', -5, 3.14159, 0xBEEFu);
    EXPECT_EQ(recorder.lastText(), L"wide|narrow|narrow|wide|c|-5| 3.14|0000beef|%");
    log(L"%I64u", 18446744073709551615ull);
    EXPECT_EQ(recorder.lastText(), L"18446744073709551615");
    log(L"%s", static_cast<const wchar_t*>(nullptr));
    EXPECT_EQ(recorder.lastText(), L"(null)");
}

TEST(LogText, IsEmptyForANullOrEmptyFormat)
{
    const LogFolder folder;
    const Recorder recorder;
    log(nullptr);
    EXPECT_EQ(recorder.lastText(), L"");
    log(L"");
    EXPECT_EQ(recorder.lastText(), L"");
    EXPECT_EQ(recorder.records().size(), 2u);
}

TEST(LogText, IsWholeUpToItsLimitAndCutThere)
{
    const LogFolder folder;
    const Recorder recorder;
    for (const std::size_t length : {511u, 512u, 513u, 2047u, 2048u, 32768u, 65535u, 65536u, 65537u, 200000u}) {
        const std::wstring text(length, L'x');
        log(L"%s", text.c_str());
        EXPECT_EQ(recorder.lastText(), text.substr(0, longestText)) << length;
    }
}

TEST(LogText, IsBoundedHoweverWideAFieldIs)
{
    const LogFolder folder;
    const Recorder recorder;
    log(L"%99999999d", 1);
    EXPECT_LE(recorder.lastText().size(), longestText);
    EXPECT_EQ(recorder.records().size(), 1u);
}

TEST(LogText, TakesANullSourceForEmpty)
{
    const LogFolder folder;
    const Recorder recorder;
    zelLogger::zelLogHelper(nullptr, 0, 1)(L"x");
    ASSERT_EQ(recorder.records().size(), 1u);
    EXPECT_EQ(recorder.records()[0].source, "");
}

TEST(LogFile, HoldsEachMessageWhenTheCallReturns)
{
    const LogFolder folder;
    zelLogger::zelLogHelper("Utils_Statics/ActionRepository", 32, 1)(L"Could not load actions from file");
    const std::string file = readFile(folder.file());
    EXPECT_NE(file.find("[error] Utils_Statics/ActionRepository(32): Could not load actions from file\r\n"),
              std::string::npos)
        << file;
}

TEST(LogFile, NamesTheLevels)
{
    const LogFolder folder;
    for (const int level : {1, 2, 4, 8, 0, -1})
        zelLogger::zelLogHelper("s", level, level)(L"x");
    const std::string file = readFile(folder.file());
    EXPECT_EQ(count(file, "[error] s(1)"), 1u);
    EXPECT_EQ(count(file, "[warning] s(2)"), 1u);
    EXPECT_EQ(count(file, "[info] s(4)"), 1u);
    EXPECT_EQ(count(file, "[debug] s("), 3u) << file;
}

TEST(LogFile, IsUtf8)
{
    const LogFolder folder;
    log(L"\x00E4\x4E2D\xD83D\xDE00 {} %%n");
    EXPECT_NE(readFile(folder.file()).find("\xC3\xA4\xE4\xB8\xAD\xF0\x9F\x98\x80 {} %n"), std::string::npos);
}

TEST(LogFile, IsOpenedByTheFirstMessageOnly)
{
    const LogFolder folder;
    EXPECT_FALSE(fileExists(folder.file()));
    log(L"x");
    EXPECT_TRUE(fileExists(folder.file()));
}

TEST(LogFile, IsAppendedTo)
{
    const LogFolder folder;
    log(L"first");
    {
        const LogFolder other;
        log(L"elsewhere");
    }
    zelLogger::setDirectory(folder.path());
    log(L"second");
    const std::string file = readFile(folder.file());
    EXPECT_NE(file.find("first"), std::string::npos);
    EXPECT_NE(file.find("second"), std::string::npos);
    EXPECT_EQ(file.find("elsewhere"), std::string::npos);
}

TEST(LogFile, IsRenamedWhenItIsFullAndNothingIsLost)
{
    const LogFolder folder;
    const std::wstring text(60'000, L'x');
    for (int i = 0; i < 100; ++i)
        log(L"<%d>%s", i, text.c_str());
    ASSERT_TRUE(fileExists(folder.file(L".1.log")));
    EXPECT_FALSE(fileExists(folder.file(L".2.log")));
    const std::string old = readFile(folder.file(L".1.log"));
    const std::string now = readFile(folder.file());
    EXPECT_LE(old.size(), 5u * 1024 * 1024);
    for (int i = 0; i < 100; ++i)
        ASSERT_EQ(count(old + now, "<" + std::to_string(i) + ">x"), 1u) << i;
}

TEST(LogFile, HoldsEveryMessageOfManyThreadsOnALineOfItsOwn)
{
    const LogFolder folder;
    Recorder recorder;
    constexpr int perThread = 300;
    {
        std::vector<std::jthread> threads;
        for (int t = 0; t < 6; ++t) {
            threads.emplace_back([t] {
                for (int i = 0; i < perThread; ++i)
                    log(L"<%d/%d>", t, i);
            });
        }
    }
    const std::string file = readFile(folder.file());
    EXPECT_EQ(recorder.records().size(), 6u * perThread);
    for (int t = 0; t < 6; ++t) {
        for (int i = 0; i < perThread; ++i)
            ASSERT_EQ(count(file, ": <" + std::to_string(t) + "/" + std::to_string(i) + ">\r\n"), 1u);
    }
}

TEST(LogFile, IsNotMissedByTheCallerWhenTheFolderCannotBe)
{
    const TemporaryFolder base;
    test_support::writeFile(base / L"file", "x");
    zelLogger::setDirectory(base / L"file\\below");
    const Recorder recorder;
    for (int i = 0; i < 50; ++i)
        log(L"message %d", i);
    EXPECT_EQ(recorder.records().size(), 50u);
    EXPECT_EQ(zelLogger::getCurrentDirectory(), base / L"file\\below\\");
    const LogFolder good;
    log(L"back");
    EXPECT_NE(readFile(good.file()).find("back"), std::string::npos);
}

TEST(LogFile, IsNotMissedByTheCallerWhenAnotherProgramHoldsIt)
{
    const LogFolder folder;
    const Recorder recorder;
    const HANDLE held = CreateFileW(folder.file().c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
    ASSERT_NE(held, INVALID_HANDLE_VALUE);
    log(L"held");
    CloseHandle(held);
    EXPECT_EQ(recorder.lastText(), L"held");
    zelLogger::setDirectory(folder.path()); // does not wait for the time after which the file is tried again
    log(L"free");
    EXPECT_NE(readFile(folder.file()).find("free"), std::string::npos);
}

TEST(LogDirectory, EndsInABackslashHoweverItIsSet)
{
    const TemporaryFolder base;
    for (const std::wstring& directory : {base.path(), base / L"", base.path() + L"/"}) {
        zelLogger::setDirectory(directory);
        EXPECT_EQ(zelLogger::getCurrentDirectory(), base / L"");
    }
    zelLogger::setDirectory(L"");
}

TEST(LogDirectory, IsMadeWithItsParents)
{
    const TemporaryFolder base;
    zelLogger::setDirectory(base / L"a\\\x4E2D\\c");
    EXPECT_FALSE(fileExists(base / L"a"));
    EXPECT_EQ(zelLogger::getCurrentDirectory(), base / L"a\\\x4E2D\\c\\");
    EXPECT_TRUE(fileExists(base / L"a\\\x4E2D\\c"));
    log(L"x");
    EXPECT_TRUE(fileExists(base / L"a\\\x4E2D\\c\\qor_utils_logger_test.log"));
    zelLogger::setDirectory(L"");
}

TEST(LogDirectory, StaysWhereItIsWhenTheCurrentFolderChanges)
{
    const TemporaryFolder base;
    {
        const test_support::InDirectory inside(base.path());
        zelLogger::setDirectory(L"logs");
    }
    EXPECT_EQ(zelLogger::getCurrentDirectory(), base / L"logs\\");
    zelLogger::setDirectory(L"");
}

TEST(LogDirectory, IsTheLogStoreUntilOneIsSet)
{
    const TemporaryFolder base;
    zelPath::setPath(28, base / L"store");
    EXPECT_EQ(zelLogger::getCurrentDirectory(), base / L"store\\");
    log(L"x");
    EXPECT_TRUE(fileExists(base / L"store\\qor_utils_logger_test.log"));
    const LogFolder other; // closes the file, so that the folder can go
    EXPECT_EQ(zelLogger::getCurrentDirectory(), other.path() + L"\\");
    zelPath::setPath(28, L"");
}

// The system announces a text for the debugger by an exception, wide or narrow by its version, that a handler can see.
std::wstring* debuggerText = nullptr;

LONG CALLBACK seeDebuggerText(EXCEPTION_POINTERS* pointers)
{
    constexpr DWORD wideText = 0x4001000A;
    constexpr DWORD narrowText = 0x40010006;
    const EXCEPTION_RECORD& record = *pointers->ExceptionRecord;
    if (!debuggerText || record.NumberParameters < 2) return EXCEPTION_CONTINUE_SEARCH;
    if (record.ExceptionCode == wideText)
        *debuggerText += reinterpret_cast<const wchar_t*>(record.ExceptionInformation[1]);
    if (record.ExceptionCode == narrowText) {
        const std::string text = reinterpret_cast<const char*>(record.ExceptionInformation[1]);
        debuggerText->append(text.begin(), text.end());
    }
    return EXCEPTION_CONTINUE_SEARCH;
}

TEST(LogOutput, GoesToTheDebuggerToo)
{
    const LogFolder folder;
    std::wstring text;
    debuggerText = &text;
    void* const handler = AddVectoredExceptionHandler(1, &seeDebuggerText);
    log(L"probe %d", 7);
    RemoveVectoredExceptionHandler(handler);
    debuggerText = nullptr;
    EXPECT_NE(text.find(L"[info] Utils_Statics/Test(123): probe 7"), std::wstring::npos)
        << testing::PrintToString(text);
}

TEST(CheckPath, AcceptsWhatAFileSystemCanHold)
{
    const LogFolder folder;
    const Recorder recorder;
    const std::wstring long259 = L"C:\\" + std::wstring(256, L'x');
    const std::wstring prefixed = L"\\\\?\\C:\\" + std::wstring(400, L'x');
    for (const wchar_t* path : {L"C:\\db\\P1", L"c:relative", L"relative/x", L"\\\\server\\share\\x", L"..", L"a b.c",
                                L"\xD83D\xDE00", long259.c_str(), prefixed.c_str()})
        EXPECT_TRUE(zelLogger::checkPath("s", 1, path)) << testing::PrintToString(std::wstring(path));
    EXPECT_TRUE(recorder.records().empty());
}

TEST(CheckPath, WarnsOfWhatItCannot)
{
    const LogFolder folder;
    const Recorder recorder;
    const std::wstring long260 = L"C:\\" + std::wstring(257, L'x');
    const wchar_t* const faulty[] = {
        L"",     L"C:\\a<b", L"C:\\a>b", L"C:\\a\"b",       L"C:\\a|b",      L"C:\\a?b",     L"C:\\a*b",
        L"a\tb", L"a\nb",    L"C:\\a:b", L"\\\\?\\C:\\a*b", L"file:///C:/a", long260.c_str()};
    std::size_t warnings = 0;
    for (const wchar_t* path : faulty) {
        EXPECT_FALSE(zelLogger::checkPath("Utils_Statics/Utils_Statics", 1029, path));
        ASSERT_EQ(recorder.records().size(), ++warnings) << testing::PrintToString(std::wstring(path));
        EXPECT_EQ(recorder.records().back().source, "Utils_Statics/Utils_Statics");
        EXPECT_EQ(recorder.records().back().line, 1029);
        EXPECT_EQ(recorder.records().back().level, 2);
    }
    EXPECT_FALSE(zelLogger::checkPath("s", 1, nullptr));
    EXPECT_EQ(recorder.lastText(), L"The path '' is empty.");
}

} // namespace
