#pragma once

#include <utility>

namespace base {

/// Owns one resource and releases it at the end of its life; moved, never copied. Empty by default.
///
/// `Traits` describes the resource:
/// - `Handle` is the type of its handle.
/// - `static Handle Empty() noexcept` gives the value that stands for none.
/// - `static void Release(Handle) noexcept` releases one. It is never called for the empty value.
///
/// An owner belongs to one thread at a time. Releasing may change the thread's last error code.
template <class Traits>
class Owner
{
public:
    using Handle = typename Traits::Handle;

    Owner() noexcept = default;
    /// Takes ownership of `handle`, which may be the empty value.
    explicit Owner(Handle handle) noexcept : m_handle(handle) {}
    Owner(Owner&& other) noexcept : m_handle(other.release()) {}
    Owner& operator=(Owner&& other) noexcept
    {
        if (this != &other) reset(other.release());
        return *this;
    }
    ~Owner() { reset(); }

    explicit operator bool() const noexcept { return m_handle != Traits::Empty(); }
    Handle get() const noexcept { return m_handle; }

    /// The address for a function that stores a handle. The held one is released first.
    Handle* put() noexcept
    {
        reset();
        return &m_handle;
    }

    /// Hands the handle over to the caller and leaves the owner empty.
    Handle release() noexcept { return std::exchange(m_handle, Traits::Empty()); }

    /// Releases the held handle and takes ownership of `handle`.
    void reset(Handle handle = Traits::Empty()) noexcept
    {
        const Handle old = std::exchange(m_handle, handle);
        if (old != Traits::Empty()) Traits::Release(old);
    }

private:
    Handle m_handle = Traits::Empty();
};

} // namespace base
