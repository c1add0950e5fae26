#include "FaultHooks.h"

#include <test_support/Imports.h>

#include <stdexcept>

namespace faults {

namespace {

// Want of memory in the compiler's libraries is the matter of memory_test.
bool IsOfTheCompiler(std::string_view library)
{
    return library.starts_with("lib");
}

// These export the names of the language's own, and call each other.
bool IsOfAModule(std::string_view function)
{
    return function.starts_with("_Z");
}

std::map<std::string_view, Row> Table()
{
    std::map<std::string_view, Row> table;
    for (const auto& rows : {SystemRows(), GraphicsRows(), LanguageRows()})
        for (const Row& row : rows)
            if (!table.emplace(row.name, row).second)
                throw std::logic_error(row.name + std::string(" has two rows"));
    return table;
}

} // namespace

Hooks::Hooks() : m_table(Table())
{
    for (const wchar_t* const module : test_support::libraryModules)
        test_support::AnyImport(GetModuleHandleW(module),
                                [&](const char* library, const char* function, void** slot) {
                                    Take(library, function, slot);
                                    return false;
                                });
}

Hooks::~Hooks()
{
    for (const auto& [slot, original] : m_originals)
        test_support::SetImport(slot, original);
}

void Hooks::Take(const char* library, const char* function, void** slot)
{
    const auto row = m_table.find(function);
    if (row == m_table.end()) {
        if (IsOfAModule(function) || IsOfTheCompiler(library)) return;
        (Contains(ExemptFunctions(), function) ? exempt : missing).insert(function);
        return;
    }
    rows.insert(function);
    row->second.setOriginal(*slot);
    m_originals.emplace_back(slot, *slot);
    test_support::SetImport(slot, row->second.replacement);
}

} // namespace faults
