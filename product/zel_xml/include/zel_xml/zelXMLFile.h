#pragma once

#include <zel_xml/export.h>
#include <zel_xml/zelXMLNode.h>

#include <memory>
#include <string>

namespace zel_xml {
struct XMLAccess;
}

/// An XML document and the file it came from. Copies mean the same document in memory.
///
/// A conformant parser of XML 1.0 decides what is well-formed. Read are UTF-8 (with or without a
/// byte order mark), UTF-16 of both byte orders, US-ASCII, ISO-8859-1 and windows-1252 as the
/// declaration says; written is UTF-8. Documents of up to 16 MiB, with the entities of their type
/// expanded, and of up to 256 levels of elements are accepted. No other file is fetched for a
/// document. Threads: one document belongs to one thread at a time. Nothing here throws.
class ZEL_XML_API zelXMLFile
{
public:
    zelXMLFile() noexcept;

    /// Reads the whole file and holds no handle on it afterwards. What was open before is closed
    /// first. readOnly: true opens for reading only; false allows saving back to the same path.
    /// False, with nothing open, when the file is missing, unreadable, empty, too large, too deeply
    /// nested or not well-formed.
    bool open(const wchar_t* path, bool readOnly) noexcept;
    bool open(const std::wstring& path, bool readOnly) noexcept;

    /// The document element; invalid when nothing is open.
    zelXMLNode getRootElement() const noexcept;

private:
    friend struct zel_xml::XMLAccess;

    std::shared_ptr<zel_xml::XMLDocument> m_document;
    std::wstring
        m_path; // absolute, so that a change of the current directory does not move the file
    bool m_readOnly = true;
};
