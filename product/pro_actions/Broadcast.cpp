#include "Broadcast.h"

namespace pro_actions {

namespace {

constexpr int maxNesting = 64;
constexpr int maxBroadcasts = 10000;

// The state of this thread's broadcasts within its outermost one.
struct Nesting
{
    int depth = 0;
    int broadcasts = 0;
};

constinit thread_local Nesting s_nesting;

} // namespace

BroadcastScope::BroadcastScope() noexcept
{
    if (s_nesting.depth++ == 0) s_nesting.broadcasts = 0;
    ++s_nesting.broadcasts;
}

BroadcastScope::~BroadcastScope()
{
    --s_nesting.depth;
}

bool BroadcastScope::IsRunaway() noexcept
{
    return s_nesting.depth > maxNesting || s_nesting.broadcasts > maxBroadcasts;
}

} // namespace pro_actions
