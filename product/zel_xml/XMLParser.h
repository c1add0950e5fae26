#pragma once

#include <pugixml.hpp>

#include <string_view>
#include <utility>
#include <vector>

namespace zel_xml {

// The most that a document may have: bytes with its entities expanded, and elements one in another.
constexpr std::size_t maxDocumentSize = 16u << 20;
constexpr int maxDepth = 256;

// Elements with the lines they begin on.
using ElementLines = std::vector<std::pair<const pugi::xml_node_struct*, int>>;

// Reads a document into an empty tree. expat decides what is well-formed; entities of the document
// type are expanded and its default attributes filled in, within the limits above. Entities of
// other files are not fetched.
//
// The line on which the document is not well-formed or goes beyond a limit; 0 when it was read.
int ParseXml(std::string_view bytes, pugi::xml_document& tree, ElementLines& lines);

// Whether the text can name an element or an attribute. False for want of memory, too.
bool IsXmlName(const wchar_t* name) noexcept;

} // namespace zel_xml
