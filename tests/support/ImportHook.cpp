#include <gtest/gtest.h>
#include <test_support/ImportHook.h>

#include <cstddef>
#include <cstring>

namespace test_support {

namespace {

template <class Record>
Record* At(HMODULE module, DWORD offset)
{
    return reinterpret_cast<Record*>(reinterpret_cast<std::byte*>(module) + offset);
}

const IMAGE_IMPORT_DESCRIPTOR* Imports(HMODULE module)
{
    const auto* const dos = At<IMAGE_DOS_HEADER>(module, 0);
    const auto* const nt = At<IMAGE_NT_HEADERS>(module, static_cast<DWORD>(dos->e_lfanew));
    const auto& table = nt->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
    return At<IMAGE_IMPORT_DESCRIPTOR>(module, table.VirtualAddress);
}

bool IsNamed(HMODULE module, const IMAGE_THUNK_DATA& name, const char* function)
{
    if (IMAGE_SNAP_BY_ORDINAL(name.u1.Ordinal)) return false;
    const auto offset = static_cast<DWORD>(name.u1.AddressOfData);
    const auto* const record = At<IMAGE_IMPORT_BY_NAME>(module, offset);
    return std::strcmp(reinterpret_cast<const char*>(record->Name), function) == 0;
}

// The place where the module keeps the function's address, or null.
void** FindEntry(HMODULE module, const char* function)
{
    for (const auto* library = Imports(module); library->Name; ++library) {
        const auto* name = At<IMAGE_THUNK_DATA>(module, library->OriginalFirstThunk);
        auto* entry = At<IMAGE_THUNK_DATA>(module, library->FirstThunk);
        for (; name->u1.AddressOfData; ++name, ++entry)
            if (IsNamed(module, *name, function)) return reinterpret_cast<void**>(entry);
    }
    return nullptr;
}

} // namespace

void ImportHook::Replace(const wchar_t* module, const char* function, void* replacement)
{
    const HMODULE loaded = GetModuleHandleW(module);
    m_entry = loaded ? FindEntry(loaded, function) : nullptr;
    if (!m_entry) {
        ADD_FAILURE() << "the module does not import " << function;
        return;
    }
    m_original = *m_entry;
    Set(replacement);
}

ImportHook::~ImportHook()
{
    if (m_entry) Set(m_original);
}

void ImportHook::Set(void* function)
{
    DWORD before = 0;
    VirtualProtect(m_entry, sizeof *m_entry, PAGE_READWRITE, &before);
    *m_entry = function;
    VirtualProtect(m_entry, sizeof *m_entry, before, &before);
}

} // namespace test_support
