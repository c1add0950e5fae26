#pragma once

#include "XMLDocument.h"

#include <zel_xml/zelXMLFile.h>
#include <zel_xml/zelXMLNode.h>

#include <memory>
#include <string>
#include <utility>

namespace zel_xml {

// Leads from the handles to the tree behind them, for the operations that are not members.
struct XMLAccess
{
    using DocumentPointer = std::shared_ptr<XMLDocument>;

    static const XMLDocument* DocumentOf(const zelXMLFile& file) { return file.m_document.get(); }
    static const std::wstring& PathOf(const zelXMLFile& file) { return file.m_path; }
    static bool IsReadOnly(const zelXMLFile& file) { return file.m_readOnly; }

    // Replaces the open document; null closes it.
    static void Put(zelXMLFile& file, DocumentPointer document, std::wstring path, bool readOnly)
    {
        file.m_document = std::move(document);
        file.m_path = std::move(path);
        file.m_readOnly = readOnly;
    }

    static pugi::xml_node ElementOf(const zelXMLNode& node)
    {
        return pugi::xml_node(node.m_element);
    }
    static const DocumentPointer& DocumentOf(const zelXMLNode& node) { return node.m_document; }
    static zelXMLNode Node(const DocumentPointer& document, const pugi::xml_node& element)
    {
        return {document, element.internal_object()};
    }
};

} // namespace zel_xml
