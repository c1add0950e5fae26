#pragma once

#include <utility>

namespace framework {

// The one owner of handles that are no public object: `Traits` names the handle's type and how it
// is released.
template <class Traits>
class HandleOwner
{
public:
    using Handle = typename Traits::Handle;

    HandleOwner() noexcept = default;
    explicit HandleOwner(Handle handle) noexcept : m_handle(handle) {}
    HandleOwner(HandleOwner&& other) noexcept : m_handle(std::exchange(other.m_handle, nullptr)) {}
    HandleOwner& operator=(HandleOwner&& other) noexcept
    {
        if (this != &other) reset(std::exchange(other.m_handle, nullptr));
        return *this;
    }
    ~HandleOwner() { reset(); }

    explicit operator bool() const noexcept { return m_handle != nullptr; }
    Handle get() const noexcept { return m_handle; }
    // For functions that store a handle; releases the one that is held.
    Handle* put() noexcept
    {
        reset();
        return &m_handle;
    }
    void reset(Handle handle = nullptr) noexcept
    {
        if (Handle const old = std::exchange(m_handle, handle)) Traits::Release(old);
    }

private:
    Handle m_handle = nullptr;
};

} // namespace framework
