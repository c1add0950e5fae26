#pragma once

#include "qor_utils/export.h"

namespace qor_utils {

/// The nearest integer; halves round away from zero. Values beyond an int give its nearest limit,
/// and NaN gives 0.
QOR_UTILS_API int round(double value) noexcept;

} // namespace qor_utils
