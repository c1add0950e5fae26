// Each exception that has a name in the report, from children that really crash by it.
#include "CrashFixture.h"

#include <cstring>

namespace crash_test {
namespace {

struct KnownCode
{
    const char* kind;
    DWORD code;
    const wchar_t* text;
};

// Faults of the processor are really caused; the other exceptions are raised.
constexpr KnownCode codes[] = {
    {"0x40010005", 0x40010005, L"a Control-C"},
    {"0x40010008", 0x40010008, L"a Control-Break"},
    {"0x80000002", 0x80000002, L"a Datatype Misalignment"},
    {"breakpoint", 0x80000003, L"a Breakpoint"},
    {"read", 0xC0000005, L"an Access Violation"},
    {"write", 0xC0000005, L"an Access Violation"},
    {"execute", 0xC0000005, L"an Access Violation"},
    {"0xC0000006", 0xC0000006, L"an In Page Error"},
    {"0xC0000017", 0xC0000017, L"a No Memory"},
    {"illegal", 0xC000001D, L"an Illegal Instruction"},
    {"0xC0000025", 0xC0000025, L"a Noncontinuable Exception"},
    {"0xC0000026", 0xC0000026, L"an Invalid Disposition"},
#ifdef _WIN64 // these processors have no such instructions
    {"0xC000008C", 0xC000008C, L"a Array Bounds Exceeded"},
    {"0xC0000095", 0xC0000095, L"an Integer Overflow"},
#else
    {"bounds", 0xC000008C, L"a Array Bounds Exceeded"},
    {"overflow", 0xC0000095, L"an Integer Overflow"},
#endif
    {"float-denormal", 0xC000008D, L"a Float Denormal Operand"},
    {"float-divide", 0xC000008E, L"a Float Divide by Zero"},
    {"float-inexact", 0xC000008F, L"a Float Inexact Result"},
    {"float-invalid", 0xC0000090, L"a Float Invalid Operation"},
    {"float-overflow", 0xC0000091, L"a Float Overflow"},
    {"float-stack", 0xC0000092, L"a Float Stack Check"},
    {"float-underflow", 0xC0000093, L"a Float Underflow"},
    {"divide", 0xC0000094, L"an Integer Divide by Zero"},
    {"privileged", 0xC0000096, L"a Privileged Instruction"},
    {"stack-overflow", 0xC00000FD, L"a Stack Overflow"},
    {"0xC0000142", 0xC0000142, L"a DLL Initialization Failed"},
    {"0xE06D7363", 0xE06D7363, L"a Microsoft C++ Exception"},
    {"guard-page", 0x80000001, L"an Unknown exception type"},
    {"0xC0000374", 0xC0000374, L"an Unknown exception type"},
};

// Crashes on a thread without a handler of its own. Around main, the compiler's run-time library
// handles some of the exceptions itself in a 64-bit program.
constexpr wchar_t onAThread[] = L"--thread 1048576";

class CrashCode : public CrashTest, public testing::WithParamInterface<KnownCode>
{
};

TEST_P(CrashCode, IsReportedByItsName)
{
    const KnownCode& known = GetParam();
    const std::wstring kind(known.kind, known.kind + std::strlen(known.kind));
    if (kind == L"stack-overflow" && !IsFiltered(kind))
        GTEST_SKIP() << "the platform leaves the filter no stack, whatever was reserved";
    ASSERT_TRUE(Crash(kind, onAThread));
    const LONG count = TheFacts().count;
    ASSERT_GE(count, 1);
    const ExceptionFacts facts = TheFacts().exceptions[0];
    if (facts.code != known.code)
        GTEST_SKIP() << "the platform raises " << std::hex << facts.code << " for it";
    EXPECT_TRUE(IsReporterStarted());
    const Report report = TheReport();
    EXPECT_EQ(report.exception, known.text);
    ExpectTrue(report, facts);
    EXPECT_EQ(FilesOf(Log(L""), L".dmp").size(), 1u);
    EXPECT_EQ(m_exitCode, known.code) << "the process still ends by its exception";
}

// A program may raise a code itself, even where the platform raises another one for the fault.
TEST_P(CrashCode, IsReportedWhenRaised)
{
    const KnownCode& known = GetParam();
    wchar_t kind[16];
    wsprintfW(kind, L"0x%08X", known.code);
    if (std::wstring(kind) == std::wstring(known.kind, known.kind + std::strlen(known.kind)))
        return; // the test before raises it
    ASSERT_TRUE(Crash(kind, onAThread));
    const Report report = TheReport();
    EXPECT_EQ(report.exception, known.text);
    ExpectTrue(report, TheFacts().exceptions[0]);
}

std::string NameOfCode(const testing::TestParamInfo<KnownCode>& info)
{
    std::string name = info.param.kind;
    std::erase(name, '-');
    return name;
}
INSTANTIATE_TEST_SUITE_P(All, CrashCode, testing::ValuesIn(codes), NameOfCode);

} // namespace
} // namespace crash_test
