#pragma once

#include <memory>
#include <utility>

namespace exam {

/// A constant value that copies share, so that a copy costs one pointer. Equal values are equal,
/// whether they are shared or not.
template <class Value>
class Shared
{
public:
    explicit Shared(Value value) : m_value(std::make_shared<const Value>(std::move(value))) {}

    const Value& operator*() const { return *m_value; }
    const Value* operator->() const { return m_value.get(); }

    friend bool operator==(const Shared& a, const Shared& b)
    {
        return a.m_value == b.m_value || *a == *b;
    }

private:
    std::shared_ptr<const Value> m_value;
};

} // namespace exam
