#include "XMLDocument.h"

#include "XMLText.h"

#include <algorithm>
#include <vector>

namespace zel_xml {

namespace {

bool HasDuplicateAttributes(const pugi::xml_node& element)
{
    if (element.first_attribute() == element.last_attribute()) return false;
    std::vector<std::wstring_view> names;
    for (const pugi::xml_attribute& attribute : element.attributes())
        names.emplace_back(attribute.name());
    std::sort(names.begin(), names.end());
    return std::adjacent_find(names.begin(), names.end()) != names.end();
}

int DepthOf(pugi::xml_node element) noexcept
{
    int depth = 0;
    for (; element.type() == pugi::node_element; element = element.parent())
        ++depth;
    return depth;
}

// Looks for what the parser lets pass.
class ShapeCheck : public pugi::xml_tree_walker
{
public:
    bool for_each(pugi::xml_node& node) override
    {
        if (node.type() != pugi::node_element) return depth() > 0 || IsAllowedOutsideRoot(node);
        if (depth() == 0 && ++m_roots > 1) return false;
        return depth() < XMLDocument::maxDepth && !HasDuplicateAttributes(node);
    }

    bool end(pugi::xml_node&) override { return m_roots == 1; }

private:
    static bool IsAllowedOutsideRoot(const pugi::xml_node& node)
    {
        return node.type() != pugi::node_pcdata && node.type() != pugi::node_cdata;
    }

    int m_roots = 0;
};

class ByteWriter : public pugi::xml_writer
{
public:
    explicit ByteWriter(std::string& bytes) : m_bytes(bytes) {}
    void write(const void* data, size_t size) override
    {
        m_bytes.append(static_cast<const char*>(data), size);
    }

private:
    std::string& m_bytes;
};

} // namespace

std::shared_ptr<XMLDocument> XMLDocument::Parse(std::string_view bytes)
{
    auto document = std::make_shared<XMLDocument>();
    std::wstring& text = document->m_text;
    if (!DecodeXml(bytes, text)) return nullptr;
    // parse_fragment keeps texts outside the root, so that the check below finds them instead of
    // losing them.
    const pugi::xml_parse_result result = document->m_tree.load_buffer_inplace(
        text.data(), text.size() * sizeof(wchar_t), pugi::parse_full | pugi::parse_fragment,
        pugi::encoding_wchar);
    return result && document->IsWellShaped() ? document : nullptr;
}

std::shared_ptr<XMLDocument> XMLDocument::Create(const wchar_t* rootName)
{
    auto document = std::make_shared<XMLDocument>();
    return document->m_tree.append_child(rootName) ? document : nullptr;
}

pugi::xml_node XMLDocument::Root() const
{
    return m_tree.document_element();
}

bool XMLDocument::Remove(pugi::xml_node element)
{
    if (!m_removed) m_removed = m_tree.append_child(L"removed");
    return !m_removed.append_move(element).empty();
}

pugi::xml_node XMLDocument::Append(pugi::xml_node parent, const wchar_t* name)
{
    const bool isPossible = parent && IsXmlName(name) && DepthOf(parent) < maxDepth;
    return isPossible ? parent.append_child(name) : pugi::xml_node();
}

std::string XMLDocument::ToBytes() const
{
    std::string bytes = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
    ByteWriter writer(bytes);
    for (const pugi::xml_node& node : m_tree.children())
        if (node != m_removed && node.type() != pugi::node_declaration)
            node.print(writer, L"  ", pugi::format_default, pugi::encoding_utf8);
    return bytes;
}

bool XMLDocument::IsWellShaped() const
{
    ShapeCheck check;
    // Walking needs a node that may be changed; nothing is.
    return const_cast<pugi::xml_document&>(m_tree).traverse(check);
}

} // namespace zel_xml
