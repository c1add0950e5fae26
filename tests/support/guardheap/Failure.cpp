#include "Failure.h"

#include "GuardedRegion.h"

#include <cstdint>
#include <cwchar>

namespace guardheap {

namespace {

constexpr int shownFrames = 16;

// A text that grows in place, because code that reports about the heap must not use it.
class Line
{
public:
    Line& operator<<(const char* text)
    {
        while (*text && m_length < sizeof m_text)
            m_text[m_length++] = *text++;
        return *this;
    }
    Line& operator<<(const wchar_t* text)
    {
        for (; *text && m_length < sizeof m_text; ++text)
            m_text[m_length++] = *text < 128 ? static_cast<char>(*text) : '?';
        return *this;
    }
    Line& operator<<(std::size_t number) { return Digits(number, 10); }
    Line& operator<<(const void* pointer)
    {
        *this << "0x";
        return Digits(reinterpret_cast<std::uintptr_t>(pointer), 16);
    }
    void Print()
    {
        *this << "\n";
        DWORD written = 0;
        WriteFile(GetStdHandle(STD_ERROR_HANDLE), m_text, m_length, &written, nullptr);
        m_length = 0;
    }

private:
    Line& Digits(std::size_t number, unsigned base)
    {
        char reversed[24];
        int count = 0;
        do {
            reversed[count++] = "0123456789abcdef"[number % base];
            number /= base;
        } while (number != 0);
        while (count > 0 && m_length < sizeof m_text)
            m_text[m_length++] = reversed[--count];
        return *this;
    }

    char m_text[512];
    DWORD m_length = 0;
};

HMODULE ModuleOf(const void* code)
{
    HMODULE module = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS |
                           GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       static_cast<const wchar_t*>(code), &module);
    return module;
}

// Prints "module+offset". addr2line takes the offset with the module's preferred base added.
void PrintPlace(const char* word, const void* code)
{
    Line line;
    line << "guardheap:   " << word << " ";
    HMODULE module = ModuleOf(code);
    wchar_t path[MAX_PATH] = {};
    if (!module || GetModuleFileNameW(module, path, MAX_PATH) == 0) {
        (line << code).Print();
        return;
    }
    const wchar_t* name = std::wcsrchr(path, L'\\');
    const auto offset =
        reinterpret_cast<std::uintptr_t>(code) - reinterpret_cast<std::uintptr_t>(module);
    (line << (name ? name + 1 : path) << "+" << reinterpret_cast<const void*>(offset)).Print();
}

// Follows the frame pointers, which the checked build keeps. The chain ends early in a module that
// keeps none.
void PrintCallers(const void* frame)
{
    MEMORY_BASIC_INFORMATION stack{};
    if (VirtualQuery(frame, &stack, sizeof stack) == 0 || stack.State != MEM_COMMIT) return;
    auto at = reinterpret_cast<std::uintptr_t>(frame);
    const auto low = at;
    const auto high =
        reinterpret_cast<std::uintptr_t>(stack.BaseAddress) + stack.RegionSize - 2 * sizeof(void*);
    for (int shown = 0; shown < shownFrames && at >= low && at <= high && at % sizeof(void*) == 0;
         ++shown) {
        const auto* const link = reinterpret_cast<void* const*>(at);
        if (!ModuleOf(link[1])) return;
        PrintPlace("called from", link[1]);
        const auto outer = reinterpret_cast<std::uintptr_t>(link[0]);
        if (outer <= at) return;
        at = outer;
    }
}

[[noreturn]] void End(DWORD code)
{
    if (IsDebuggerPresent()) DebugBreak();
    TerminateProcess(GetCurrentProcess(), code);
    __builtin_unreachable();
}

void PrintAccess(const EXCEPTION_RECORD& record)
{
    const auto* const address = reinterpret_cast<const std::byte*>(record.ExceptionInformation[1]);
    const GuardedRegion::Block block = s_region.BlockAt(address);
    Line line;
    line << "guardheap: " << (record.ExceptionInformation[0] == 1 ? "write to " : "read of ")
         << static_cast<const void*>(address) << ", ";
    if (block.state == GuardedRegion::State::free)
        line << "where no block is any more";
    else {
        const bool behind = address >= block.start + block.size;
        line << (behind ? static_cast<std::size_t>(address - block.start) - block.size
                        : static_cast<std::size_t>(address - block.start))
             << (behind ? " bytes behind the end of a " : " bytes from the beginning of a ")
             << (block.state == GuardedRegion::State::quarantined ? "freed " : "") << "block of "
             << block.size << " bytes";
    }
    line.Print();
}

// The instruction in which the compiler's checks of undefined behaviour end. A program that wants
// to cause an illegal instruction itself uses another one.
bool IsCompilersTrap(const void* address)
{
    const auto* const bytes = static_cast<const unsigned char*>(address);
    return bytes[0] == 0x0F && bytes[1] == 0x0B;
}

LONG CALLBACK OnException(EXCEPTION_POINTERS* exception)
{
    const EXCEPTION_RECORD& record = *exception->ExceptionRecord;
    const bool guarded =
        record.ExceptionCode == EXCEPTION_ACCESS_VIOLATION && record.NumberParameters >= 2 &&
        s_region.Contains(reinterpret_cast<const void*>(record.ExceptionInformation[1]));
    const bool trap = record.ExceptionCode == static_cast<DWORD>(EXCEPTION_ILLEGAL_INSTRUCTION) &&
                      IsOfProgram(ModuleOf(record.ExceptionAddress)) &&
                      IsCompilersTrap(record.ExceptionAddress);
    if (!guarded && !trap) return EXCEPTION_CONTINUE_SEARCH;

    if (guarded)
        PrintAccess(record);
    else {
        Line line;
        (line << "guardheap: undefined behaviour").Print();
    }
    PrintPlace("at", record.ExceptionAddress);
#ifdef _X86_
    PrintCallers(reinterpret_cast<const void*>(exception->ContextRecord->Ebp));
#endif
    End(record.ExceptionCode);
}

} // namespace

bool IsOfProgram(HMODULE module)
{
    static const char ownAddress = 0;
    if (!module || module == ModuleOf(&ownAddress)) return false;
    wchar_t windows[MAX_PATH] = {};
    wchar_t path[MAX_PATH] = {};
    const UINT length = GetWindowsDirectoryW(windows, MAX_PATH);
    if (length == 0 || length >= MAX_PATH || GetModuleFileNameW(module, path, MAX_PATH) == 0)
        return false;
    return _wcsnicmp(path, windows, length) != 0 || path[length] != L'\\';
}

void StopForBlock(const char* problem, const void* pointer, const void* block, std::size_t size)
{
    Line line;
    line << "guardheap: " << pointer << " " << problem;
    if (block) line << " (block " << block << " of " << size << " bytes)";
    line.Print();
    PrintCallers(__builtin_frame_address(0));
    End(heapCorruption);
}

void StopAtFaults()
{
    AddVectoredExceptionHandler(1, OnException);
}

} // namespace guardheap
