// Children make one mistake each, and must end with the status of its kind; a correct child ends
// with 0.
#include "Damage.h"
#include "test_support/ChildTest.h"
#include "test_support/Files.h"
#include "test_support/TemporaryFolder.h"

#include <base/Handles.h>
#include <gtest/gtest.h>
#include <guardheap/GuardHeap.h>

#include <atlstr.h>

#include <climits>
#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <deque>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <thread>
#include <vector>

namespace {

constexpr DWORD accessViolation = 0xC0000005u;
constexpr DWORD illegalInstruction = 0xC000001Du;
constexpr DWORD heapCorruption = 0xC0000374u;
constexpr DWORD oneMinute = 60000;
constexpr DWORD anyFailure = ~0u;
constexpr int noSuchDeed = 77;
constexpr const wchar_t* saidVariable = L"CHECKED_BUILD_SAID";
constexpr const wchar_t* deedVariable = L"CHECKED_BUILD_DEED";

// A mistake that a child commits, and the status that it must end with.
struct Deed
{
    const char* name;
    DWORD status;
    void (*act)();
};

void DoNothingWrong()
{
    std::map<int, std::wstring> texts;
    for (int i = 0; i < 1000; ++i)
        texts[i] = std::wstring(static_cast<std::size_t>(i), L'x');
    std::thread([&texts] { texts.clear(); }).join();
    CString text(L"abc");
    text += L"def";
    EXPECT_EQ(text.GetLength(), 6);
}

void WriteBehindStandardString()
{
    std::wstring text(31, L'x'); // 64 bytes with its terminator
    damage::Write(text.data(), 64);
}

void WriteBehindFrameworkString()
{
    CString text;
    wchar_t* const buffer = text.GetBuffer(100);
    // The block may be larger than the request, but never by a whole page.
    for (std::ptrdiff_t i = 0; i < 4096; ++i)
        damage::Write(buffer, 200 + i);
}

void WriteIntoSlackBehind()
{
    void* const block = std::malloc(61);
    damage::Write(block, 61);
    damage::FreeMemory(block);
}

void WriteBeforeBlock()
{
    char* const block = new char[64];
    damage::Write(block, -1);
    delete[] block;
}

void WriteBeforeReallocatedBlock()
{
    void* const block = std::malloc(64);
    damage::Write(block, -1);
    damage::Read(std::realloc(block, 128), 0);
}

void WriteAfterDelete()
{
    int* volatile block = new int(1);
    delete block;
    damage::Write(block, 0);
}

// Reads a block that was freed before so many others.
template <int others>
void ReadAfterFree()
{
    void* volatile block = std::malloc(64);
    damage::FreeMemory(block);
    for (int i = 0; i < others; ++i)
        damage::FreeMemory(std::malloc(64));
    damage::Read(block, 0);
}

void ReadAtOldPlaceAfterRealloc()
{
    void* volatile block = std::malloc(64);
    damage::Read(std::realloc(block, 56), 0);
    damage::Read(block, 0);
}

void FreeTwice()
{
    void* volatile block = std::malloc(64);
    damage::FreeMemory(block);
    damage::FreeMemory(block);
}

void FreeInAnotherThreadAgain()
{
    void* volatile block = std::malloc(64);
    std::thread([block] { damage::FreeMemory(block); }).join();
    damage::FreeMemory(block);
}

void IndexOutsideVector()
{
    const std::vector<int> numbers(3);
    volatile std::size_t index = 3;
    EXPECT_EQ(numbers[index], 0);
}

const Deed deeds[] = {
    {"None", 0, DoNothingWrong},
    // A read or write one byte behind a block.
    {"WriteBehindMalloc", accessViolation, [] { damage::Write(std::malloc(64), 64); }},
    {"WriteBehindCalloc", accessViolation, [] { damage::Write(std::calloc(8, 8), 64); }},
    {"ReadBehindNewArray", accessViolation, [] { damage::Read(new char[800], 800); }},
    {"WriteBehindReallocated", accessViolation,
     [] { damage::Write(std::realloc(std::malloc(8), 4096), 4096); }},
    {"WriteBehindLargeBlock", accessViolation,
     [] { damage::Write(std::malloc(1 << 20), 1 << 20); }},
    // An overrun of what another module allocated.
    {"WriteBehindStandardString", accessViolation, WriteBehindStandardString},
    {"WriteBehindFrameworkString", accessViolation, WriteBehindFrameworkString},
    {"WriteBehindDuplicate", accessViolation, [] { damage::Write(_wcsdup(L"abc"), 8); }},
    // A damaged slack is found when the block is freed.
    {"WriteIntoSlackBehind", heapCorruption, WriteIntoSlackBehind},
    {"WriteBeforeBlock", heapCorruption, WriteBeforeBlock},
    {"WriteBeforeReallocatedBlock", heapCorruption, WriteBeforeReallocatedBlock},
    // Use after free.
    {"ReadAfterFree", accessViolation, ReadAfterFree<0>},
    {"ReadAfterFreeAndManyOthers", accessViolation, ReadAfterFree<8000>},
    {"WriteAfterDelete", accessViolation, WriteAfterDelete},
    {"ReadAtOldPlaceAfterRealloc", accessViolation, ReadAtOldPlaceAfterRealloc},
    // A wrong free.
    {"DoubleFree", heapCorruption, FreeTwice},
    {"FreeInsideBlock", heapCorruption,
     [] { damage::FreeMemory(static_cast<char*>(std::malloc(64)) + 8); }},
    {"FreeBehindBlock", heapCorruption,
     [] { damage::FreeMemory(static_cast<char*>(std::malloc(64)) + 64); }},
    {"FreeInAnotherThreadAgain", heapCorruption, FreeInAnotherThreadAgain},
    // Undefined behaviour.
    {"SignedOverflow", illegalInstruction, [] { EXPECT_NE(damage::Add(INT_MAX, 1), 0); }},
    {"ShiftByTooMuch", illegalInstruction, [] { EXPECT_NE(damage::ShiftLeft(1, 40), 0); }},
    {"DivisionByZero", illegalInstruction, [] { EXPECT_NE(damage::Divide(1, 0), 0); }},
    {"IndexOutsideVector", anyFailure, IndexOutsideVector},
};

// Runs in a child; no mistake returns from its last line.
TEST(Child, DISABLED_DoesItsDeed)
{
    const std::wstring file = test_support::EnvironmentVariable(saidVariable);
    base::File said;
    if (!file.empty()) {
        said.reset(CreateFileW(file.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr));
        ASSERT_TRUE(said && SetStdHandle(STD_ERROR_HANDLE, said.get()));
    }
    const std::wstring wanted = test_support::EnvironmentVariable(deedVariable);
    for (const Deed& deed : deeds)
        if (wanted == std::wstring(deed.name, deed.name + std::strlen(deed.name)))
            return deed.act();
    std::exit(noSuchDeed);
}

DWORD StatusOf(const char* deed)
{
    SetEnvironmentVariableW(deedVariable, std::wstring(deed, deed + std::strlen(deed)).c_str());
    test_support::ChildTest child("Child.DISABLED_DoesItsDeed");
    return child.Wait(oneMinute);
}

class CheckedBuild : public testing::TestWithParam<Deed>
{
};

TEST_P(CheckedBuild, EndsAChildWithTheStatusOfItsDeed)
{
    const DWORD status = StatusOf(GetParam().name);
    if (GetParam().status != anyFailure)
        EXPECT_EQ(status, GetParam().status);
    else
        EXPECT_TRUE(status != 0 && status != noSuchDeed && status != STILL_ACTIVE) << status;
}

INSTANTIATE_TEST_SUITE_P(Each, CheckedBuild, testing::ValuesIn(deeds),
                         [](const auto& row) { return std::string(row.param.name); });

} // namespace

