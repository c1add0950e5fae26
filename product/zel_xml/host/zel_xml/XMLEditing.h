#pragma once

#include <zel_xml/export.h>
#include <zel_xml/zelXMLFile.h>
#include <zel_xml/zelXMLNode.h>

#include <string>

// Functions for a program's own documents: to make, change and save them. zelXMLFile and zelXMLNode
// have the rules on threads and memory. Functions throw only when memory is short for a returned
// text.
namespace zel_xml {

/// Starts a new document with an empty root element; an open one is closed first. Nothing is
/// written before SaveDocument. False, with nothing open, when `rootName` is not an XML name or the
/// path is empty.
ZEL_XML_API bool CreateDocument(zelXMLFile& file, const wchar_t* path,
                                const wchar_t* rootName) noexcept;

/// Writes the document beside its file and then puts it in the file's place. After any failure (a
/// full disk, a lost network drive, a file that another program holds) the old file is still there
/// and whole. False when nothing is open, the document was opened read-only or the file could not
/// be replaced.
ZEL_XML_API bool SaveDocument(const zelXMLFile& file) noexcept;

/// Does the same to another path, even for a document opened read-only. The document keeps its own
/// path.
ZEL_XML_API bool SaveDocumentAs(const zelXMLFile& file, const wchar_t* path) noexcept;

/// Closes the document. Remaining element handles keep it in memory.
ZEL_XML_API void CloseDocument(zelXMLFile& file) noexcept;

/// True while the file has a document, read or created.
ZEL_XML_API bool IsOpen(const zelXMLFile& file) noexcept;

/// The element's name; empty for an invalid handle.
ZEL_XML_API std::wstring NameOf(const zelXMLNode& element);

/// The element's own text, CDATA included, without that of child elements. White space is text.
ZEL_XML_API std::wstring TextOf(const zelXMLNode& element);

/// The text in the element and in all nested elements, in document order.
ZEL_XML_API std::wstring AllTextOf(const zelXMLNode& element);

/// Replaces the element's own text and keeps its child elements. False, with nothing written, for
/// an invalid handle or a text with a character that XML does not allow.
ZEL_XML_API bool SetText(const zelXMLNode& element, const std::wstring& text) noexcept;

/// False for an invalid handle and a null name too.
ZEL_XML_API bool HasAttribute(const zelXMLNode& element, const wchar_t* name) noexcept;

/// Appends a new, empty child element, even when others have the same name. The handle is invalid
/// when the name is not an XML name or the element would lie deeper than 256 levels.
ZEL_XML_API zelXMLNode AppendChild(const zelXMLNode& parent, const wchar_t* name) noexcept;

/// True when two handles mean the same element. All invalid handles mean the same.
ZEL_XML_API bool IsSameElement(const zelXMLNode& a, const zelXMLNode& b) noexcept;

} // namespace zel_xml
