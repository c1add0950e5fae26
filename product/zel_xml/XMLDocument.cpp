#include "XMLDocument.h"

#include <base/FileContents.h>
#include <base/FileReplacement.h>
#include <base/Handles.h>

#include <algorithm>
#include <atomic>
#include <limits>

namespace zel_xml {

namespace {

// A new file with an unused name, open for writing. It is deleted with the object unless it was
// moved away.
class NewFile
{
public:
    explicit NewFile(const std::wstring& folder)
    {
        static std::atomic<unsigned> serial{0};
        const std::wstring stem = folder + L"~xml" + std::to_wstring(GetCurrentProcessId()) + L"-";
        do {
            m_path = stem + std::to_wstring(++serial) + L".tmp";
            m_file.reset(CreateFileW(m_path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                                     FILE_ATTRIBUTE_NORMAL, nullptr));
        } while (!m_file && GetLastError() == ERROR_FILE_EXISTS);
        m_exists = IsOpen();
    }

    ~NewFile()
    {
        m_file.reset();
        if (m_exists) DeleteFileW(m_path.c_str());
    }

    NewFile(const NewFile&) = delete;
    NewFile& operator=(const NewFile&) = delete;

    bool IsOpen() const { return static_cast<bool>(m_file); }

    bool Write(const std::string& bytes)
    {
        if (bytes.size() > std::numeric_limits<DWORD>::max()) return false;
        const DWORD size = static_cast<DWORD>(bytes.size());
        DWORD written = 0;
        return WriteFile(m_file.get(), bytes.data(), size, &written, nullptr) && written == size;
    }

    bool MoveOver(const std::wstring& path)
    {
        // Without the flush a power cut could leave the new name on a file that was never written.
        if (!FlushFileBuffers(m_file.get())) return false;
        m_file.reset();
        if (!base::MoveOver(m_path.c_str(), path.c_str())) return false;
        m_exists = false;
        return true;
    }

private:
    std::wstring m_path;
    base::File m_file;
    bool m_exists = false;
};

// This is checked explicitly, because some file systems replace a write-protected file.
bool IsWriteProtected(const std::wstring& path)
{
    const DWORD attributes = GetFileAttributesW(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY) != 0;
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

bool XMLDocument::Save(const std::wstring& path) const
{
    const std::string bytes = ToBytes();
    if (IsWriteProtected(path)) return false;
    NewFile file(path.substr(0, path.find_last_of(L"\\/") + 1));
    return file.IsOpen() && file.Write(bytes) && file.MoveOver(path);
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
