// Saving XML documents: the content of the file, and the safety of the old one.
#include "../../product/zel_xml/AtomicFile.h"
#include "XmlTest.h"

#include <base/Handles.h>
#include <base/InFolder.h>

#include <new>

namespace {

using test_support::ReadFile;
using test_support::WriteFile;

TEST_F(XmlTest, SavesBackOnlyWhenNotOpenedForReadingOnly)
{
    ASSERT_TRUE(Open("<r/>", true));
    ASSERT_TRUE(Root().setAttributeInt(L"n", 1));
    EXPECT_FALSE(zel_xml::SaveDocument(m_file));
    EXPECT_EQ(ReadFile(Path()), "<r/>");
    EXPECT_TRUE(zel_xml::SaveDocumentAs(m_file, (m_folder / L"copy.xml").c_str()));
    ASSERT_TRUE(m_file.open(Path(), false));
    ASSERT_TRUE(Root().setAttributeInt(L"n", 1));
    EXPECT_TRUE(zel_xml::SaveDocument(m_file));
    EXPECT_EQ(ReadFile(Path()), ReadFile(m_folder / L"copy.xml"));
    EXPECT_EQ(FilesInFolder(), 2u);
}

TEST_F(XmlTest, KeepsCommentsInstructionsAndTheDocumentType)
{
    ASSERT_TRUE(Open(
        "<?xml version='1.0' encoding='ISO-8859-1'?><?style x?><!DOCTYPE r><!-- \xE4 --><r><!-- b "
        "--><a/></r><!-- c -->",
        false));
    ASSERT_TRUE(zel_xml::SaveDocument(m_file));
    EXPECT_EQ(
        ReadFile(Path()),
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<?style x?>\n<!DOCTYPE r>\n<!-- \xC3\xA4 -->\n"
        "<r>\n  <!-- b -->\n  <a />\n</r>\n<!-- c -->\n");
}

// Entities and default attributes of the document type stand in the document itself from then on.
TEST_F(XmlTest, KeepsOfTheDocumentTypeItsNameAndItsIdentifiers)
{
    const std::string declaration = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
    ASSERT_TRUE(
        Open("<!DOCTYPE r PUBLIC '-//x//y' 'a\"b.dtd' [<!-- c --><?p i?><!ENTITY e 'x &#38;#38;'>"
             "<!ATTLIST r n CDATA '1'>]><r>&e;</r>",
             false));
    ASSERT_TRUE(zel_xml::SaveDocument(m_file));
    EXPECT_EQ(ReadFile(Path()), declaration + "<!DOCTYPE r PUBLIC \"-//x//y\" 'a\"b.dtd'>\n"
                                              "<r n=\"1\">x &amp;</r>\n");
    ASSERT_TRUE(Open("<!DOCTYPE r SYSTEM 'r.dtd'><r/>", false));
    ASSERT_TRUE(zel_xml::SaveDocument(m_file));
    EXPECT_EQ(ReadFile(Path()), declaration + "<!DOCTYPE r SYSTEM \"r.dtd\">\n<r />\n");
}

TEST_F(XmlTest, KeepsTextAsItIs)
{
    ASSERT_TRUE(Open("<r>\n\t<a>1 &lt; 2</a> <![CDATA[<b> ]]><c> </c>\n</r>", false));
    ASSERT_TRUE(zel_xml::SaveDocument(m_file));
    EXPECT_EQ(ReadFile(Path()), "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                                "<r>\n\t<a>1 &lt; 2</a> &lt;b&gt; <c> </c>\n</r>\n");
}

TEST_F(XmlTest, CreatesANewFileOnTheFirstSave)
{
    const std::wstring fresh = m_folder / L"new.xml";
    ASSERT_TRUE(zel_xml::CreateDocument(m_file, fresh.c_str(), L"layout"));
    EXPECT_FALSE(std::filesystem::exists(fresh));
    ASSERT_TRUE(zel_xml::SaveDocument(m_file));
    EXPECT_EQ(ReadFile(fresh), "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<layout />\n");
    EXPECT_FALSE(zel_xml::CreateDocument(m_file, fresh.c_str(), L"not a name"));
    EXPECT_FALSE(zel_xml::IsOpen(m_file));
    EXPECT_FALSE(zel_xml::CreateDocument(m_file, L"", L"r"));
    EXPECT_FALSE(zel_xml::CreateDocument(m_file, nullptr, L"r"));
    EXPECT_FALSE(zel_xml::CreateDocument(m_file, fresh.c_str(), nullptr));
}

TEST_F(XmlTest, SavesToTheSameFileAfterTheCurrentDirectoryChanged)
{
    WriteFile(Path(), "<r/>");
    {
        const base::InFolder inside(m_folder.Path());
        ASSERT_TRUE(m_file.open(L"document.xml", false));
    }
    ASSERT_TRUE(Root().setAttributeInt(L"n", 1));
    ASSERT_TRUE(zel_xml::SaveDocument(m_file));
    EXPECT_NE(ReadFile(Path()).find("n=\"1\""), std::string::npos);
}

TEST_F(XmlTest, AFileThatAnotherProgramHoldsSurvivesAFailedSave)
{
    ASSERT_TRUE(Open("<r/>", false));
    ASSERT_TRUE(Root().setAttributeInt(L"n", 1));
    const base::File held(CreateFileW(Path().c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr,
                                      OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    ASSERT_TRUE(held);
    EXPECT_FALSE(zel_xml::SaveDocument(m_file));
    EXPECT_EQ(ReadFile(Path()), "<r/>");
    EXPECT_EQ(FilesInFolder(), 1u);
}

TEST_F(XmlTest, AReadOnlyFileSurvivesAFailedSave)
{
    ASSERT_TRUE(Open("<r/>", false));
    ASSERT_TRUE(SetFileAttributesW(Path().c_str(), FILE_ATTRIBUTE_READONLY));
    EXPECT_FALSE(zel_xml::SaveDocument(m_file));
    EXPECT_EQ(ReadFile(Path()), "<r/>");
    EXPECT_EQ(FilesInFolder(), 1u);
}

TEST_F(XmlTest, SavingIntoAFolderThatIsGoneFails)
{
    ASSERT_TRUE(Open("<r/>", false));
    EXPECT_FALSE(zel_xml::SaveDocumentAs(m_file, (m_folder / L"gone\\x.xml").c_str()));
    EXPECT_FALSE(zel_xml::SaveDocumentAs(m_file, m_folder.Path().c_str()));
    EXPECT_FALSE(zel_xml::SaveDocumentAs(m_file, L""));
    EXPECT_FALSE(zel_xml::SaveDocumentAs(m_file, nullptr));
    EXPECT_EQ(FilesInFolder(), 1u);
}

// Simulates a disk that fills up half-way: the first bytes are written, then the write fails.
TEST_F(XmlTest, TheOldFileSurvivesAFullDisk)
{
    WriteFile(Path(), "old");
    const auto fillsUp = [](HANDLE file) {
        return zel_xml::WriteBytes(file, "half of the n") && false;
    };
    EXPECT_FALSE(zel_xml::ReplaceAtomically(Path(), fillsUp));
    EXPECT_EQ(ReadFile(Path()), "old");
    EXPECT_EQ(FilesInFolder(), 1u);
}

TEST_F(XmlTest, TheOldFileSurvivesWantOfMemory)
{
    WriteFile(Path(), "old");
    EXPECT_THROW(zel_xml::ReplaceAtomically(Path(), [](HANDLE) -> bool { throw std::bad_alloc(); }),
                 std::bad_alloc);
    EXPECT_EQ(ReadFile(Path()), "old");
    EXPECT_EQ(FilesInFolder(), 1u);
}

TEST_F(XmlTest, AWriteThatFailsIsReported)
{
    WriteFile(Path(), "old");
    const base::File readable(CreateFileW(Path().c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr,
                                          OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    ASSERT_TRUE(readable);
    EXPECT_FALSE(zel_xml::WriteBytes(readable.get(), "new"));
    EXPECT_EQ(ReadFile(Path()), "old");
}

TEST_F(XmlTest, TheNewFileIsPutInPlaceWhole)
{
    WriteFile(Path(), "old");
    EXPECT_TRUE(zel_xml::ReplaceAtomically(
        Path(), [](HANDLE file) { return zel_xml::WriteBytes(file, "new"); }));
    EXPECT_EQ(ReadFile(Path()), "new");
    EXPECT_EQ(FilesInFolder(), 1u);
}

} // namespace
