#include "zel_xml/XMLDocument.h"

namespace zel_xml {

// Documents are saved on the platform only.
bool XMLDocument::Save(const std::wstring&) const
{
    return false;
}

} // namespace zel_xml
