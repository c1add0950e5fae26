#include <zel_xml/zelXMLFile.h>

#include "AtomicFile.h"
#include "XMLDocument.h"
#include "XMLText.h"

#include <base/FilePath.h>
#include <base/Handles.h>

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

bool WriteDocument(const zel_xml::XMLDocument& document, const std::wstring& path) noexcept
{
    try {
        const std::string bytes = document.ToBytes();
        return zel_xml::ReplaceAtomically(
            path, [&bytes](HANDLE file) { return zel_xml::WriteBytes(file, bytes); });
    } catch (const std::exception&) {
        return false;
    }
}

} // namespace

zelXMLFile::zelXMLFile() noexcept = default;

bool zelXMLFile::open(const wchar_t* path, bool readOnly) noexcept
{
    close();
    try {
        std::wstring full = base::FullPath(path);
        std::string bytes;
        if (full.empty() || !ReadBytes(full, bytes)) return false;
        m_document = zel_xml::XMLDocument::Parse(bytes);
        m_path = std::move(full);
        m_readOnly = readOnly;
    } catch (const std::exception&) // out of memory
    {
        close();
    }
    return isOpen();
}

bool zelXMLFile::open(const std::wstring& path, bool readOnly) noexcept
{
    return open(path.c_str(), readOnly);
}

bool zelXMLFile::create(const wchar_t* path, const wchar_t* rootName) noexcept
{
    close();
    try {
        std::wstring full = base::FullPath(path);
        if (full.empty() || !zel_xml::IsXmlName(rootName)) return false;
        m_document = zel_xml::XMLDocument::Create(rootName);
        m_path = std::move(full);
        m_readOnly = false;
    } catch (const std::exception&) {
        close();
    }
    return isOpen();
}

bool zelXMLFile::save() const noexcept
{
    return isOpen() && !m_readOnly && WriteDocument(*m_document, m_path);
}

bool zelXMLFile::saveAs(const wchar_t* path) const noexcept
{
    try {
        const std::wstring full = base::FullPath(path);
        return isOpen() && !full.empty() && WriteDocument(*m_document, full);
    } catch (const std::exception&) {
        return false;
    }
}

void zelXMLFile::close() noexcept
{
    m_document.reset();
    m_path.clear();
    m_readOnly = true;
}

bool zelXMLFile::isOpen() const noexcept
{
    return m_document != nullptr;
}

zelXMLNode zelXMLFile::getRootElement() const noexcept
{
    return isOpen() ? zelXMLNode(m_document, m_document->Root().internal_object()) : zelXMLNode();
}
