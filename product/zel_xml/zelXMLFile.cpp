#include "zel_xml/zelXMLFile.h"

#include "XMLAccess.h"
#include "XMLDocument.h"

#include <base/FilePath.h>
#include <zel_xml/XMLEditing.h>

#include <exception>
#include <utility>

zelXMLFile::zelXMLFile() noexcept = default;

bool zelXMLFile::open(const wchar_t* path, bool readOnly) noexcept
{
    zel_xml::CloseDocument(*this);
    try {
        std::wstring full = base::FullPath(path);
        int faultLine = 0;
        m_document = zel_xml::XMLDocument::Load(full, faultLine);
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
