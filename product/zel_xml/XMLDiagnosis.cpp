#include "zel_xml/XMLDiagnosis.h"

#include "XMLAccess.h"

#include <base/FilePath.h>

#include <exception>

namespace zel_xml {

int LineOf(const zelXMLNode& element) noexcept
{
    return element.isValid() ? XMLAccess::DocumentOf(element)->LineOf(XMLAccess::ElementOf(element))
                             : 0;
}

int FaultLineOf(const wchar_t* path) noexcept
{
    int line = 0;
    try {
        XMLDocument::Load(base::FullPath(path), line);
    } catch (const std::exception&) { // out of memory
        line = 0;
    }
    return line;
}

std::vector<std::wstring> AttributeNamesOf(const zelXMLNode& element)
{
    std::vector<std::wstring> names;
    if (!element.isValid()) return names;
    for (const pugi::xml_attribute& attribute : XMLAccess::ElementOf(element).attributes())
        names.emplace_back(attribute.name());
    return names;
}

} // namespace zel_xml
