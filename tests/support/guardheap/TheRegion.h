#pragma once

#include "GuardedRegion.h"

namespace guardheap {

// The process has one.
extern GuardedRegion s_region;

} // namespace guardheap
