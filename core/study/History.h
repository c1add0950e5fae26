#pragma once

#include <cstddef>
#include <deque>
#include <utility>

namespace exam {

/// The states that a value had, for undo and redo. It keeps the last hundred of them.
template <class Value>
class History
{
public:
    static constexpr std::size_t steps = 100;

    /// Keeps the state before a change. What was undone is forgotten.
    void Keep(Value before)
    {
        m_past.push_back(std::move(before));
        if (m_past.size() > steps) m_past.pop_front();
        m_future.clear();
    }

    /// Each puts another state in the place of the present one; false when there is none.
    bool Undo(Value& present) { return Move(m_past, m_future, present); }
    bool Redo(Value& present) { return Move(m_future, m_past, present); }

    bool CanUndo() const { return !m_past.empty(); }
    bool CanRedo() const { return !m_future.empty(); }

private:
    static bool Move(std::deque<Value>& from, std::deque<Value>& to, Value& present)
    {
        if (from.empty()) return false;
        to.push_back(std::move(present));
        present = std::move(from.back());
        from.pop_back();
        return true;
    }

    std::deque<Value> m_past;
    std::deque<Value> m_future;
};

} // namespace exam
