#include "Modules.h"

#include <psapi.h>

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace guardheap {

namespace {

constexpr int mostModules = 512;

template <class T>
T* InImage(HMODULE module, std::uintptr_t offset)
{
    return reinterpret_cast<T*>(reinterpret_cast<std::byte*>(module) + offset);
}

const IMAGE_IMPORT_DESCRIPTOR* ImportsOf(HMODULE module)
{
    const auto* const dos = InImage<const IMAGE_DOS_HEADER>(module, 0);
    if (dos->e_magic != IMAGE_DOS_SIGNATURE) return nullptr;
    const auto* const headers =
        InImage<const IMAGE_NT_HEADERS>(module, static_cast<std::uintptr_t>(dos->e_lfanew));
    const DWORD offset =
        headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT].VirtualAddress;
    return offset == 0 ? nullptr : InImage<const IMAGE_IMPORT_DESCRIPTOR>(module, offset);
}

void SetPointer(std::uintptr_t* slot, std::uintptr_t value)
{
    DWORD protection = 0;
    if (!VirtualProtect(slot, sizeof *slot, PAGE_READWRITE, &protection)) return;
    *slot = value;
    VirtualProtect(slot, sizeof *slot, protection, &protection);
}

void RedirectImport(const char* name, std::uintptr_t* slot, const Redirection* redirections,
                    int count)
{
    for (int i = 0; i < count; ++i) {
        const auto target = reinterpret_cast<std::uintptr_t>(redirections[i].function);
        if (*slot != target && std::strcmp(name, redirections[i].name) == 0)
            SetPointer(slot, target);
    }
}

void RedirectDescriptor(HMODULE module, const IMAGE_IMPORT_DESCRIPTOR& imports,
                        const Redirection* redirections, int count)
{
    if (imports.OriginalFirstThunk == 0) return; // without the names no import can be identified
    const auto* name = InImage<const IMAGE_THUNK_DATA>(module, imports.OriginalFirstThunk);
    auto* slot = InImage<std::uintptr_t>(module, imports.FirstThunk);
    for (; name->u1.AddressOfData != 0; ++name, ++slot) {
        if (IMAGE_SNAP_BY_ORDINAL(name->u1.Ordinal)) continue;
        const auto* const import =
            InImage<const IMAGE_IMPORT_BY_NAME>(module, name->u1.AddressOfData);
        RedirectImport(reinterpret_cast<const char*>(import->Name), slot, redirections, count);
    }
}

} // namespace

HMODULE ModuleOf(const void* code)
{
    HMODULE module = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS |
                           GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       static_cast<const wchar_t*>(code), &module);
    return module;
}

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

void RedirectImports(HMODULE module, const Redirection* redirections, int count)
{
    if (!IsOfProgram(module)) return;
    const IMAGE_IMPORT_DESCRIPTOR* imports = ImportsOf(module);
    for (; imports && imports->Name != 0; ++imports)
        if (_stricmp(InImage<const char>(module, imports->Name), "msvcrt.dll") == 0)
            RedirectDescriptor(module, *imports, redirections, count);
}

void RedirectAllImports(const Redirection* redirections, int count)
{
    static HMODULE modules[mostModules];
    DWORD bytes = 0;
    if (!K32EnumProcessModules(GetCurrentProcess(), modules, sizeof modules, &bytes)) return;
    const DWORD loaded = bytes / sizeof(HMODULE);
    for (DWORD i = 0; i < loaded && i < mostModules; ++i)
        RedirectImports(modules[i], redirections, count);
}

} // namespace guardheap
