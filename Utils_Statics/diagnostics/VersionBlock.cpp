#include "diagnostics/VersionBlock.h"

#include <cstdint>
#include <cstring>

namespace utils_statics {

namespace {

// The block, its fixed information left out: the string and translation tables, the tables of each
// language, their texts.
constexpr int deepestLevel = 3;

// Reads nodes by their layout: length of the whole node, length of the value, type of the value
// (16 bits each), a key with its null, the value, children; each from a multiple of four on.
class NodeWalk
{
public:
    NodeWalk(const unsigned char* block, std::size_t size) noexcept : m_block(block), m_size(size)
    {
    }

    // Whether a node and all below it lie within the block. `end` becomes the node's end.
    bool IsSound(std::size_t node, int level, std::size_t& end) const noexcept
    {
        std::size_t keyEnd = 0;
        // A type of more than one makes the platform read another, older layout.
        if (!Fits(node, headerSize) || Word(node) < headerSize || !Fits(node, Word(node)) ||
            Word(node + 4) > textType || !FindTextEnd(node + headerSize, keyEnd))
            return false;
        const std::size_t value = Aligned(keyEnd);
        const std::size_t valueSize = ValueSize(node);
        if (!IsValueSound(node, value, valueSize)) return false;
        end = node + Word(node);
        return level == deepestLevel ||
               AreChildrenSound(Aligned(value + valueSize), end, level + 1);
    }

private:
    static constexpr std::size_t headerSize = 6;
    static constexpr std::uint16_t textType = 1;

    static std::size_t Aligned(std::size_t offset) noexcept { return (offset + 3) / 4 * 4; }

    bool Fits(std::size_t offset, std::size_t size) const noexcept
    {
        return offset <= m_size && m_size - offset >= size;
    }

    std::uint16_t Word(std::size_t offset) const noexcept
    {
        std::uint16_t word;
        std::memcpy(&word, m_block + offset, sizeof word);
        return word;
    }

    // Finds the place behind the first null from `text` on.
    bool FindTextEnd(std::size_t text, std::size_t& end) const noexcept
    {
        for (std::size_t at = text; Fits(at, sizeof(std::uint16_t)); at += sizeof(std::uint16_t))
            if (Word(at) == 0) {
                end = at + sizeof(std::uint16_t);
                return true;
            }
        return false;
    }

    // In bytes. The length of a text counts characters.
    std::size_t ValueSize(std::size_t node) const noexcept
    {
        const std::size_t length = Word(node + 2);
        return Word(node + 4) == textType ? length * sizeof(std::uint16_t) : length;
    }

    // A text may name too great a length, as some compilers do, when it ends by itself.
    bool IsValueSound(std::size_t node, std::size_t value, std::size_t size) const noexcept
    {
        std::size_t end = 0;
        return Fits(value, size) || size == 0 ||
               (Word(node + 4) == textType && FindTextEnd(value, end));
    }

    bool AreChildrenSound(std::size_t child, std::size_t end, int level) const noexcept
    {
        while (child < end) {
            // The platform ends at a node without a length; some compilers pad with such.
            if (Fits(child, headerSize) && Word(child) == 0) return true;
            std::size_t childEnd = 0;
            if (!IsSound(child, level, childEnd)) return false;
            child = Aligned(childEnd);
        }
        return true;
    }

    const unsigned char* m_block;
    std::size_t m_size;
};

} // namespace

bool IsSoundVersionBlock(const unsigned char* block, std::size_t size) noexcept
{
    std::size_t end = 0;
    return NodeWalk(block, size).IsSound(0, 0, end);
}

} // namespace utils_statics
