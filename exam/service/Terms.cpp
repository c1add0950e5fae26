#include "service/Terms.h"

#include <Utils_Statics/utilsExam.h>
#include <zel_xml/XMLEditing.h>
#include <zel_xml/zelXMLFile.h>

namespace exam {

std::vector<std::wstring> AnnotationTerms()
{
    std::vector<std::wstring> terms;
    zelXMLFile file;
    if (!file.open(utilsExam::GetProtocolFile(L"annotations.xml").GetString(), true)) return terms;
    for (zelXMLNode node = file.getRootElement().getFirstChild(); node.isValid(); ++node)
        if (std::wstring text = node.getAttribute(L"text");
            zel_xml::NameOf(node) == L"term" && !text.empty())
            terms.push_back(std::move(text));
    return terms;
}

} // namespace exam
