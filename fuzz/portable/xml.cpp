// The target reads an XML document of any kind: buttons, placements, states, layouts.
#include "zel_xml/XMLParser.h"

#include <fuzz/Input.h>
#include <fuzz/Require.h>

namespace {

void RequireSound(const pugi::xml_node& node, int depth)
{
    fuzz::Require(depth <= zel_xml::maxDepth, "a tree is no deeper than the limit");
    fuzz::Require(zel_xml::IsXmlText(node.value()), "a text holds what XML allows");
    if (node.type() == pugi::node_element)
        fuzz::Require(zel_xml::IsXmlName(node.name()), "an element has an XML name");
    for (const pugi::xml_attribute& attribute : node.attributes())
        fuzz::Require(zel_xml::IsXmlName(attribute.name()) && zel_xml::IsXmlText(attribute.value()),
                      "an attribute holds what XML allows");
    for (const pugi::xml_node& child : node.children())
        RequireSound(child, depth + 1);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size > zel_xml::maxDocumentSize) return 0;
    const fuzz::Input input(data, size);
    pugi::xml_document tree;
    zel_xml::ElementLines lines;
    const int faultLine = zel_xml::ParseXml(input.Rest(), tree, lines);
    if (faultLine != 0) {
        fuzz::Require(faultLine > 0, "a fault is on a line");
        return 0;
    }
    fuzz::Require(static_cast<bool>(tree.document_element()), "a document has an element");
    fuzz::Require(!lines.empty(), "an element has a line");
    RequireSound(tree.document_element(), 1);
    return 0;
}
