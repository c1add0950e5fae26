#include "XMLDocument.h"

#include <base/FileContents.h>

#include <algorithm>

namespace zel_xml {

namespace {

int DepthOf(pugi::xml_node element) noexcept
{
    int depth = 0;
    for (; element.type() == pugi::node_element; element = element.parent())
        ++depth;
    return depth;
}

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

std::shared_ptr<XMLDocument> XMLDocument::Load(const std::wstring& path, int& faultLine)
{
    faultLine = 0;
    const auto bytes = base::ReadFileWhole(path.c_str(), maxDocumentSize);
    if (!bytes || bytes->empty()) return nullptr;
    auto document = std::make_shared<XMLDocument>();
    faultLine = ParseXml(*bytes, document->m_tree, document->m_lines);
    return faultLine == 0 ? document : nullptr;
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

int XMLDocument::LineOf(const pugi::xml_node& element) const noexcept
{
    const ElementLines::value_type first(element.internal_object(), 0);
    const auto found = std::lower_bound(m_lines.begin(), m_lines.end(), first);
    return found != m_lines.end() && found->first == first.first ? found->second : 0;
}

std::string XMLDocument::ToBytes() const
{
    std::string bytes = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
    ByteWriter writer(bytes);
    for (const pugi::xml_node& node : m_tree.children())
        if (node != m_removed) node.print(writer, L"  ", pugi::format_default, pugi::encoding_utf8);
    return bytes;
}

} // namespace zel_xml
