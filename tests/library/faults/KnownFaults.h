#pragma once

#include <string_view>

namespace faults {

// True when a failure of this function is let pass in this step, and nobody has to tell.
bool IsUnheard(std::string_view step, std::string_view function);

// True when something stays open after a failure of this function in this step.
bool IsKept(std::string_view step, std::string_view function);

// True when this function is not made to fail in this step.
bool IsSpared(std::string_view step, std::string_view function);

} // namespace faults
