#include "XliffFile.h"

#include <base/Encoding.h>
#include <base/Handles.h>

#include <windows.h>

#include <pugixml.hpp>

#include <string_view>

namespace zel_string_convert {
namespace {

constexpr LONGLONG largestFile = 64 << 20;

// Thrown and caught in this file only.
struct NotATable
{
    std::wstring reason;
};

std::vector<char> ReadBytes(const std::wstring& path)
{
    const base::File file(CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr,
                                      OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    LARGE_INTEGER size = {};
    if (!file || !GetFileSizeEx(file.get(), &size)) throw NotATable{L"cannot be opened"};
    if (size.QuadPart > largestFile) throw NotATable{L"is larger than 64 MB"};
    std::vector<char> bytes(static_cast<std::size_t>(size.QuadPart));
    DWORD read = 0;
    if (!ReadFile(file.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &read, nullptr) ||
        read != bytes.size())
        throw NotATable{L"cannot be read"};
    return bytes;
}

std::wstring_view LocalName(const pugi::xml_node& node)
{
    const std::wstring_view name = node.name();
    return name.substr(name.find(L':') + 1); // without a prefix, npos + 1 is 0
}

pugi::xml_node ChildNamed(const pugi::xml_node& parent, std::wstring_view name)
{
    for (const pugi::xml_node& child : parent.children()) {
        if (LocalName(child) == name) return child;
    }
    return {};
}

// The node after this one in the document's order, below root; without what this one holds unless
// asked for. A loop and not a recursion, because the depth is the file's.
pugi::xml_node NextNode(pugi::xml_node node, const pugi::xml_node& root, bool descend)
{
    if (descend && node.first_child()) return node.first_child();
    while (node != root && !node.next_sibling())
        node = node.parent();
    return node == root ? pugi::xml_node() : node.next_sibling();
}

// All text in an element; inline elements are looked through, since what they mark or protect
// belongs to the text.
std::wstring TextOf(const pugi::xml_node& element)
{
    std::wstring text;
    for (pugi::xml_node node = element; node; node = NextNode(node, element, true))
        text += node.value(); // empty for elements
    return text;
}

std::optional<std::wstring> TargetOf(const pugi::xml_node& unit)
{
    const pugi::xml_node target = ChildNamed(unit, L"target");
    const std::wstring_view state = target.attribute(L"state").value();
    if (!target || state == L"new" || state == L"needs-translation") return std::nullopt;
    std::wstring text = TextOf(target);
    if (text.empty())
        return std::nullopt; // how translators' tools write a text that is still to do
    return text;
}

XliffUnit ReadUnit(const pugi::xml_node& element)
{
    const pugi::xml_node source = ChildNamed(element, L"source");
    XliffUnit unit{base::Utf8FromWide(element.attribute(L"id").value()), {}, TargetOf(element)};
    if (unit.key.empty()) throw NotATable{L"has a trans-unit without an id"};
    if (!source) throw NotATable{L"has a trans-unit without a source"};
    unit.source = TextOf(source);
    return unit;
}

// Not a header, whose skeleton may be any XML, nor a bin-unit, nor the alt-trans of a unit.
bool HoldsUnits(const pugi::xml_node& node)
{
    return LocalName(node) == L"body" || LocalName(node) == L"group";
}

XliffSection ReadSection(const pugi::xml_node& file)
{
    XliffSection section{
        file.attribute(L"source-language").value(), file.attribute(L"target-language").value(), {}};
    if (section.sourceLanguage.empty())
        throw NotATable{L"has a file element without a source-language"};
    for (pugi::xml_node node = file; node;
         node = NextNode(node, file, node == file || HoldsUnits(node))) {
        if (LocalName(node) != L"trans-unit") continue;
        section.units.push_back(ReadUnit(node));
        if (section.units.back().target && section.targetLanguage.empty())
            throw NotATable{L"has a target in a file element without a target-language"};
    }
    return section;
}

std::vector<XliffSection> ReadDocument(const std::vector<char>& bytes)
{
    pugi::xml_document document;
    const auto result = document.load_buffer(bytes.data(), bytes.size(),
                                             pugi::parse_default | pugi::parse_ws_pcdata);
    if (!result) throw NotATable{L"is not well-formed XML: " + pugi::as_wide(result.description())};
    const pugi::xml_node root = document.document_element();
    if (LocalName(root) != L"xliff" ||
        std::wstring_view(root.attribute(L"version").value()) != L"1.2")
        throw NotATable{L"is not XLIFF 1.2"};
    std::vector<XliffSection> sections;
    for (const pugi::xml_node& child : root.children()) {
        if (LocalName(child) == L"file") sections.push_back(ReadSection(child));
    }
    if (sections.empty()) throw NotATable{L"has no file element"};
    return sections;
}

} // namespace

std::optional<std::vector<XliffSection>> ReadXliffFile(const std::wstring& path,
                                                       std::wstring& error)
try {
    return ReadDocument(ReadBytes(path));
} catch (const NotATable& fault) {
    error = path + L" " + fault.reason;
    return std::nullopt;
}

} // namespace zel_string_convert
