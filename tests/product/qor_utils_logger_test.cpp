// The logger: what reaches the hook and the debugger, how texts are formatted, and the paths it
// warns of.
#include "LogFolder.h"

#include <base/Handles.h>
#include <gtest/gtest.h>
#include <qor_utils/LogOutput.h>
#include <test_support/Files.h>

#include <windows.h>

#include <atomic>
#include <stdexcept>
#include <thread>

namespace {

using test_support::LogCapture;
using test_support::ReadFile;

constexpr std::size_t longestText = 65536;

// The log in a folder of its own, and what is logged.
class LoggerTest : public testing::Test
{
protected:
    const LogFolder m_folder;
    const LogCapture m_capture;
};
using LogHook = LoggerTest;
using LogText = LoggerTest;
using LogOutput = LoggerTest;
using CheckPath = LoggerTest;

TEST_F(LogHook, IsHandedSourceLineLevelAndText)
{
    zelLogger::zelLogHelper("Utils_Statics/Utils_Statics", 1332,
                            2)(L"Layout File - File %s not found.", L"a.xml");
    ASSERT_EQ(m_capture.Messages().size(), 1u);
    EXPECT_EQ(m_capture.Messages()[0].source, "Utils_Statics/Utils_Statics");
    EXPECT_EQ(m_capture.Messages()[0].line, 1332);
    EXPECT_EQ(m_capture.Messages()[0].level, 2);
    EXPECT_EQ(m_capture.Messages()[0].text, L"Layout File - File a.xml not found.");
}

TEST_F(LogHook, IsNotCalledOnceItIsTakenAway)
{
    qor_utils::SetLogHook(nullptr, nullptr);
    Log(L"x");
    EXPECT_TRUE(m_capture.Messages().empty());
}

TEST_F(LogHook, MayLogItself)
{
    int calls = 0;
    const auto hook = [](const qor_utils::LogMessage&, void* data) {
        ++*static_cast<int*>(data);
        zelLogger::zelLogHelper("hook", 1, 4)(L"from the hook");
    };
    qor_utils::SetLogHook(hook, &calls);
    Log(L"from the caller");
    Log(L"again");
    qor_utils::SetLogHook(nullptr, nullptr);
    EXPECT_EQ(calls, 2);
    EXPECT_EQ(Count(ReadFile(m_folder.File()), "from the hook"), 2u);
}

TEST_F(LogHook, MayThrow)
{
    const auto hook = [](const qor_utils::LogMessage&, void* data) {
        ++*static_cast<int*>(data);
        throw std::runtime_error("hook");
    };
    int calls = 0;
    qor_utils::SetLogHook(hook, &calls);
    Log(L"x");
    Log(L"y");
    qor_utils::SetLogHook(nullptr, nullptr);
    EXPECT_EQ(calls, 2);
}

TEST_F(LogHook, MayTakeItselfAway)
{
    int calls = 0;
    const auto hook = [](const qor_utils::LogMessage&, void* data) {
        ++*static_cast<int*>(data);
        qor_utils::SetLogHook(nullptr, nullptr);
    };
    qor_utils::SetLogHook(hook, &calls);
    Log(L"x");
    Log(L"y");
    EXPECT_EQ(calls, 1);
}

TEST_F(LogHook, IsLeftByOtherThreadsWhenSetHookReturns)
{
    struct Gate
    {
        base::Event entered{CreateEventW(nullptr, TRUE, FALSE, nullptr)};
        base::Event leave{CreateEventW(nullptr, TRUE, FALSE, nullptr)};
        std::atomic<int> calls = 0;
        std::atomic<bool> left = false;
    } gate;
    const auto hook = [](const qor_utils::LogMessage&, void* data) {
        auto& g = *static_cast<Gate*>(data);
        if (g.calls++ > 0) return; // only the first call waits
        SetEvent(g.entered.get());
        WaitForSingleObject(g.leave.get(), 20'000);
        g.left = true;
    };
    qor_utils::SetLogHook(hook, &gate);
    std::jthread logging([] { Log(L"x"); });
    ASSERT_EQ(WaitForSingleObject(gate.entered.get(), 20'000), WAIT_OBJECT_0);
    std::atomic<bool> leftAtReturn = false;
    std::jthread removing([&] {
        qor_utils::SetLogHook(nullptr, nullptr);
        leftAtReturn = gate.left.load();
    });
    Log(L"while it waits, other messages are not held up");
    SetEvent(gate.leave.get());
    removing.join();
    EXPECT_TRUE(leftAtReturn);
}

TEST_F(LogText, IsFormattedAsThePlatformFormatsWideText)
{
    Log(L"%s|%S|%hs|%ls|%c|%d|%5.2f|%08x|%%", L"wide", "narrow", "narrow", L"wide", L'c', -5,
        3.14159, 0xBEEFu);
    EXPECT_EQ(LastText(m_capture), L"wide|narrow|narrow|wide|c|-5| 3.14|0000beef|%");
    Log(L"%I64u", 18446744073709551615ull);
    EXPECT_EQ(LastText(m_capture), L"18446744073709551615");
    Log(L"%s", static_cast<const wchar_t*>(nullptr));
    EXPECT_EQ(LastText(m_capture), L"(null)");
}

TEST_F(LogText, IsEmptyForANullOrEmptyFormat)
{
    Log(nullptr);
    EXPECT_EQ(LastText(m_capture), L"");
    Log(L"");
    EXPECT_EQ(LastText(m_capture), L"");
    EXPECT_EQ(m_capture.Messages().size(), 2u);
}

TEST_F(LogText, IsWholeUpToItsLimitAndCutThere)
{
    for (const std::size_t length :
         {511u, 512u, 513u, 2047u, 2048u, 32768u, 65535u, 65536u, 65537u, 200000u}) {
        const std::wstring text(length, L'x');
        Log(L"%s", text.c_str());
        EXPECT_EQ(LastText(m_capture), text.substr(0, longestText)) << length;
    }
}

TEST_F(LogText, IsBoundedHoweverWideAFieldIs)
{
    Log(L"%99999999d", 1);
    EXPECT_LE(LastText(m_capture).size(), longestText);
    EXPECT_EQ(m_capture.Messages().size(), 1u);
}

TEST_F(LogText, TakesANullSourceForEmpty)
{
    zelLogger::zelLogHelper(nullptr, 0, 1)(L"x");
    ASSERT_EQ(m_capture.Messages().size(), 1u);
    EXPECT_EQ(m_capture.Messages()[0].source, "");
}

// The system sends a text to the debugger by an exception that a handler can see. It is wide or
// narrow, depending on the system's version.
std::wstring* s_debuggerText = nullptr;

LONG CALLBACK SeeDebuggerText(EXCEPTION_POINTERS* pointers)
{
    constexpr DWORD wideText = 0x4001000A;
    constexpr DWORD narrowText = 0x40010006;
    const EXCEPTION_RECORD& record = *pointers->ExceptionRecord;
    if (!s_debuggerText || record.NumberParameters < 2) return EXCEPTION_CONTINUE_SEARCH;
    if (record.ExceptionCode == wideText)
        *s_debuggerText += reinterpret_cast<const wchar_t*>(record.ExceptionInformation[1]);
    if (record.ExceptionCode == narrowText) {
        const std::string text = reinterpret_cast<const char*>(record.ExceptionInformation[1]);
        s_debuggerText->append(text.begin(), text.end());
    }
    return EXCEPTION_CONTINUE_SEARCH;
}

TEST_F(LogOutput, GoesToTheDebuggerToo)
{
    std::wstring text;
    s_debuggerText = &text;
    void* const handler = AddVectoredExceptionHandler(1, &SeeDebuggerText);
    Log(L"probe %d", 7);
    RemoveVectoredExceptionHandler(handler);
    s_debuggerText = nullptr;
    EXPECT_NE(text.find(L"[info] Utils_Statics/Test(123): probe 7"), std::wstring::npos)
        << testing::PrintToString(text);
}

TEST_F(CheckPath, AcceptsWhatAFileSystemCanHold)
{
    const std::wstring long259 = L"C:\\" + std::wstring(256, L'x');
    const std::wstring prefixed = L"\\\\?\\C:\\" + std::wstring(400, L'x');
    for (const wchar_t* path :
         {L"C:\\db\\P1", L"c:relative", L"relative/x", L"\\\\server\\share\\x", L"..", L"a b.c",
          L"\xD83D\xDE00", long259.c_str(), prefixed.c_str()})
        EXPECT_TRUE(zelLogger::checkPath("s", 1, path))
            << testing::PrintToString(std::wstring(path));
    EXPECT_TRUE(m_capture.Messages().empty());
}

TEST_F(CheckPath, WarnsOfWhatItCannot)
{
    const std::wstring long260 = L"C:\\" + std::wstring(257, L'x');
    const wchar_t* const faulty[] = {L"",
                                     L"C:\\a<b",
                                     L"C:\\a>b",
                                     L"C:\\a\"b",
                                     L"C:\\a|b",
                                     L"C:\\a?b",
                                     L"C:\\a*b",
                                     L"a\tb",
                                     L"a\nb",
                                     L"C:\\a:b",
                                     L"\\\\?\\C:\\a*b",
                                     L"file:///C:/a",
                                     long260.c_str()};
    std::size_t warnings = 0;
    for (const wchar_t* path : faulty) {
        EXPECT_FALSE(zelLogger::checkPath("Utils_Statics/Utils_Statics", 1029, path));
        ASSERT_EQ(m_capture.Messages().size(), ++warnings)
            << testing::PrintToString(std::wstring(path));
        EXPECT_EQ(m_capture.Messages().back().source, "Utils_Statics/Utils_Statics");
        EXPECT_EQ(m_capture.Messages().back().line, 1029);
        EXPECT_EQ(m_capture.Messages().back().level, 2);
    }
    EXPECT_FALSE(zelLogger::checkPath("s", 1, nullptr));
    EXPECT_EQ(LastText(m_capture), L"The path '' is empty.");
}

} // namespace
