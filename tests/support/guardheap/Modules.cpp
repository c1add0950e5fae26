#include "Modules.h"

#include <psapi.h>

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace guardheap {

namespace {

constexpr int mostModules = 512;

template <class T>
T* inImage(HMODULE module, std::uintptr_t offset)
{
    return reinterpret_cast<T*>(reinterpret_cast<std::byte*>(module) + offset);
}

const IMAGE_IMPORT_DESCRIPTOR* importsOf(HMODULE module)
{
    const auto* const dos = inImage<const IMAGE_DOS_HEADER>(module, 0);
    if (dos->e_magic != IMAGE_DOS_SIGNATURE) return nullptr;
    const auto* const headers =
        inImage<const IMAGE_NT_HEADERS>(module, static_cast<std::uintptr_t>(dos->e_lfanew));
    const DWORD offset =
        headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT].VirtualAddress;
    return offset == 0 ? nullptr : inImage<const IMAGE_IMPORT_DESCRIPTOR>(module, offset);
}

void setPointer(std::uintptr_t* slot, std::uintptr_t value)
{
    DWORD protection = 0;
    if (!VirtualProtect(slot, sizeof *slot, PAGE_READWRITE, &protection)) return;
    *slot = value;
    VirtualProtect(slot, sizeof *slot, protection, &protection);
}

void redirectImport(const char* name, std::uintptr_t* slot, const Redirection* redirections,
                    int count)
{
    for (int i = 0; i < count; ++i) {
        const auto target = reinterpret_cast<std::uintptr_t>(redirections[i].function);
        if (*slot != target && std::strcmp(name, redirections[i].name) == 0)
            setPointer(slot, target);
    }
}

void redirectDescriptor(HMODULE module, const IMAGE_IMPORT_DESCRIPTOR& imports,
                        const Redirection* redirections, int count)
{
    if (imports.OriginalFirstThunk == 0) return; // without the names nothing can be told apart
    const auto* name = inImage<const IMAGE_THUNK_DATA>(module, imports.OriginalFirstThunk);
    auto* slot = inImage<std::uintptr_t>(module, imports.FirstThunk);
    for (; name->u1.AddressOfData != 0; ++name, ++slot) {
        if (IMAGE_SNAP_BY_ORDINAL(name->u1.Ordinal)) continue;
        const auto* const import =
            inImage<const IMAGE_IMPORT_BY_NAME>(module, name->u1.AddressOfData);
        redirectImport(reinterpret_cast<const char*>(import->Name), slot, redirections, count);
    }
}

} // namespace

HMODULE moduleOf(const void* code)
{
    HMODULE module = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS |
                           GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       static_cast<const wchar_t*>(code), &module);
    return module;
}

bool isOfProgram(HMODULE module)
{
    static const char ownAddress = 0;
    if (!module || module == moduleOf(&ownAddress)) return false;
    wchar_t windows[MAX_PATH] = {};
    wchar_t path[MAX_PATH] = {};
    const UINT length = GetWindowsDirectoryW(windows, MAX_PATH);
    if (length == 0 || length >= MAX_PATH || GetModuleFileNameW(module, path, MAX_PATH) == 0)
        return false;
    return _wcsnicmp(path, windows, length) != 0 || path[length] != L'\\';
}

void redirectImports(HMODULE module, const Redirection* redirections, int count)
{
    if (!isOfProgram(module)) return;
    const IMAGE_IMPORT_DESCRIPTOR* imports = importsOf(module);
    for (; imports && imports->Name != 0; ++imports)
        if (_stricmp(inImage<const char>(module, imports->Name), "msvcrt.dll") == 0)
            redirectDescriptor(module, *imports, redirections, count);
}

void redirectAllImports(const Redirection* redirections, int count)
{
    static HMODULE modules[mostModules];
    DWORD bytes = 0;
    if (!K32EnumProcessModules(GetCurrentProcess(), modules, sizeof modules, &bytes)) return;
    const DWORD loaded = bytes / sizeof(HMODULE);
    for (DWORD i = 0; i < loaded && i < mostModules; ++i)
        redirectImports(modules[i], redirections, count);
}

} // namespace guardheap
