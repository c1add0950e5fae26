#pragma once

#include "XMLParser.h"

#include <pugixml.hpp>

#include <memory>
#include <string>

namespace zel_xml {

// The tree behind the handles: shared by a zelXMLFile and every zelXMLNode into it.
//
// Removed elements are not freed but kept below an element of their own after the root, out of
// sight and out of what is saved: a handle that still means one of them stays sound.
class XMLDocument
{
public:
    XMLDocument() = default;
    XMLDocument(const XMLDocument&) = delete;
    XMLDocument& operator=(const XMLDocument&) = delete;

    // The document in an XML file (an absolute path), or null when it cannot be read. faultLine is
    // then the line on which it is not well-formed or goes beyond a limit; 0 when the file itself
    // is at fault.
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
    pugi::xml_document m_tree;
    ElementLines m_lines; // of the elements that were read, by their addresses
    pugi::xml_node m_removed;
};

} // namespace zel_xml
