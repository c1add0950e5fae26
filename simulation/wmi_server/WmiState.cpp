#include "WmiState.h"

#include <algorithm>

namespace simulation {

std::optional<HRESULT> WmiState::Note(WmiCall call, const std::wstring& line)
{
    const std::lock_guard lock(mutex);
    if (keepsReleased) calls.push_back(line);
    ++callCount;
    if (std::ranges::find(throwing, call) != throwing.end()) throw 1;
    return PlannedResult(call);
}

std::optional<HRESULT> WmiState::PlannedResult(WmiCall call)
{
    if (failingCall > 0 && --failingCall == 0) return failingResult;
    for (PlannedFailure& failure : failures) {
        if (failure.call != call) continue;
        if (failure.number == 0) return failure.result;
        if (failure.number > 0 && --failure.number == 0) {
            failure.number = -1; // this failure has happened
            return failure.result;
        }
    }
    return std::nullopt;
}

void WmiState::Keep(WmiUnknown* object)
{
    const std::lock_guard lock(mutex);
    objects.emplace_back(object);
}

void WmiState::Drop(WmiUnknown* object)
{
    const std::lock_guard lock(mutex);
    if (keepsReleased) return;
    std::erase_if(objects, [&](const auto& kept) { return kept.get() == object; });
}

} // namespace simulation
