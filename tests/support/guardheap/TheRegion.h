#pragma once

#include "GuardedRegion.h"

namespace guardheap {

// The process has one region.
extern GuardedRegion s_region;

} // namespace guardheap
