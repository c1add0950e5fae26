#include <gtest/gtest.h>
#include <test_support/ImportHook.h>
#include <test_support/Imports.h>

#include <cstring>

namespace test_support {

void ImportHook::Replace(const wchar_t* module, const char* function, void* replacement)
{
    const HMODULE loaded = GetModuleHandleW(module);
    if (!loaded || !AnyImport(loaded, [&](const char*, const char* name, void** slot) {
            if (std::strcmp(name, function) != 0) return false;
            m_entry = slot;
            return true;
        })) {
        ADD_FAILURE() << "the module does not import " << function;
        return;
    }
    m_original = *m_entry;
    SetImport(m_entry, replacement);
}

ImportHook::~ImportHook()
{
    if (m_entry) SetImport(m_entry, m_original);
}

} // namespace test_support
