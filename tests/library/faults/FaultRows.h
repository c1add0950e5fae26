#pragma once

#include "FaultPoints.h"

#include <string_view>
#include <vector>

namespace faults {

// Functions that are not made to fail, and why.
struct Exempt
{
    const char* reason;
    std::vector<std::string_view> names;
};

// The table: every function that the modules import has a row or is exempt.
std::vector<Row> SystemRows();
std::vector<Row> GraphicsRows();
std::vector<Row> LanguageRows();
const std::vector<Exempt>& ExemptFunctions();

} // namespace faults
