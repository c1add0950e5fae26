#pragma once

#include <algorithm>
#include <array>
#include <climits>
#include <cstddef>
#include <cstring>

namespace utils_statics {

// The pixels of one column that belong to the imaged region: one vertical run.
struct MaskRun
{
    int top = INT_MAX;
    int bottom = -1; // less than top: the column has none
};

// Some neighbouring columns of the mask, filled row by row. Writing down single columns would touch
// a new cache line for every byte.
class MaskStrip
{
public:
    static constexpr int width = 128;

    void Add(const MaskRun& run)
    {
        const auto i = static_cast<std::size_t>(m_count++);
        m_top[i] = run.top;
        m_bottom[i] = run.bottom;
    }
    bool IsFull() const { return m_count == width; }

    // Writes the columns added since the last call. `firstColumn` is the top pixel of the first of
    // them, `stride` the bytes from row to row.
    void Fill(unsigned char* firstColumn, int stride, unsigned char value)
    {
        const int first = *std::min_element(m_top.begin(), m_top.begin() + m_count);
        const int last = *std::max_element(m_bottom.begin(), m_bottom.begin() + m_count);
        const int wholeFirst = *std::max_element(m_top.begin(), m_top.begin() + m_count);
        const int wholeLast = *std::min_element(m_bottom.begin(), m_bottom.begin() + m_count);
        for (int y = first; y <= last; ++y) {
            unsigned char* const row =
                firstColumn + static_cast<std::size_t>(y) * static_cast<std::size_t>(stride);
            if (y >= wholeFirst && y <= wholeLast)
                std::memset(row, value, static_cast<std::size_t>(m_count));
            else
                FillRow(row, y, value);
        }
        m_count = 0;
    }

private:
    void FillRow(unsigned char* row, int y, unsigned char value) const
    {
        for (int i = 0; i < m_count; ++i) {
            const auto column = static_cast<std::size_t>(i);
            if (y >= m_top[column] && y <= m_bottom[column]) row[i] = value;
        }
    }

    std::array<int, width> m_top{};
    std::array<int, width> m_bottom{};
    int m_count = 0;
};

} // namespace utils_statics
