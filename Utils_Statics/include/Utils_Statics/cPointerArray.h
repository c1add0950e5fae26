#pragma once

#include <algorithm>
#include <cstdint>
#include <memory>
#include <new>
#include <stdexcept>

/// A growing array of pointers, in the order they were added. It does not own the objects. The size
/// is a member of its own, because users read it again at every step of a walk.
template <class T>
class cPointerArray
{
public:
    cPointerArray() noexcept = default;
    /// Empty when there is no memory for the copy.
    cPointerArray(const cPointerArray& other) noexcept { *this = other; }
    /// Leaves the array as it is when there is no memory for the copy.
    cPointerArray& operator=(const cPointerArray& other) noexcept
    {
        if (this == &other || !Reserve(other.m_size)) return *this;
        std::copy_n(other.m_items.get(), other.m_size, m_items.get());
        m_size = other.m_size;
        return *this;
    }

    /// The number of pointers.
    std::uint32_t Size() const noexcept { return m_size; }

    /// Throws std::out_of_range for an index outside of the array.
    T* At(std::uint32_t index) const
    {
        if (index >= m_size) [[unlikely]]
            throw std::out_of_range("invalid vector<T> subscript");
        return m_items[index];
    }

    /// True when `item` is in the array.
    bool Contains(const T* item) const noexcept { return Find(item) != End(); }

    /// True when `item` is in the array; quick when it is still at `index`.
    bool Contains(const T* item, std::uint32_t index) const noexcept
    {
        if (index < m_size && m_items[index] == item) [[likely]]
            return true;
        return Contains(item);
    }

    /// False when there is no memory for it.
    bool Append(T* item) noexcept
    {
        if (m_size == m_capacity && !Reserve(std::max<std::uint32_t>(1, m_capacity * 2)))
            return false;
        m_items[m_size++] = item;
        return true;
    }

    /// Removes `item`; what follows it moves one place forward. Does nothing when `item` is not in
    /// the array.
    void Remove(const T* item) noexcept
    {
        T** const found = Find(item);
        if (found == End()) return;
        std::copy(found + 1, End(), found);
        --m_size;
    }

    /// Leaves the array empty and without memory.
    void Free() noexcept
    {
        m_items.reset();
        m_size = m_capacity = 0;
    }

private:
    T** End() const noexcept { return m_items.get() + m_size; }
    T** Find(const T* item) const noexcept { return std::find(m_items.get(), End(), item); }

    bool Reserve(std::uint32_t capacity) noexcept
    {
        if (capacity <= m_capacity) return true;
        std::unique_ptr<T*[]> items(new (std::nothrow) T*[capacity]);
        if (!items) return false;
        std::copy_n(m_items.get(), m_size, items.get());
        m_items = std::move(items);
        m_capacity = capacity;
        return true;
    }

    std::unique_ptr<T*[]> m_items;
    std::uint32_t m_size = 0;
    std::uint32_t m_capacity = 0;
};
