#include "diagnostics/FaultGuard.h"

#include <algorithm>

namespace utils_statics {

namespace {

// The place to continue at when a part faults. It lies on the stack of the function that runs the
// part.
struct Recovery
{
    base::SavedPlace place;
    void* exceptionList;
    Recovery* outer;
};

// The one thread that runs guarded parts. Thread-local storage would have to be allocated.
constinit volatile DWORD s_thread = 0;
constinit Recovery* volatile s_innermost = nullptr;

bool IsGuarded() noexcept
{
    return s_innermost && s_thread == GetCurrentThreadId();
}

// True for errors of the processor and of the platform. Other exceptions are raised on purpose to
// reach a handler, like those of the C++ compilers.
bool IsFault(DWORD code) noexcept
{
    return code >> 28 == 0xC || code == STATUS_GUARD_PAGE_VIOLATION ||
           code == STATUS_DATATYPE_MISALIGNMENT || code == STATUS_BREAKPOINT;
}

// The faulting thread continues here, as if this function were called where it faulted. The list of
// handlers in force (x86 only) becomes what it was before the part.
[[noreturn]] void Recover() noexcept
{
    Recovery* const recovery = s_innermost;
    ThreadBlock().ExceptionList =
        static_cast<EXCEPTION_REGISTRATION_RECORD*>(recovery->exceptionList);
    BASE_GO_ON_AT(recovery->place);
}

// Makes the thread continue in Recover, with the stack as it is right after a call.
void GoOnAtRecovery(CONTEXT& context) noexcept
{
    constexpr DWORD directionFlag = 0x400;
    context.EFlags &= ~directionFlag;
    context.*stackAddress = context.*stackAddress / 16 * 16 - sizeof(void*);
    context.*codeAddress = reinterpret_cast<std::uintptr_t>(&Recover);
}

// The number of readable bytes from `address` on, within one region of pages; 0 for none.
std::size_t ReadableFrom(std::uintptr_t address) noexcept
{
    constexpr DWORD untouchable = PAGE_GUARD | PAGE_NOACCESS;
    MEMORY_BASIC_INFORMATION region = {};
    if (!VirtualQuery(reinterpret_cast<void*>(address), &region, sizeof region) ||
        region.State != MEM_COMMIT || (region.Protect & untouchable) != 0)
        return 0;
    const auto base = reinterpret_cast<std::uintptr_t>(region.BaseAddress);
    return static_cast<std::size_t>(base + region.RegionSize - address);
}

} // namespace

void FaultGuard::Install() noexcept
{
    AddVectoredExceptionHandler(TRUE, OnException);
}

LONG WINAPI FaultGuard::OnException(EXCEPTION_POINTERS* exception) noexcept
{
    const DWORD code = exception->ExceptionRecord->ExceptionCode;
    if (!IsFault(code) || !IsGuarded()) return EXCEPTION_CONTINUE_SEARCH;
    GoOnAtRecovery(*exception->ContextRecord);
    return EXCEPTION_CONTINUE_EXECUTION;
}

BASE_NEVER_INLINED bool FaultGuard::RunPart(void (*part)(void*), void* context) noexcept
{
    Recovery recovery = {};
    recovery.exceptionList = ThreadBlock().ExceptionList;
    recovery.outer = s_innermost;
    const bool isDone = BASE_SAVE_PLACE(recovery.place) == 0;
    if (isDone) {
        s_thread = GetCurrentThreadId();
        s_innermost = &recovery;
        part(context);
    }
    s_innermost = s_innermost->outer; // the compiler may have lost `recovery`
    return isDone;
}

bool ReadMemory(std::uintptr_t address, void* out, std::size_t size) noexcept
{
    if (address + size < address) return false;
    for (std::size_t checked = 0; checked < size;) {
        const std::size_t readable = ReadableFrom(address + checked);
        if (readable == 0) return false;
        checked += std::min(readable, size - checked);
    }
    SIZE_T copied = 0; // the platform copies: another thread may change the pages meanwhile
    return ReadProcessMemory(GetCurrentProcess(), reinterpret_cast<void*>(address), out, size,
                             &copied) &&
           copied == size;
}

} // namespace utils_statics
