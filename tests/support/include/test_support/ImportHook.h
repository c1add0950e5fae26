#pragma once

#include <windows.h>

namespace test_support {

// Replaces one function that a loaded module imports, in that module only, as long as this object
// lives. So a test sees what the module hands to the platform.
class ImportHook
{
public:
    // `module` is a file name such as L"Utils_Statics.dll". `replacement` has the function's own
    // type. Fails the test when the module does not import a function of that name.
    template <class Function>
    ImportHook(const wchar_t* module, const char* function, Function* replacement)
    {
        Replace(module, function, reinterpret_cast<void*>(replacement));
    }
    ~ImportHook();
    ImportHook(const ImportHook&) = delete;
    ImportHook& operator=(const ImportHook&) = delete;

    // The platform's own function.
    template <class Function>
    Function* Original() const
    {
        return reinterpret_cast<Function*>(m_original);
    }

private:
    void Replace(const wchar_t* module, const char* function, void* replacement);

    void** m_entry = nullptr;
    void* m_original = nullptr;
};

} // namespace test_support
