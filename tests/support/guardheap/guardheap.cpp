// The guard-page heap of the checked build: it stands in for the heap functions that the modules of
// the program import from msvcrt.dll. operator new and delete of libstdc++ call them too, so its
// blocks are guarded with the others. A pointer from anywhere else (the C run-time's own, or from
// before this DLL was there) goes to the real function.
#include "guardheap/guardheap.h"

#include "Failure.h"
#include "Modules.h"
#include "TheRegion.h"

#include <algorithm>
#include <cstring>
#include <cwchar>
#include <iterator>

namespace guardheap {

constinit GuardedRegion theRegion;

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

constinit RealHeap real{};

void* __cdecl guardedMalloc(std::size_t size)
{
    void* const block = theRegion.allocate(size, false);
    return block ? block : real.malloc(size);
}

void* __cdecl guardedCalloc(std::size_t count, std::size_t size)
{
    std::size_t bytes = 0;
    void* block = nullptr;
    if (!__builtin_mul_overflow(count, size, &bytes)) block = theRegion.allocate(bytes, true);
    return block ? block : real.calloc(count, size);
}

void __cdecl guardedFree(void* block)
{
    if (theRegion.contains(block))
        theRegion.release(block);
    else
        real.free(block);
}

// A guarded block always moves: whoever keeps a pointer to the old place is found out.
void* __cdecl guardedRealloc(void* block, std::size_t size)
{
    if (!block) return guardedMalloc(size);
    if (!theRegion.contains(block)) return real.realloc(block, size);
    const std::size_t before = theRegion.sizeOf(block);
    void* const moved = size == 0 ? nullptr : guardedMalloc(size);
    if (size != 0 && !moved) return nullptr;
    if (moved) std::memcpy(moved, block, std::min(before, size));
    theRegion.release(block);
    return moved;
}

void* __cdecl guardedExpand(void* block, std::size_t size)
{
    return theRegion.contains(block) ? nullptr : real.expand(block, size);
}

std::size_t __cdecl guardedMsize(void* block)
{
    return theRegion.contains(block) ? theRegion.sizeOf(block) : real.msize(block);
}

template <class Char>
Char* duplicate(const Char* text, std::size_t length)
{
    const std::size_t bytes = (length + 1) * sizeof(Char);
    void* const copy = guardedMalloc(bytes);
    return static_cast<Char*>(copy ? std::memcpy(copy, text, bytes) : nullptr);
}

char* __cdecl guardedStrdup(const char* text)
{
    return text ? duplicate(text, std::strlen(text)) : nullptr;
}

wchar_t* __cdecl guardedWcsdup(const wchar_t* text)
{
    return text ? duplicate(text, std::wcslen(text)) : nullptr;
}

template <class Function>
void* plain(Function* function)
{
    return reinterpret_cast<void*>(function);
}

const Redirection redirections[] = {
    {"malloc", plain(guardedMalloc)},   {"calloc", plain(guardedCalloc)},
    {"realloc", plain(guardedRealloc)}, {"free", plain(guardedFree)},
    {"_expand", plain(guardedExpand)},  {"_msize", plain(guardedMsize)},
    {"_strdup", plain(guardedStrdup)},  {"_wcsdup", plain(guardedWcsdup)},
};
constexpr int redirectionCount = static_cast<int>(std::size(redirections));

template <class Function>
bool find(Function*& function, HMODULE module, const char* name)
{
    function = reinterpret_cast<Function*>(reinterpret_cast<void*>(GetProcAddress(module, name)));
    return function != nullptr;
}

bool findRealHeap()
{
    HMODULE const runtime = GetModuleHandleW(L"msvcrt.dll");
    return runtime && find(real.malloc, runtime, "malloc") &&
           find(real.calloc, runtime, "calloc") && find(real.realloc, runtime, "realloc") &&
           find(real.expand, runtime, "_expand") && find(real.free, runtime, "free") &&
           find(real.msize, runtime, "_msize");
}

// What the loader hands to its observers; documented as LDR_DLL_NOTIFICATION_DATA.
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

void CALLBACK onLoader(ULONG reason, const LoaderEvent* event, void*)
{
    constexpr ULONG loaded = 1;
    if (reason == loaded)
        redirectImports(static_cast<HMODULE>(event->base), redirections, redirectionCount);
}

// Modules that are loaded later are redirected before their first code runs.
bool observeLoader()
{
    LONG(NTAPI * observe)(ULONG, LoaderObserver, void*, void**) = nullptr;
    void* cookie = nullptr;
    return find(observe, GetModuleHandleW(L"ntdll.dll"), "LdrRegisterDllNotification") &&
           observe(0, onLoader, nullptr, &cookie) == 0;
}

bool start()
{
    if (!findRealHeap() || !theRegion.reserve() || !observeLoader()) return false;
    stopAtFaults();
    redirectAllImports(redirections, redirectionCount);
    return true;
}

} // namespace
} // namespace guardheap

bool guardheap_is_guarded(const void* address)
{
    using namespace guardheap;
    return theRegion.contains(address) &&
           theRegion.blockAt(address).state == GuardedRegion::State::Used;
}

unsigned guardheap_block_limit()
{
    return guardheap::GuardedRegion::liveBlocks;
}

// Without its guard pages a checked program does not start: a run would prove nothing.
extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD reason, LPVOID)
{
    return reason != DLL_PROCESS_ATTACH || guardheap::start();
}
