// The target walks the nodes of a version resource. The first byte chooses their layout.
#include "diagnostics/VersionNodes.h"

#include <fuzz/Input.h>
#include <fuzz/Require.h>

#include <vector>

namespace {

using utils_statics::VersionLayout;

// Follows the nodes of a mended block as the platform does: by their lengths alone.
class NodeWalk
{
public:
    NodeWalk(const std::vector<unsigned char>& block, VersionLayout layout)
        : m_block(block), m_isWide(layout == VersionLayout::wide)
    {
    }

    void Root() { Node(0, m_block.size(), 0); }

private:
    std::size_t Word(std::size_t at) const
    {
        fuzz::Require(at + 2 <= m_block.size(), "a word lies in the block");
        return m_block[at] | static_cast<std::size_t>(m_block[at + 1]) << 8;
    }

    static std::size_t Aligned(std::size_t at) { return (at + 3) / 4 * 4; }

    std::size_t KeyEnd(std::size_t at, std::size_t end) const
    {
        const std::size_t step = m_isWide ? 2 : 1;
        for (; at + step <= end; at += step)
            if ((m_isWide ? Word(at) : m_block[at]) == 0) return at + step;
        return 0;
    }

    void Node(std::size_t at, std::size_t parentEnd, int level) const
    {
        const std::size_t end = at + Word(at);
        fuzz::Require(end <= parentEnd, "a node lies in its parent");
        const std::size_t keyEnd = KeyEnd(at + (m_isWide ? 6 : 4), end);
        if (keyEnd == 0) return; // one that is not found
        const std::size_t unit = m_isWide && Word(at + 4) == 1 ? 2 : 1;
        const std::size_t value = std::min(Aligned(keyEnd), end);
        const std::size_t valueEnd = value + Word(at + 2) * unit;
        fuzz::Require(valueEnd <= end, "a value lies in its node");
        if (level == 3) return;
        for (std::size_t child = Aligned(valueEnd); child < end;) {
            if (end - child < 2 || Word(child) == 0) return;
            Node(child, end, level + 1);
            child = Aligned(child + Word(child));
        }
    }

    const std::vector<unsigned char>& m_block;
    bool m_isWide;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    fuzz::Input input(data, size);
    const auto layout =
        input.Take<std::uint8_t>() % 2 ? VersionLayout::narrow : VersionLayout::wide;
    const std::string_view rest = input.Rest();
    if (rest.empty()) return 0; // the platform reads no resource of no bytes
    std::vector<unsigned char> block(rest.begin(), rest.end());
    if (utils_statics::MendVersionNodes(block.data(), block.size(), layout))
        NodeWalk(block, layout).Root();
    else
        fuzz::Require(std::all_of(block.begin(), block.end(), [](auto byte) { return byte == 0; }),
                      "an unsound block is cleared");
    return 0;
}
