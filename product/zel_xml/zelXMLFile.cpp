#include <zel_xml/zelXMLFile.h>

#include "XMLAccess.h"
#include "XMLDocument.h"

#include <base/FilePath.h>
#include <base/Handles.h>

#include <zel_xml/XMLEditing.h>

#include <exception>
#include <utility>

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
    if (size.QuadPart > static_cast<LONGLONG>(zel_xml::XMLDocument::maxFileSize)) return false;
    bytes.resize(static_cast<std::size_t>(size.QuadPart));
    DWORD read = 0;
    return ReadFile(file.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &read, nullptr) &&
           read == bytes.size();
}

} // namespace

zelXMLFile::zelXMLFile() noexcept = default;

bool zelXMLFile::open(const wchar_t* path, bool readOnly) noexcept
{
    zel_xml::CloseDocument(*this);
    try {
        std::wstring full = base::FullPath(path);
        std::string bytes;
        if (full.empty() || !ReadBytes(full, bytes)) return false;
        m_document = zel_xml::XMLDocument::Parse(bytes);
        m_path = std::move(full);
        m_readOnly = readOnly;
    } catch (const std::exception&) // out of memory
    {
        zel_xml::CloseDocument(*this);
    }
    return m_document != nullptr;
}

bool zelXMLFile::open(const std::wstring& path, bool readOnly) noexcept
{
    return open(path.c_str(), readOnly);
}

zelXMLNode zelXMLFile::getRootElement() const noexcept
{
    return m_document ? zel_xml::XMLAccess::Node(m_document, m_document->Root()) : zelXMLNode();
}
