#include "service/CrashOnPurpose.h"

#include <base/CompilerExtensions.h>
#include <Utils_Statics/GetStr.h>
#include <Utils_Statics/utilsExam.h>

#include <cstdint>
#include <thread>

namespace exam {

namespace {

volatile int s_sink = 0;

// An address near null, where no platform maps anything. It is volatile so that the compiler cannot
// know it.
volatile int* Nowhere()
{
    static volatile std::uintptr_t address = 0x10;
    return reinterpret_cast<volatile int*>(address);
}

void Read()
{
    s_sink = *Nowhere();
}

void Write()
{
    *Nowhere() = 1;
}

void Divide()
{
    volatile int zero = 0;
    s_sink = s_sink / zero;
}

void ExecuteIllegally()
{
    base::ExecuteIllegalInstruction();
}

// Recurses without bound. The addition keeps the compiler from making it a loop.
BASE_NEVER_INLINED int Recurse(int depth)
{
    volatile char frame[512];
    frame[0] = static_cast<char>(depth);
    return s_sink == -1 ? 0 : Recurse(depth + 1) + frame[0];
}

void ExhaustStack()
{
    s_sink = Recurse(0);
}

void ReadOnThread()
{
    std::thread(Read).join();
}

struct CrashKind
{
    const wchar_t* name;
    const char* textKey; // key of its text in the service menu
    void (*crash)();
};

constexpr CrashKind kinds[] = {
    {L"read", "exam.crash.read", Read},
    {L"write", "exam.crash.write", Write},
    {L"divide", "exam.crash.divide", Divide},
    {L"illegal", "exam.crash.illegal", ExecuteIllegally},
    {L"stack", "exam.crash.stack", ExhaustStack},
    {L"thread", "exam.crash.thread", ReadOnThread},
};

} // namespace

std::vector<std::wstring> CrashNames()
{
    std::vector<std::wstring> names;
    for (const CrashKind& kind : kinds)
        names.emplace_back(kind.name);
    return names;
}

void CrashOnPurpose(const std::wstring& name)
{
    for (const CrashKind& kind : kinds)
        if (name == kind.name) kind.crash();
}

void CrashByChoice(
    const std::function<std::wstring(const std::vector<std::wstring>& texts)>& choose)
{
    if (!utilsExam::ServiceMode) return;
    std::vector<std::wstring> texts;
    for (const CrashKind& kind : kinds)
        texts.emplace_back(GetStr(kind.textKey));
    const std::wstring chosen = choose(texts);
    for (std::size_t i = 0; i < texts.size(); ++i)
        if (texts[i] == chosen) kinds[i].crash();
}

} // namespace exam
