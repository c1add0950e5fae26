#pragma once

#include <windows.h>

#include <cstddef>

namespace test_support {

// The library and the product's libraries.
inline constexpr const wchar_t* libraryModules[] = {
    L"Utils_Statics.dll", L"mfc.dll",         L"qor_utils.dll",         L"qor_imgproc.dll",
    L"zel_xml.dll",       L"pro_actions.dll", L"zel_string_convert.dll"};

// Calls visit(library, function, slot) for what a module imports by name, until it returns true.
// `slot` is where the module keeps the function's address. False when no call returned true.
template <class Visit>
bool AnyImport(HMODULE module, const Visit& visit)
{
    auto* const image = reinterpret_cast<std::byte*>(module);
    const auto* const dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(image);
    if (dos->e_magic != IMAGE_DOS_SIGNATURE) return false;
    const auto* const headers = reinterpret_cast<const IMAGE_NT_HEADERS*>(image + dos->e_lfanew);
    const DWORD table =
        headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT].VirtualAddress;
    if (table == 0) return false;
    const auto* library = reinterpret_cast<const IMAGE_IMPORT_DESCRIPTOR*>(image + table);
    for (; library->Name != 0; ++library) {
        if (library->OriginalFirstThunk == 0) continue; // the names are not kept
        const auto* name =
            reinterpret_cast<const IMAGE_THUNK_DATA*>(image + library->OriginalFirstThunk);
        auto* slot = reinterpret_cast<void**>(image + library->FirstThunk);
        for (; name->u1.AddressOfData != 0; ++name, ++slot) {
            if (IMAGE_SNAP_BY_ORDINAL(name->u1.Ordinal)) continue;
            const auto* const import = reinterpret_cast<const IMAGE_IMPORT_BY_NAME*>(
                image + static_cast<std::size_t>(name->u1.AddressOfData));
            if (visit(reinterpret_cast<const char*>(image + library->Name),
                      reinterpret_cast<const char*>(import->Name), slot))
                return true;
        }
    }
    return false;
}

// Changes what an import calls.
inline void SetImport(void** slot, void* function)
{
    DWORD before = 0;
    if (!VirtualProtect(slot, sizeof *slot, PAGE_READWRITE, &before)) return;
    *slot = function;
    VirtualProtect(slot, sizeof *slot, before, &before);
}

} // namespace test_support
