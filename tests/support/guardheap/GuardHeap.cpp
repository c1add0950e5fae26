// The guard-page heap of the checked build. It replaces the heap functions that the modules of the
// program import from msvcrt.dll. operator new and delete of libstdc++ call these functions too, so
// their blocks are guarded as well. A pointer from anywhere else (the C run-time's own, or one from
// before this DLL was loaded) goes to the real function.
#include "guardheap/GuardHeap.h"

#include "Failure.h"
#include "GuardedRegion.h"

#include <test_support/Imports.h>

#include <psapi.h>

#include <algorithm>
#include <cstring>
#include <cwchar>

namespace guardheap {

constinit GuardedRegion s_region;

namespace {

struct RealHeap
{
    void*(__cdecl* malloc)(std::size_t);
    void*(__cdecl* calloc)(std::size_t, std::size_t);
    void*(__cdecl* realloc)(void*, std::size_t);
    void*(__cdecl* expand)(void*, std::size_t);
    void(__cdecl* free)(void*);
    std::size_t(__cdecl* msize)(void*);
};

constinit RealHeap s_real{};

void* __cdecl GuardedMalloc(std::size_t size)
{
    void* const block = s_region.Allocate(size, false);
    return block ? block : s_real.malloc(size);
}

void* __cdecl GuardedCalloc(std::size_t count, std::size_t size)
{
    std::size_t bytes = 0;
    void* block = nullptr;
    if (!__builtin_mul_overflow(count, size, &bytes)) block = s_region.Allocate(bytes, true);
    return block ? block : s_real.calloc(count, size);
}

void __cdecl GuardedFree(void* block)
{
    if (s_region.Contains(block))
        s_region.Release(block);
    else
        s_real.free(block);
}

// A guarded block always moves, so that a pointer kept to the old place is found out.
void* __cdecl GuardedRealloc(void* block, std::size_t size)
{
    if (!block) return GuardedMalloc(size);
    if (!s_region.Contains(block)) return s_real.realloc(block, size);
    const std::size_t before = s_region.SizeOf(block);
    void* const moved = size == 0 ? nullptr : GuardedMalloc(size);
    if (size != 0 && !moved) return nullptr;
    if (moved) std::memcpy(moved, block, std::min(before, size));
    s_region.Release(block);
    return moved;
}

void* __cdecl GuardedExpand(void* block, std::size_t size)
{
    return s_region.Contains(block) ? nullptr : s_real.expand(block, size);
}

std::size_t __cdecl GuardedMsize(void* block)
{
    return s_region.Contains(block) ? s_region.SizeOf(block) : s_real.msize(block);
}

template <class Char>
Char* Duplicate(const Char* text, std::size_t length)
{
    const std::size_t bytes = (length + 1) * sizeof(Char);
    void* const copy = GuardedMalloc(bytes);
    return static_cast<Char*>(copy ? std::memcpy(copy, text, bytes) : nullptr);
}

char* __cdecl GuardedStrdup(const char* text)
{
    return text ? Duplicate(text, std::strlen(text)) : nullptr;
}

wchar_t* __cdecl GuardedWcsdup(const wchar_t* text)
{
    return text ? Duplicate(text, std::wcslen(text)) : nullptr;
}

template <class Function>
void* Plain(Function* function)
{
    return reinterpret_cast<void*>(function);
}

// The imports from msvcrt.dll that go to functions of this DLL.
struct Redirection
{
    const char* name;
    void* function;
};
const Redirection redirections[] = {
    {"malloc", Plain(GuardedMalloc)},   {"calloc", Plain(GuardedCalloc)},
    {"realloc", Plain(GuardedRealloc)}, {"free", Plain(GuardedFree)},
    {"_expand", Plain(GuardedExpand)},  {"_msize", Plain(GuardedMsize)},
    {"_strdup", Plain(GuardedStrdup)},  {"_wcsdup", Plain(GuardedWcsdup)},
};

// Redirects the imports of a module of the program; other modules are left alone. May be repeated.
void RedirectImports(HMODULE module)
{
    if (!IsOfProgram(module)) return;
    test_support::AnyImport(module, [](const char* library, const char* name, void** slot) {
        if (_stricmp(library, "msvcrt.dll") != 0) return false;
        for (const Redirection& redirection : redirections)
            if (*slot != redirection.function && std::strcmp(name, redirection.name) == 0)
                test_support::SetImport(slot, redirection.function);
        return false;
    });
}

void RedirectAllImports()
{
    constexpr int mostModules = 512;
    static HMODULE modules[mostModules];
    DWORD bytes = 0;
    if (!K32EnumProcessModules(GetCurrentProcess(), modules, sizeof modules, &bytes)) return;
    const DWORD loaded = bytes / sizeof(HMODULE);
    for (DWORD i = 0; i < loaded && i < mostModules; ++i)
        RedirectImports(modules[i]);
}

template <class Function>
bool Find(Function*& function, HMODULE module, const char* name)
{
    function = reinterpret_cast<Function*>(reinterpret_cast<void*>(GetProcAddress(module, name)));
    return function != nullptr;
}

bool FindRealHeap()
{
    HMODULE const runtime = GetModuleHandleW(L"msvcrt.dll");
    return runtime && Find(s_real.malloc, runtime, "malloc") &&
           Find(s_real.calloc, runtime, "calloc") && Find(s_real.realloc, runtime, "realloc") &&
           Find(s_real.expand, runtime, "_expand") && Find(s_real.free, runtime, "free") &&
           Find(s_real.msize, runtime, "_msize");
}

// The data that the loader hands to its observers; documented as LDR_DLL_NOTIFICATION_DATA.
struct LoaderText
{
    USHORT length;
    USHORT capacity;
    wchar_t* text;
};
struct LoaderEvent
{
    ULONG flags;
    const LoaderText* path;
    const LoaderText* name;
    void* base;
    ULONG imageSize;
};
using LoaderObserver = void(CALLBACK*)(ULONG reason, const LoaderEvent*, void* context);

void CALLBACK OnLoader(ULONG reason, const LoaderEvent* event, void*)
{
    constexpr ULONG loaded = 1;
    if (reason == loaded) RedirectImports(static_cast<HMODULE>(event->base));
}

// Modules that are loaded later are redirected before their first code runs.
bool ObserveLoader()
{
    LONG(NTAPI * observe)(ULONG, LoaderObserver, void*, void**) = nullptr;
    void* cookie = nullptr;
    return Find(observe, GetModuleHandleW(L"ntdll.dll"), "LdrRegisterDllNotification") &&
           observe(0, OnLoader, nullptr, &cookie) == 0;
}

bool Start()
{
    if (!FindRealHeap() || !s_region.Reserve() || !ObserveLoader()) return false;
    StopAtFaults();
    RedirectAllImports();
    return true;
}

} // namespace
} // namespace guardheap

bool GuardheapIsGuarded(const void* address)
{
    using namespace guardheap;
    return s_region.Contains(address) &&
           s_region.BlockAt(address).state == GuardedRegion::State::used;
}

unsigned GuardheapBlockLimit()
{
    return guardheap::GuardedRegion::liveBlocks;
}

// A checked program does not start without its guard pages, because a run would prove nothing.
extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD reason, LPVOID)
{
    return reason != DLL_PROCESS_ATTACH || guardheap::Start();
}