TEST(GuardHeap, SaysWhatIsWrongOnStandardError)
{
    const test_support::TemporaryFolder folder;
    const std::wstring file = folder / L"said.txt";
    SetEnvironmentVariableW(saidVariable, file.c_str());
    EXPECT_EQ(StatusOf("DoubleFree"), heapCorruption);
    SetEnvironmentVariableW(saidVariable, nullptr);
    const std::string said = test_support::ReadFile(file);
    EXPECT_NE(said.find("is freed a second time"), std::string::npos) << said;
    EXPECT_NE(said.find("of 64 bytes"), std::string::npos) << said;
    EXPECT_NE(said.find("called from checked_build_test.exe+0x"), std::string::npos) << said;
}

TEST(GuardHeap, GuardsTheBlocksOfAllModules)
{
    const std::unique_ptr<char[]> own(new char[100]);
    const std::wstring standard(100, L'x');
    const CString framework(L'x', 100);
    EXPECT_TRUE(GuardheapIsGuarded(own.get()));
    EXPECT_TRUE(GuardheapIsGuarded(standard.data()));
    EXPECT_TRUE(GuardheapIsGuarded(framework.GetString()));
}

TEST(GuardHeap, GuardsTheBlocksOfModulesThatAreLoadedLater)
{
    const base::Module module(LoadLibraryW(L"checked_late_module.dll"));
    ASSERT_TRUE(module);
    const auto function = [&module](const char* name) {
        return reinterpret_cast<void*>(GetProcAddress(module.get(), name));
    };
    const auto allocate = reinterpret_cast<char* (*)()>(function("AllocateInLateModule"));
    const auto release = reinterpret_cast<void (*)(char*)>(function("FreeInLateModule"));
    ASSERT_TRUE(allocate && release);
    char* const block = allocate();
    EXPECT_TRUE(GuardheapIsGuarded(block));
    release(block);
    EXPECT_FALSE(GuardheapIsGuarded(block));
}

