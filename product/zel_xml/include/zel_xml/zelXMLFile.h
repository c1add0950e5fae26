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
/// A conformant parser of XML 1.0 decides what is well-formed. It reads UTF-8 (with or without a
/// byte order mark), UTF-16 of both byte orders, and by declaration US-ASCII, ISO-8859-1 and
/// windows-1252. Documents are written in UTF-8. They may have up to 16 MiB, with the entities of
/// their type expanded, and up to 256 levels of elements. No other file is fetched for a document.
/// One document belongs to one thread at a time. Nothing here throws.
class ZEL_XML_API zelXMLFile
{
public:
    zelXMLFile() noexcept;

    /// Reads the whole file and keeps no handle to it. An open document is closed first. With
    /// readOnly false the document may be saved to the same path. False, with nothing open, when
    /// the file is missing, unreadable, empty, too large, too deeply nested or not well-formed.
    bool open(const wchar_t* path, bool readOnly) noexcept;
    bool open(const std::wstring& path, bool readOnly) noexcept;

    /// The document element; invalid when nothing is open.
    zelXMLNode getRootElement() const noexcept;

private:
    friend struct zel_xml::XMLAccess;

    std::shared_ptr<zel_xml::XMLDocument> m_document;
    // Absolute, so that a change of the current directory does not move the file.
    std::wstring m_path;
    bool m_readOnly = true;
};
