#include <zel_xml/zelXMLFile.h>

#include "AtomicFile.h"
#include "XMLText.h"
#include "zelXMLDocument.h"

#include <exception>
#include <utility>

namespace {

// The whole file; false when it cannot be read, is empty or larger than a document may be.
bool readBytes(const std::wstring& path, std::string& bytes)
{
    constexpr DWORD shareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    const HANDLE opened = CreateFileW(path.c_str(), GENERIC_READ, shareAll, nullptr, OPEN_EXISTING,
                                      FILE_ATTRIBUTE_NORMAL, nullptr);
    if (opened == INVALID_HANDLE_VALUE) return false;
    const zel_xml::FileHandle file(opened);
    LARGE_INTEGER size{};
    if (!GetFileSizeEx(file.get(), &size) || size.QuadPart <= 0) return false;
    if (size.QuadPart > static_cast<LONGLONG>(zelXMLDocument::maxFileSize)) return false;
    bytes.resize(static_cast<std::size_t>(size.QuadPart));
    DWORD read = 0;
    return ReadFile(file.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &read, nullptr) &&
           read == bytes.size();
}

bool writeDocument(const zelXMLDocument& document, const std::wstring& path) noexcept
{
    try {
        const std::string bytes = document.toBytes();
        return zel_xml::replaceFile(
            path, [&bytes](HANDLE file) { return zel_xml::writeBytes(file, bytes); });
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
        std::wstring full = zel_xml::absolutePath(path);
        std::string bytes;
        if (full.empty() || !readBytes(full, bytes)) return false;
        m_document = zelXMLDocument::parse(bytes);
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
        std::wstring full = zel_xml::absolutePath(path);
        if (full.empty() || !zel_xml::isXmlName(rootName)) return false;
        m_document = zelXMLDocument::create(rootName);
        m_path = std::move(full);
        m_readOnly = false;
    } catch (const std::exception&) {
        close();
    }
    return isOpen();
}

bool zelXMLFile::save() const noexcept
{
    return isOpen() && !m_readOnly && writeDocument(*m_document, m_path);
}

bool zelXMLFile::saveAs(const wchar_t* path) const noexcept
{
    try {
        const std::wstring full = zel_xml::absolutePath(path);
        return isOpen() && !full.empty() && writeDocument(*m_document, full);
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
    return isOpen() ? zelXMLNode(m_document, m_document->root().internal_object()) : zelXMLNode();
}
