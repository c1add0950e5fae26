#include "XMLDocument.h"

#include <base/Handles.h>

#include <algorithm>

namespace zel_xml {

namespace {

// Reads the whole file; false when it cannot be read, is empty or is too large for a document.
bool ReadBytes(const std::wstring& path, std::string& bytes)
{
    constexpr DWORD shareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    const base::File file(CreateFileW(path.c_str(), GENERIC_READ, shareAll, nullptr, OPEN_EXISTING,
                                      FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file) return false;
    LARGE_INTEGER size{};
    if (!GetFileSizeEx(file.get(), &size) || size.QuadPart <= 0) return false;
    if (size.QuadPart > static_cast<LONGLONG>(maxDocumentSize)) return false;
    bytes.resize(static_cast<std::size_t>(size.QuadPart));
    DWORD read = 0;
    return ReadFile(file.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &read, nullptr) &&
           read == bytes.size();
}

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
    std::string bytes;
    if (!ReadBytes(path, bytes)) return nullptr;
    auto document = std::make_shared<XMLDocument>();
    faultLine = ParseXml(bytes, document->m_tree, document->m_lines);
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
