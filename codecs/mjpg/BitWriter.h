#pragma once

#include <cstdint>

namespace mjpg {

/// Writes the entropy-coded bits of an image: highest bit first, a zero byte after each 0xFF. It does not check the end
/// of its output; whoever writes leaves room.
class BitWriter
{
public:
    explicit BitWriter(std::uint8_t* output) : m_output(output) {}

    /// `bits` has no bits above `count`, which is at most 27.
    void put(std::uint32_t bits, int count)
    {
        m_free -= count;
        if (m_free >= 0) {
            m_pending |= bits << m_free;
            return;
        }
        flushWord(m_pending | bits >> -m_free);
        m_free += 32;
        m_pending = bits << m_free;
    }

    /// Fills the last byte with ones. The end of the output.
    std::uint8_t* finish()
    {
        for (int used = 32 - m_free; used > 0; used -= 8, m_pending <<= 8) {
            const std::uint32_t fill = used < 8 ? 0xFFu >> used : 0;
            putByte(static_cast<std::uint8_t>(m_pending >> 24 | fill));
        }
        return m_output;
    }

    std::uint8_t* position() const { return m_output; }

private:
    void flushWord(std::uint32_t word)
    {
        for (int shift = 24; shift >= 0; shift -= 8)
            putByte(static_cast<std::uint8_t>(word >> shift));
    }

    void putByte(std::uint8_t byte)
    {
        *m_output++ = byte;
        *m_output = 0; // stays only behind 0xFF
        m_output += byte == 0xFF;
    }

    std::uint8_t* m_output;
    std::uint32_t m_pending = 0; ///< bits not yet written, from the top
    int m_free = 32;             ///< free bits below them
};

} // namespace mjpg
