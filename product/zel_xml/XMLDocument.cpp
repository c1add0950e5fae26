#include "XMLDocument.h"

#include "XMLText.h"

#include <base/Handles.h>

#include <algorithm>
#include <vector>

namespace zel_xml {

namespace {

// The whole file; false when it cannot be read, is empty or larger than a document may be.
bool ReadBytes(const std::wstring& path, std::string& bytes)
{
    constexpr DWORD shareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    const base::File file(CreateFileW(path.c_str(), GENERIC_READ, shareAll, nullptr, OPEN_EXISTING,
                                      FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file) return false;
    LARGE_INTEGER size{};
    if (!GetFileSizeEx(file.get(), &size) || size.QuadPart <= 0) return false;
    if (size.QuadPart > static_cast<LONGLONG>(XMLDocument::maxFileSize)) return false;
    bytes.resize(static_cast<std::size_t>(size.QuadPart));
    DWORD read = 0;
    return ReadFile(file.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &read, nullptr) &&
           read == bytes.size();
}

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
        m_node = node;
        return IsAllowed(node);
    }

    bool end(pugi::xml_node&) override
    {
        m_node = {};
        return m_roots == 1;
    }

    // The node that is at fault; none when something is missing.
    const pugi::xml_node& Node() const { return m_node; }

private:
    bool IsAllowed(const pugi::xml_node& node)
    {
        if (node.type() != pugi::node_element) return depth() > 0 || IsAllowedOutsideRoot(node);
        if (depth() == 0 && ++m_roots > 1) return false;
        return depth() < XMLDocument::maxDepth && !HasDuplicateAttributes(node);
    }

    static bool IsAllowedOutsideRoot(const pugi::xml_node& node)
    {
        return node.type() != pugi::node_pcdata && node.type() != pugi::node_cdata;
    }

    int m_roots = 0;
    pugi::xml_node m_node;
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

std::shared_ptr<XMLDocument> XMLDocument::Load(const std::wstring& path, int& faultLine)
{
    faultLine = 0;
    std::string bytes;
    if (!ReadBytes(path, bytes)) return nullptr;
    auto document = std::make_shared<XMLDocument>();
    return document->Parse(bytes, faultLine) ? document : nullptr;
}

bool XMLDocument::Parse(std::string_view bytes, int& faultLine)
{
    if (!DecodeXml(bytes, m_text)) return false;
    m_lines = XMLLines(m_text);
    // parse_fragment keeps texts outside the root, so that the check below finds them instead of
    // losing them.
    const pugi::xml_parse_result result =
        m_tree.load_buffer_inplace(m_text.data(), m_text.size() * sizeof(wchar_t),
                                   pugi::parse_full | pugi::parse_fragment, pugi::encoding_wchar);
    if (result) return IsWellShaped(faultLine);
    faultLine = m_lines.At(static_cast<std::size_t>(result.offset));
    return false;
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
    const std::ptrdiff_t position = element ? element.offset_debug() : -1;
    return position < 0 ? 0 : m_lines.At(static_cast<std::size_t>(position));
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

bool XMLDocument::IsWellShaped(int& faultLine) const
{
    ShapeCheck check;
    // Walking needs a node that may be changed; nothing is.
    if (const_cast<pugi::xml_document&>(m_tree).traverse(check)) return true;
    faultLine = LineOf(check.Node());
    return false;
}

} // namespace zel_xml
