#pragma once

#include "XMLParser.h"

#include <pugixml.hpp>

#include <memory>
#include <string>

namespace zel_xml {

// The tree behind the handles. A zelXMLFile and every zelXMLNode into it share it.
//
// Removed elements are not freed but kept below a separate element after the root. Navigation and
// saving do not reach them, and handles to them stay usable.
class XMLDocument
{
public:
    XMLDocument() = default;
    XMLDocument(const XMLDocument&) = delete;
    XMLDocument& operator=(const XMLDocument&) = delete;

    // Reads the document in an XML file (an absolute path); null when that fails. faultLine is then
    // the line on which it is not well-formed or exceeds a limit; 0 when the file itself is at
    // fault.
    static std::shared_ptr<XMLDocument> Load(const std::wstring& path, int& faultLine);

    // Makes a document with an empty root element.
    static std::shared_ptr<XMLDocument> Create(const wchar_t* rootName);

    pugi::xml_node Root() const;
    bool Remove(pugi::xml_node element);

    // Appends a new, empty child element; null when the name is not an XML name or the depth is too
    // great.
    static pugi::xml_node Append(pugi::xml_node parent, const wchar_t* name);

    bool IsRemoved(const pugi::xml_node& element) const
    {
        return m_removed && element.parent() == m_removed;
    }

    // The line of the file that an element begins on; 0 for one that was not read from a file.
    int LineOf(const pugi::xml_node& element) const noexcept;

    // Writes a new file beside path (absolute) and puts it in path's place in one step. On any
    // failure, even want of memory, path is unchanged and nothing is left beside it.
    bool Save(const std::wstring& path) const;

private:
    // The whole document in UTF-8 with its declaration.
    std::string ToBytes() const;

    pugi::xml_document m_tree;
    ElementLines m_lines; // the elements that were read, sorted by address
    pugi::xml_node m_removed;
};

} // namespace zel_xml
