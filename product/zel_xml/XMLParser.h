#pragma once

#include <pugixml.hpp>

#include <string_view>
#include <utility>
#include <vector>

namespace zel_xml {

// The limits of a document: bytes with its entities expanded, and levels of nested elements.
constexpr std::size_t maxDocumentSize = 16u << 20;
constexpr int maxDepth = 256;

// Elements with the lines they begin on.
using ElementLines = std::vector<std::pair<const pugi::xml_node_struct*, int>>;

// Reads a document of at most that size into an empty tree. expat decides what is well-formed.
// Entities of the document type are expanded and its default attributes filled in, within the
// limits above. External entities are not fetched.
//
// Returns the line on which the document is not well-formed or exceeds a limit; 0 when it was read.
int ParseXml(std::string_view bytes, pugi::xml_document& tree, ElementLines& lines);

// True when the text can name an element or an attribute. False also when memory is short.
bool IsXmlName(const wchar_t* name) noexcept;

// True when XML 1.0 allows every character (no lone surrogates, no control codes but tab and line
// ends).
bool IsXmlText(std::wstring_view text) noexcept;

} // namespace zel_xml
