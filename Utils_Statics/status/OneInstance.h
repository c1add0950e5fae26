#pragma once

#include <Utils_Statics/IStatusItem.h>

#include <atomic>

namespace utils_statics {

// The process's only object of a class of items, made by the first call. When two threads make it
// at the same time, one deletes its own.
template <class Item, class Make>
Item* OneInstance(std::atomic<Item*>& instance, const Make& make)
{
    if (Item* const known = instance) return known;
    Item* const made = make();
    Item* known = nullptr;
    if (instance.compare_exchange_strong(known, made)) return made;
    delete static_cast<IStatusItem*>(made);
    return known;
}

} // namespace utils_statics
