#include "zel_xml/XMLEditing.h"

#include "XMLAccess.h"
#include "XMLParser.h"

#include <base/FilePath.h>

#include <exception>
#include <utility>

namespace zel_xml {

namespace {

bool WriteDocument(const XMLDocument& document, const std::wstring& path) noexcept
{
    try {
        return document.Save(path);
    } catch (const std::exception&) {
        return false;
    }
}

bool IsOwnText(const pugi::xml_node& node) noexcept
{
    return node.type() == pugi::node_pcdata || node.type() == pugi::node_cdata;
}

// The recursion is bounded, because elements lie at most as deep as a document may be.
void AppendText(const pugi::xml_node& element, std::wstring& text)
{
    for (const pugi::xml_node& child : element.children()) {
        if (IsOwnText(child)) text += child.value();
        AppendText(child, text);
    }
}

void RemoveOwnText(pugi::xml_node element) noexcept
{
    for (pugi::xml_node child = element.first_child(); child;) {
        const pugi::xml_node next = child.next_sibling();
        if (IsOwnText(child)) element.remove_child(child); // nobody holds a handle to a text
        child = next;
    }
}

} // namespace

bool CreateDocument(zelXMLFile& file, const wchar_t* path, const wchar_t* rootName) noexcept
{
    CloseDocument(file);
    try {
        std::wstring full = base::FullPath(path);
        if (full.empty() || !IsXmlName(rootName)) return false;
        XMLAccess::Put(file, XMLDocument::Create(rootName), std::move(full), false);
    } catch (const std::exception&) {
        CloseDocument(file);
    }
    return IsOpen(file);
}

bool SaveDocument(const zelXMLFile& file) noexcept
{
    const bool isWritable = IsOpen(file) && !XMLAccess::IsReadOnly(file);
    return isWritable && WriteDocument(*XMLAccess::DocumentOf(file), XMLAccess::PathOf(file));
}

bool SaveDocumentAs(const zelXMLFile& file, const wchar_t* path) noexcept
{
    try {
        const std::wstring full = base::FullPath(path);
        return IsOpen(file) && !full.empty() && WriteDocument(*XMLAccess::DocumentOf(file), full);
    } catch (const std::exception&) {
        return false;
    }
}

void CloseDocument(zelXMLFile& file) noexcept
{
    XMLAccess::Put(file, nullptr, std::wstring(), true);
}

bool IsOpen(const zelXMLFile& file) noexcept
{
    return XMLAccess::DocumentOf(file) != nullptr;
}

std::wstring NameOf(const zelXMLNode& element)
{
    return XMLAccess::ElementOf(element).name();
}

std::wstring TextOf(const zelXMLNode& element)
{
    std::wstring text;
    for (const pugi::xml_node& child : XMLAccess::ElementOf(element).children())
        if (IsOwnText(child)) text += child.value();
    return text;
}

std::wstring AllTextOf(const zelXMLNode& element)
{
    std::wstring text;
    AppendText(XMLAccess::ElementOf(element), text);
    return text;
}

bool SetText(const zelXMLNode& node, const std::wstring& text) noexcept
{
    pugi::xml_node element = XMLAccess::ElementOf(node);
    if (!element || !IsXmlText(text)) return false;
    RemoveOwnText(element);
    if (text.empty()) return true;
    pugi::xml_node child = element.prepend_child(pugi::node_pcdata);
    return child && child.set_value(text.c_str());
}

bool HasAttribute(const zelXMLNode& element, const wchar_t* name) noexcept
{
    return name && XMLAccess::ElementOf(element).attribute(name);
}

zelXMLNode AppendChild(const zelXMLNode& parent, const wchar_t* name) noexcept
{
    const pugi::xml_node child = XMLDocument::Append(XMLAccess::ElementOf(parent), name);
    return child ? XMLAccess::Node(XMLAccess::DocumentOf(parent), child) : zelXMLNode();
}

bool IsSameElement(const zelXMLNode& a, const zelXMLNode& b) noexcept
{
    return XMLAccess::ElementOf(a) == XMLAccess::ElementOf(b);
}

} // namespace zel_xml
