#include "actions/NameIndex.h"

#include <algorithm>
#include <bit>
#include <utility>

namespace utils_statics {

namespace {

constexpr std::size_t fewestSlots = 16;

// The Fowler-Noll-Vo hash (FNV-1a, 32 bits), by code units instead of bytes. Its lower bits, which
// choose the slot, depend on few bits of the last units, so the upper half is folded in.
std::uint32_t Hash(const wchar_t* name) noexcept
{
    std::uint32_t hash = 2166136261u;
    for (; *name != L'\0'; ++name)
        hash = (hash ^ *name) * 16777619u;
    return hash ^ hash >> 16;
}

bool IsSame(const wchar_t* a, const wchar_t* b) noexcept
{
    for (; *a == *b; ++a, ++b)
        if (*a == L'\0') return true;
    return false;
}

} // namespace

void NameIndex::Reserve(std::size_t count)
{
    if (2 * count <= m_slots.size()) return;
    std::vector<Slot> slots(std::bit_ceil(std::max(2 * count, fewestSlots)));
    slots.swap(m_slots);
    for (const Slot& slot : slots)
        if (slot.name) Put(slot);
}

void NameIndex::Add(const wchar_t* name, const ButtonAction* button) noexcept
{
    Put({Hash(name), name, button});
}

const ButtonAction* NameIndex::Find(const wchar_t* name) const noexcept
{
    if (m_slots.empty()) return nullptr;
    const std::size_t last = m_slots.size() - 1;
    const std::uint32_t hash = Hash(name);
    for (std::size_t i = hash & last; m_slots[i].name; i = (i + 1) & last)
        if (m_slots[i].hash == hash && IsSame(m_slots[i].name, name)) return m_slots[i].button;
    return nullptr;
}

void NameIndex::Clear() noexcept
{
    m_slots.clear();
}

void NameIndex::Put(const Slot& slot) noexcept
{
    const std::size_t last = m_slots.size() - 1;
    std::size_t i = slot.hash & last;
    while (m_slots[i].name)
        i = (i + 1) & last;
    m_slots[i] = slot;
}

} // namespace utils_statics
