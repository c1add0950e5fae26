#pragma once

#include <zel_xml/export.h>
#include <zel_xml/zelXMLNode.h>

#include <string>
#include <vector>

// Positions in the files that documents were read from, for programs that tell authors what is
// wrong with a file. Lines count from 1. zelXMLNode has the rules on threads. Functions throw only
// when memory is short for returned texts.
namespace zel_xml {

/// The line that an element begins on; 0 for an element that was not read from a file, and for an
/// invalid handle.
ZEL_XML_API int LineOf(const zelXMLNode& element) noexcept;

/// The line on which a file is not well-formed or exceeds a limit of zelXMLFile. 0 for a file that
/// zelXMLFile reads, and for one that is missing, unreadable, empty or too large.
ZEL_XML_API int FaultLineOf(const wchar_t* path) noexcept;

/// The names of an element's attributes, in their order; none for an invalid handle.
ZEL_XML_API std::vector<std::wstring> AttributeNamesOf(const zelXMLNode& element);

} // namespace zel_xml