TEST(GuardHeap, KeepsTheAlignmentOfMalloc)
{
    for (std::size_t size = 0; size < 5000; ++size) {
        void* const block = std::malloc(size);
        ASSERT_NE(block, nullptr);
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(block) % (2 * sizeof(void*)), 0u) << size;
        EXPECT_EQ(_msize(block), size);
        std::free(block);
    }
}

TEST(GuardHeap, FreesWhatTheRuntimeAllocatedItself)
{
    wchar_t* const path = _wfullpath(nullptr, L".", 0);
    ASSERT_NE(path, nullptr);
    EXPECT_FALSE(GuardheapIsGuarded(path));
    EXPECT_GT(_msize(path), 0u);
    std::free(path);
}

TEST(GuardHeap, KeepsTheContractOfTheRunTime)
{
    std::free(nullptr);
    auto* const zeros = static_cast<unsigned char*>(std::calloc(3, 5));
    ASSERT_NE(zeros, nullptr);
    for (int i = 0; i < 15; ++i)
        EXPECT_EQ(zeros[i], 0);
    std::memcpy(zeros, "0123456789abcd", 15);
    auto* const grown = static_cast<char*>(std::realloc(zeros, 5000));
    ASSERT_NE(grown, nullptr);
    EXPECT_STREQ(grown, "0123456789abcd");
    auto* const shrunk = static_cast<char*>(std::realloc(grown, 4));
    ASSERT_NE(shrunk, nullptr);
    EXPECT_EQ(std::memcmp(shrunk, "0123", 4), 0);
    EXPECT_EQ(std::realloc(shrunk, 0), nullptr);
    std::free(std::realloc(nullptr, 10));
    volatile std::size_t tooMany = SIZE_MAX / 2;
    EXPECT_EQ(std::calloc(tooMany, 3), nullptr);
}

TEST(GuardHeap, GoesOnWithoutGuardsBeyondItsLimit)
{
    const unsigned many = GuardheapBlockLimit() + 1000;
    std::vector<std::unique_ptr<unsigned>> blocks;
    for (unsigned i = 0; i < many; ++i)
        blocks.push_back(std::make_unique<unsigned>(i));
    EXPECT_FALSE(GuardheapIsGuarded(blocks.back().get()));
    for (unsigned i = 0; i < many; ++i)
        ASSERT_EQ(*blocks[i], i);
    blocks.clear();
    EXPECT_TRUE(GuardheapIsGuarded(std::make_unique<unsigned>(1u).get()));
}

TEST(GuardHeap, HoldsUnderRandomUseByManyThreads)
{
    const auto work = [](unsigned seed) {
        std::mt19937 random(seed);
        std::deque<std::vector<unsigned char>> kept;
        for (int step = 0; step < 5000; ++step) {
            const unsigned size = random() % (step % 50 == 0 ? 100000u : 300u);
            kept.emplace_back(size, static_cast<unsigned char>(size));
            if (kept.size() < 100) continue;
            for (const unsigned char value : kept.front())
                ASSERT_EQ(value, static_cast<unsigned char>(kept.front().size()));
            kept.pop_front();
        }
    };
    std::vector<std::thread> threads;
    for (unsigned seed = 1; seed <= 4; ++seed)
        threads.emplace_back(work, seed);
    for (std::thread& thread : threads)
        thread.join();
}
