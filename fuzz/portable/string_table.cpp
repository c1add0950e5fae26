// The target reads a string table, which is an XLIFF file.
#include "zel_string_convert/XliffFile.h"

#include <fuzz/Input.h>
#include <fuzz/InputFile.h>
#include <fuzz/Require.h>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const fuzz::Input input(data, size);
    std::wstring error;
    const auto sections = zel_string_convert::ReadXliffFile(fuzz::InputFile(input.Rest()), error);
    fuzz::Require(sections.has_value() == error.empty(), "a refused table has a reason");
    if (!sections) return 0;
    fuzz::Require(!sections->empty(), "a table has a section");
    for (const auto& section : *sections) {
        fuzz::Require(!section.sourceLanguage.empty(), "a section has a language");
        for (const auto& unit : section.units)
            fuzz::Require(!unit.key.empty() && (!unit.target || !section.targetLanguage.empty()),
                          "a unit has a key, and a translation a language");
    }
    return 0;
}
