#include "zel_xml/zelXMLNode.h"

#include "XMLDocument.h"
#include "XMLParser.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <exception>
#include <system_error>
#include <utility>

namespace {

pugi::xml_node FirstElementFrom(pugi::xml_node node) noexcept
{
    while (node && node.type() != pugi::node_element)
        node = node.next_sibling();
    return node;
}

// pugixml's own look-up by name also finds processing instructions.
pugi::xml_node ChildElement(const pugi::xml_node& parent, const wchar_t* name) noexcept
{
    if (!name) return {};
    const std::wstring_view wanted(name);
    pugi::xml_node child = FirstElementFrom(parent.first_child());
    while (child && wanted != child.name())
        child = FirstElementFrom(child.next_sibling());
    return child;
}

pugi::xml_attribute AttributeOf(pugi::xml_node_struct* element, const wchar_t* name) noexcept
{
    return name ? pugi::xml_node(element).attribute(name) : pugi::xml_attribute();
}

// The texts of numbers do not depend on the locale.
constexpr int maxPrecision = 30;
constexpr std::size_t maxNumberText = 512; // the largest double has 309 digits before the point

// The number without surrounding white space and plus sign, as the narrow text that <charconv>
// reads.
class NumberText
{
public:
    explicit NumberText(std::wstring_view text) noexcept
    {
        constexpr std::wstring_view space = L" \t\r\n";
        const std::size_t begin = std::min(text.find_first_not_of(space), text.size());
        text.remove_prefix(begin);
        text.remove_suffix(text.size() - (text.find_last_not_of(space) + 1));
        if (text.size() > 1 && text[0] == L'+' && text[1] != L'-') text.remove_prefix(1);
        if (text.size() > m_text.size()) return;
        for (const wchar_t c : text) {
            if (c > 0x7F) return;
            m_text[m_length++] = static_cast<char>(c);
        }
        m_usable = m_length > 0;
    }

    // `otherwise` when the text is no number of this type.
    template <typename Number>
    Number ValueOr(Number otherwise) const noexcept
    {
        Number number{};
        const char* end = m_text.data() + m_length;
        const auto [stop, error] = std::from_chars(m_text.data(), end, number);
        const bool isNumber = m_usable && error == std::errc{} && stop == end;
        return isNumber ? number : otherwise;
    }

private:
    std::array<char, maxNumberText> m_text{};
    std::size_t m_length = 0;
    bool m_usable = false;
};

std::wstring FormatDouble(double value, int precision)
{
    std::array<char, maxNumberText> text;
    char* const begin = text.data();
    char* const end = begin + text.size();
    const auto result = precision < 0 ? std::to_chars(begin, end, value)
                                      : std::to_chars(begin, end, value, std::chars_format::fixed,
                                                      std::min(precision, maxPrecision));
    return std::wstring(begin, result.ptr);
}

// Runs a write that needs memory and returns false when memory is short.
template <typename Write>
bool Guarded(const Write& write) noexcept
{
    try {
        return write();
    } catch (const std::exception&) {
        return false;
    }
}

} // namespace

zelXMLNode::zelXMLNode() noexcept = default;

zelXMLNode::zelXMLNode(std::shared_ptr<zel_xml::XMLDocument> document,
                       pugi::xml_node_struct* element) noexcept
    : m_document(std::move(document)), m_element(element)
{
}

bool zelXMLNode::isValid() const noexcept
{
    return m_element != nullptr;
}

zelXMLNode zelXMLNode::getFirstChild() const noexcept
{
    return {m_document,
            FirstElementFrom(pugi::xml_node(m_element).first_child()).internal_object()};
}

zelXMLNode& zelXMLNode::operator++() noexcept
{
    const pugi::xml_node element(m_element);
    const bool last = !element || m_document->IsRemoved(element);
    m_element = last ? nullptr : FirstElementFrom(element.next_sibling()).internal_object();
    return *this;
}

zelXMLNode zelXMLNode::operator++(int) noexcept
{
    zelXMLNode before = *this;
    ++*this;
    return before;
}

zelXMLNode zelXMLNode::getChildByName(const wchar_t* name, bool create) const noexcept
{
    const pugi::xml_node element(m_element);
    pugi::xml_node child = ChildElement(element, name);
    if (!child && create) child = zel_xml::XMLDocument::Append(element, name);
    return {m_document, child.internal_object()};
}

bool zelXMLNode::removeChildByName(const wchar_t* name) const noexcept
{
    const pugi::xml_node child = ChildElement(pugi::xml_node(m_element), name);
    return child && m_document->Remove(child);
}

bool zelXMLNode::removeAttribute(const wchar_t* name) const noexcept
{
    return pugi::xml_node(m_element).remove_attribute(AttributeOf(m_element, name));
}

std::wstring zelXMLNode::getAttribute(const wchar_t* name, const wchar_t* defaultValue) const
{
    // pugixml's own default also replaces an empty text.
    const pugi::xml_attribute attribute = AttributeOf(m_element, name);
    if (attribute) return attribute.value();
    return defaultValue ? defaultValue : L"";
}

int zelXMLNode::getAttributeInt(const wchar_t* name, int defaultValue) const noexcept
{
    return NumberText(AttributeOf(m_element, name).value()).ValueOr(defaultValue);
}

double zelXMLNode::getAttributeDouble(const wchar_t* name, double defaultValue) const noexcept
{
    return NumberText(AttributeOf(m_element, name).value()).ValueOr(defaultValue);
}

bool zelXMLNode::setAttribute(const wchar_t* name, const wchar_t* value) const noexcept
{
    if (!value) value = L"";
    pugi::xml_node element(m_element);
    if (!element || !zel_xml::IsXmlName(name) || !zel_xml::IsXmlText(value)) return false;
    pugi::xml_attribute attribute = element.attribute(name);
    if (!attribute) attribute = element.append_attribute(name);
    return attribute.set_value(value);
}

bool zelXMLNode::setAttribute(const wchar_t* name, const std::wstring& value) const noexcept
{
    // A text with a zero inside would be cut silently.
    return value.find(L'\0') == std::wstring::npos && setAttribute(name, value.c_str());
}

bool zelXMLNode::setAttributeInt(const wchar_t* name, int value) const noexcept
{
    return Guarded([&] { return setAttribute(name, std::to_wstring(value)); });
}

bool zelXMLNode::setAttributeDouble(const wchar_t* name, double value, int precision) const noexcept
{
    return Guarded([&] { return setAttribute(name, FormatDouble(value, precision)); });
}
