#pragma once

#include <base/Owner.h>

#include <windows.h>

// One owner for each way in which a handle of the platform is released.
namespace base {

struct RegistryKeyTraits
{
    using Handle = HKEY;
    static HKEY Empty() noexcept { return nullptr; }
    static void Release(HKEY key) noexcept { RegCloseKey(key); }
};
using RegistryKey = Owner<RegistryKeyTraits>;

/// Owns a handle whose empty value is null: an event, a pipe, a thread, a process.
struct KernelObjectTraits
{
    using Handle = HANDLE;
    static HANDLE Empty() noexcept { return nullptr; }
    static void Release(HANDLE object) noexcept { CloseHandle(object); }
};
using Event = Owner<KernelObjectTraits>;
using Pipe = Owner<KernelObjectTraits>;
using Thread = Owner<KernelObjectTraits>;
using Process = Owner<KernelObjectTraits>;

/// Owns a result of CreateFileW, which returns INVALID_HANDLE_VALUE when it fails.
struct FileTraits
{
    using Handle = HANDLE;
    static HANDLE Empty() noexcept { return INVALID_HANDLE_VALUE; }
    static void Release(HANDLE file) noexcept { CloseHandle(file); }
};
using File = Owner<FileTraits>;

/// Owns a result of FindFirstFileW, which returns INVALID_HANDLE_VALUE when it finds nothing.
struct FindTraits
{
    using Handle = HANDLE;
    static HANDLE Empty() noexcept { return INVALID_HANDLE_VALUE; }
    static void Release(HANDLE find) noexcept { FindClose(find); }
};
using Find = Owner<FindTraits>;

/// Owns a result of LoadLibraryW.
struct ModuleTraits
{
    using Handle = HMODULE;
    static HMODULE Empty() noexcept { return nullptr; }
    static void Release(HMODULE module) noexcept { FreeLibrary(module); }
};
using Module = Owner<ModuleTraits>;

struct HookTraits
{
    using Handle = HHOOK;
    static HHOOK Empty() noexcept { return nullptr; }
    static void Release(HHOOK hook) noexcept { UnhookWindowsHookEx(hook); }
};
using Hook = Owner<HookTraits>;

} // namespace base
