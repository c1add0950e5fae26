#pragma once

#include "XMLLines.h"

#include <pugixml.hpp>

#include <memory>
#include <string>
#include <string_view>

namespace zel_xml {

// The tree behind the handles: shared by a zelXMLFile and every zelXMLNode into it.
//
// Removed elements are not freed but kept below an element of their own after the root, out of
// sight and out of what is saved: a handle that still means one of them stays sound.
class XMLDocument
{
public:
    static constexpr std::size_t maxFileSize = 16u << 20;
    static constexpr int maxDepth = 256;

    XMLDocument() = default;
    XMLDocument(const XMLDocument&) = delete;
    XMLDocument& operator=(const XMLDocument&) = delete;

    // The document in an XML file (an absolute path), or null when there is none. faultLine is then
    // the line on which the file is not well-formed; otherwise it is 0.
    static std::shared_ptr<XMLDocument> Load(const std::wstring& path, int& faultLine);

    // A document with an empty root element.
    static std::shared_ptr<XMLDocument> Create(const wchar_t* rootName);

    pugi::xml_node Root() const;
    bool Remove(pugi::xml_node element);

    // A new, empty last child element; null when the name is none or the depth too great.
    static pugi::xml_node Append(pugi::xml_node parent, const wchar_t* name);

    bool IsRemoved(const pugi::xml_node& element) const
    {
        return m_removed && element.parent() == m_removed;
    }

    // The line of the file that an element begins on; 0 for one that was not read from a file.
    int LineOf(const pugi::xml_node& element) const noexcept;

    // The whole document in UTF-8 with its declaration.
    std::string ToBytes() const;

private:
    bool Parse(std::string_view bytes, int& faultLine);
    bool IsWellShaped(int& faultLine) const;

    std::wstring m_text; // the parser works in place: names and values of m_tree point into it
    XMLLines m_lines;    // of m_text as it was read
    pugi::xml_document m_tree;
    pugi::xml_node m_removed;
};

} // namespace zel_xml
