#include "diagnostics/VersionNodes.h"

#include <windows.h>

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace utils_statics {

namespace {

// The levels are: the block with the fixed information, the string and translation tables, the
// tables of each language, and their texts.
constexpr int rootLevel = 0;
constexpr int textLevel = 3;

// Reads and mends nodes by their layout: the length of the whole node, the length of the value, in
// the wide layout the value's type (16 bits each), a key with its null, the value, and the
// children. The value and each child begin at a multiple of four.
class NodeTree
{
public:
    NodeTree(unsigned char* block, VersionLayout layout) noexcept
        : m_block(block), m_isWide(layout == VersionLayout::wide)
    {
    }

    // `end` is the end of what the root may occupy.
    bool MendRoot(std::size_t end) noexcept
    {
        if (end < KeyOffset()) return false;
        SetWord(0, std::min<std::size_t>(Word(0), end));
        if (m_isWide ? Word(4) > textType : !HasRoomForWideTexts()) return false;
        const std::size_t keyEnd = KeyEnd(0, Word(0));
        if (keyEnd == 0 || Aligned(keyEnd) + sizeof(VS_FIXEDFILEINFO) > Word(0)) return false;
        MendContent(0, Aligned(keyEnd), rootLevel);
        return true;
    }

private:
    static constexpr std::uint16_t textType = 1;

    static std::size_t Aligned(std::size_t offset) noexcept { return (offset + 3) / 4 * 4; }
    std::size_t KeyOffset() const noexcept { return m_isWide ? 6 : 4; }
    std::size_t CharacterSize() const noexcept { return m_isWide ? 2 : 1; }

    std::uint16_t Word(std::size_t offset) const noexcept
    {
        std::uint16_t word;
        std::memcpy(&word, m_block + offset, sizeof word);
        return word;
    }
    void SetWord(std::size_t offset, std::size_t value) noexcept
    {
        const auto word = static_cast<std::uint16_t>(value);
        std::memcpy(m_block + offset, &word, sizeof word);
    }
    void Clear(std::size_t begin, std::size_t end) noexcept
    {
        if (begin < end) std::memset(m_block + begin, 0, end - begin);
    }

    // The offset after the first null from `text` on; 0 when there is none before `end`.
    std::size_t TextEnd(std::size_t text, std::size_t end) const noexcept
    {
        const std::size_t size = CharacterSize();
        for (; text + size <= end; text += size)
            if ((m_isWide ? Word(text) : m_block[text]) == 0) return text + size;
        return 0;
    }

    std::size_t KeyEnd(std::size_t node, std::size_t end) const noexcept
    {
        return TextEnd(node + KeyOffset(), end);
    }

    // The platform computes that room from the root's length, in unsigned numbers.
    bool HasRoomForWideTexts() const noexcept
    {
        const std::size_t length = Word(0);
        return length > sizeof(VS_FIXEDFILEINFO) &&
               (length - sizeof(VS_FIXEDFILEINFO)) * 4 > length;
    }

    void MendChildren(std::size_t child, std::size_t end, int level) noexcept
    {
        const std::size_t least = KeyOffset() + CharacterSize();
        while (child < end) {
            if (end - child < least || Word(child) < least) return Clear(child, end);
            SetWord(child, std::min<std::size_t>(Word(child), end - child));
            MendNode(child, level);
            child = Aligned(child + Word(child));
        }
    }

    void MendNode(std::size_t node, int level) noexcept
    {
        const std::size_t end = node + Word(node);
        const std::size_t keyEnd = KeyEnd(node, end);
        if (keyEnd == 0) return Clear(node + sizeof(std::uint16_t), end);
        const std::size_t value = std::min(Aligned(keyEnd), end);
        if (level == textLevel)
            MendText(node, value);
        else
            MendContent(node, value, level);
    }

    // The value and the children of a node whose key is sound.
    void MendContent(std::size_t node, std::size_t value, int level) noexcept
    {
        const std::size_t end = node + Word(node);
        if (m_isWide) SetWord(node + 4, std::min(Word(node + 4), textType));
        const std::size_t unit = m_isWide && Word(node + 4) == textType ? 2 : 1;
        const std::size_t length = std::min(Word(node + 2) * unit, end - value) / unit;
        SetWord(node + 2, length);
        MendChildren(Aligned(value + length * unit), end, level + 1);
    }

    void MendText(std::size_t node, std::size_t value) noexcept
    {
        const std::size_t end = node + Word(node);
        const std::size_t textEnd = TextEnd(value, end);
        const std::size_t length = ((textEnd ? textEnd : end) - value) / CharacterSize();
        SetWord(node + 2, length);
        if (m_isWide) SetWord(node + 4, textType);
        Clear(value + length * CharacterSize(), end);
    }

    unsigned char* m_block;
    bool m_isWide;
};

// The end of what the root may occupy. The platform writes the wide form of a narrow text after the
// root, at places that it computes from the root's length.
std::size_t RoomForRoot(std::size_t size, VersionLayout layout) noexcept
{
    return layout == VersionLayout::wide ? size
                                         : std::min(size, size / 4 + sizeof(VS_FIXEDFILEINFO));
}

} // namespace

bool MendVersionNodes(unsigned char* block, std::size_t size, VersionLayout layout) noexcept
{
    if (NodeTree(block, layout).MendRoot(RoomForRoot(size, layout))) return true;
    std::memset(block, 0, size);
    return false;
}

} // namespace utils_statics
