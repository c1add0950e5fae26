#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <new>

namespace utils_statics {

// Temporary zero-filled doubles, aligned to 16 bytes: up to InlineSize of them inside the object,
// more from the heap.
template <std::size_t InlineSize>
class ScratchArray
{
public:
    // Makes rows x cols doubles, both at least 1. data() is null when memory is short.
    ScratchArray(std::size_t rows, std::size_t cols) noexcept
    {
        if (rows > PTRDIFF_MAX / sizeof(double) / cols) return;
        const std::size_t size = rows * cols;
        m_data = size <= InlineSize ? m_inline
                                    : static_cast<double*>(::operator new(size * sizeof(double),
                                                                          alignment, std::nothrow));
        if (m_data) std::fill_n(m_data, size, 0.0);
    }

    ~ScratchArray()
    {
        if (m_data != m_inline) ::operator delete(m_data, alignment);
    }

    ScratchArray(const ScratchArray&) = delete;
    ScratchArray& operator=(const ScratchArray&) = delete;

    double* data() const noexcept { return m_data; }

private:
    static constexpr std::align_val_t alignment{16};

    alignas(16) double m_inline[InlineSize];
    double* m_data = nullptr;
};

} // namespace utils_statics
