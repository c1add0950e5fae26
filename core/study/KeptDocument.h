#pragma once

#include <zel_xml/zelXMLFile.h>
#include <zel_xml/zelXMLNode.h>

#include <functional>
#include <string>

namespace exam {

/// One XML file that others may have extended. It is read once; each save writes it anew and
/// carries over what this application does not know.
class KeptDocument
{
public:
    /// The version of the formats that this application writes.
    static constexpr int format = 1;

    /// Reads `path`; a missing file is an empty document. The result is empty, or one sentence that
    /// says what keeps the file from being used. Nothing is then known of it, and it must not be
    /// saved.
    std::wstring Open(const std::wstring& path, const wchar_t* rootName);

    /// The document element as it was read; invalid for a missing file.
    zelXMLNode Root() const { return m_read.getRootElement(); }

    /// Writes the file beside its place and puts it there. `fill` writes what is known below a new
    /// document element. The result is empty or one sentence; the old file is then untouched.
    std::wstring Save(const std::function<void(const zelXMLNode&)>& fill) const;

private:
    std::wstring m_path;
    std::wstring m_rootName;
    zelXMLFile m_read;
};

/// Copies the attributes of `from` that `to` does not have, and the child elements whose names the
/// format does not know. Comments, and texts beside elements, are not copied.
void CarryOver(const zelXMLNode& from, const zelXMLNode& to);

/// Copies all attributes, the text and all child elements.
void CopyElement(const zelXMLNode& from, const zelXMLNode& to);

} // namespace exam
