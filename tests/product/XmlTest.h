#pragma once

#include <gtest/gtest.h>
#include <test_support/Files.h>
#include <test_support/TemporaryFolder.h>
#include <zel_xml/XMLEditing.h>
#include <zel_xml/zelXMLFile.h>
#include <zel_xml/zelXMLNode.h>

#include <filesystem>
#include <iterator>
#include <string>
#include <vector>

// A document in a folder of its own.
class XmlTest : public testing::Test
{
protected:
    std::wstring Path() const { return m_folder / L"document.xml"; }

    bool Open(const std::string& bytes, bool readOnly = true)
    {
        test_support::WriteFile(Path(), bytes);
        return m_file.open(Path(), readOnly);
    }

    zelXMLNode Root() const { return m_file.getRootElement(); }

    std::size_t FilesInFolder() const
    {
        const std::filesystem::directory_iterator files(m_folder.Path());
        return static_cast<std::size_t>(std::distance(begin(files), end(files)));
    }

    test_support::TemporaryFolder m_folder;
    zelXMLFile m_file;
};

// The names of the child elements in order.
inline std::vector<std::wstring> ChildNames(const zelXMLNode& parent)
{
    std::vector<std::wstring> names;
    for (zelXMLNode child = parent.getFirstChild(); child.isValid(); ++child)
        names.push_back(zel_xml::NameOf(child));
    return names;
}
