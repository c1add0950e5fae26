#pragma once

#include "FaultPoints.h"

#include <string_view>
#include <vector>

namespace faults {

// Functions that are not made to fail, in general or by the script, and why.
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

// The functions with a row that the script never comes to call.
const std::vector<Exempt>& UncalledFunctions();

bool Contains(const std::vector<Exempt>& groups, std::string_view function);

} // namespace faults
