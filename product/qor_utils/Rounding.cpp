#include "qor_utils/Rounding.h"

#include <limits>

namespace qor_utils {

int round(double value) noexcept
{
    using Limits = std::numeric_limits<int>;
    if (value != value) return 0;
    if (value >= Limits::max()) return Limits::max();
    if (value <= Limits::min()) return Limits::min();
    const int whole = static_cast<int>(value);
    const double rest =
        value - whole; // exact: adding 0.5 before truncating would round 0.49999999999999994 up
    if (rest >= 0.5) return whole + 1;
    if (rest <= -0.5) return whole - 1;
    return whole;
}

} // namespace qor_utils
