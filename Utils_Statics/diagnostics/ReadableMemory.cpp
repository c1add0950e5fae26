#include "diagnostics/ReadableMemory.h"

#include <windows.h>

#include <algorithm>

namespace utils_statics {

namespace {

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
