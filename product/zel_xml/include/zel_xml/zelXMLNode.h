#pragma once

#include <zel_xml/export.h>

#include <memory>
#include <string>

namespace pugi {
struct xml_node_struct;
}

namespace zel_xml {
class XMLDocument;
struct XMLAccess;
} // namespace zel_xml

/// A handle to one element of an XML document: two pointers, returned and passed by value. Copies
/// mean the same element.
///
/// A handle keeps its document in memory, so it stays usable after the zelXMLFile is closed or
/// gone. A handle to an element that was removed stays usable too; the element is only no longer
/// part of what is saved. Every operation may be called on an invalid handle (one that is
/// default-constructed or means "there is none"): it returns nothing, the given default or false.
///
/// Constness is that of the handle, not of the element: a const handle can write. All handles of
/// one document belong to one thread at a time. Members throw only when memory is short for a
/// returned text.
class ZEL_XML_API zelXMLNode
{
public:
    zelXMLNode() noexcept;

    /// True when the handle means an element.
    bool isValid() const noexcept;

    /// The first child element, or an invalid handle. Texts, comments and instructions are skipped.
    zelXMLNode getFirstChild() const noexcept;

    /// Moves on to the next sibling element; becomes invalid after the last one and on an element
    /// that was removed.
    zelXMLNode& operator++() noexcept;
    zelXMLNode operator++(int) noexcept;

    /// The first child element of that name. When there is none, the result is an invalid handle
    /// or, with create, a new, empty last child. That is invalid too when the name is not an XML
    /// name or the element would lie deeper than 256 levels.
    zelXMLNode getChildByName(const wchar_t* name, bool create) const noexcept;

    /// Removes the first child element of that name; false when there is none.
    bool removeChildByName(const wchar_t* name) const noexcept;

    /// Removes the attribute; false when there is none.
    bool removeAttribute(const wchar_t* name) const noexcept;

    /// The attribute's text, or the default when the attribute is missing. A null default counts as
    /// empty.
    std::wstring getAttribute(const wchar_t* name, const wchar_t* defaultValue = L"") const;

    /// The attribute as a decimal integer with an optional sign; surrounding white space is
    /// ignored. A missing attribute, any other text and a value that does not fit 32 bits give the
    /// default.
    int getAttributeInt(const wchar_t* name, int defaultValue) const noexcept;

    /// The attribute as a real number with a decimal point in every locale and an optional sign and
    /// exponent; surrounding white space is ignored. "inf" and "nan" are numbers too. A missing
    /// attribute, any other text and a value outside the range of double give the default.
    double getAttributeDouble(const wchar_t* name, double defaultValue) const noexcept;

    /// Each writes the attribute, adding it when it is missing. False, with nothing written, for an
    /// invalid handle, a name that is not an XML name or a text with a character that XML does not
    /// allow. A null value counts as empty.
    bool setAttribute(const wchar_t* name, const wchar_t* value) const noexcept;
    bool setAttribute(const wchar_t* name, const std::wstring& value) const noexcept;
    bool setAttributeInt(const wchar_t* name, int value) const noexcept;

    /// precision is the number of digits after the decimal point (0 to 30; more means 30). A
    /// negative one (usually -1) gives the shortest text that getAttributeDouble reads back as the
    /// same value.
    bool setAttributeDouble(const wchar_t* name, double value, int precision) const noexcept;

private:
    friend struct zel_xml::XMLAccess;

    zelXMLNode(std::shared_ptr<zel_xml::XMLDocument> document,
               pugi::xml_node_struct* element) noexcept;

    std::shared_ptr<zel_xml::XMLDocument> m_document;
    pugi::xml_node_struct* m_element = nullptr; // null when invalid
};
