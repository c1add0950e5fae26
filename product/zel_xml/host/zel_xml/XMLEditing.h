#pragma once

#include <zel_xml/export.h>
#include <zel_xml/zelXMLFile.h>
#include <zel_xml/zelXMLNode.h>

#include <string>

// What a program does with documents of its own: make, change and save them. Threads and memory as
// of zelXMLFile and zelXMLNode; nothing throws but for want of memory for a returned text.
namespace zel_xml {

/// Starts a new document with an empty root element; what was open before is closed first. Nothing
/// is written before SaveDocument. False, with nothing open, when `rootName` is no XML name or the
/// path is empty.
ZEL_XML_API bool CreateDocument(zelXMLFile& file, const wchar_t* path,
                                const wchar_t* rootName) noexcept;

/// Writes the document beside its file and then puts it in the file's place, so that whatever fails
/// (a full disk, a lost network drive, a file that another program holds) the old file is still
/// there, whole. False when nothing is open, it was opened read-only or the file could not be
/// replaced.
ZEL_XML_API bool SaveDocument(const zelXMLFile& file) noexcept;

/// The same to another path, also for a document opened read-only. The document keeps its own path.
ZEL_XML_API bool SaveDocumentAs(const zelXMLFile& file, const wchar_t* path) noexcept;

/// Lets go of the document; element handles that are still about keep it alive for themselves.
ZEL_XML_API void CloseDocument(zelXMLFile& file) noexcept;

ZEL_XML_API bool IsOpen(const zelXMLFile& file) noexcept;

/// The element's name; empty for an invalid handle.
ZEL_XML_API std::wstring NameOf(const zelXMLNode& element);

/// The element's own text, CDATA included, without that of child elements. White space is text.
ZEL_XML_API std::wstring TextOf(const zelXMLNode& element);

/// The text in the element and in all elements in it, in the order of the document.
ZEL_XML_API std::wstring AllTextOf(const zelXMLNode& element);

/// Replaces the element's own text and leaves its child elements. False, and nothing is written,
/// for an invalid handle or a text with a character that XML cannot hold.
ZEL_XML_API bool SetText(const zelXMLNode& element, const std::wstring& text) noexcept;

ZEL_XML_API bool HasAttribute(const zelXMLNode& element, const wchar_t* name) noexcept;

/// A new, empty last child element, whether or not others have the same name. Invalid when the name
/// is no XML name or the element would lie deeper than 256 levels.
ZEL_XML_API zelXMLNode AppendChild(const zelXMLNode& parent, const wchar_t* name) noexcept;

/// Whether two handles mean the same element; all invalid ones do.
ZEL_XML_API bool IsSameElement(const zelXMLNode& a, const zelXMLNode& b) noexcept;

} // namespace zel_xml
