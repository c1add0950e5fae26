#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

struct ButtonAction;

namespace utils_statics {

// Finds buttons by their names in one step, for a table of any size: names are hashed, and the
// slots that follow one another from a name's hash on hold the names of that hash.
//
// Neither names nor buttons are owned; both outlive their entry.
class NameIndex
{
public:
    // Makes room for `count` names in all, so that adding them allocates nothing.
    void Reserve(std::size_t count);

    // Adds a name that is not there yet. There has to be room for it.
    void Add(const wchar_t* name, const ButtonAction* button) noexcept;

    // The button of that name, or null.
    const ButtonAction* Find(const wchar_t* name) const noexcept;

    void Clear() noexcept;

private:
    struct Slot
    {
        std::uint32_t hash = 0;
        const wchar_t* name = nullptr; // null: free
        const ButtonAction* button = nullptr;
    };

    void Put(const Slot& slot) noexcept;

    std::vector<Slot> m_slots; // none, or a power of two of them; at least every other one is free
};

} // namespace utils_statics
