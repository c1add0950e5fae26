// Saving XML documents: the content of the file, and the safety of the old one.
#include "XmlTest.h"

#include <base/Handles.h>
#include <base/InFolder.h>
#include <test_support/ImportHook.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <random>

namespace {

using test_support::ImportHook;
using test_support::ReadFile;
using test_support::WriteFile;

BOOL s_isHalfSuccess; // the result of WriteHalf

// Writes the first half only, like a disk that fills up.
BOOL WINAPI WriteHalf(HANDLE file, LPCVOID bytes, DWORD size, LPDWORD written, LPOVERLAPPED)
{
    ::WriteFile(file, bytes, size / 2, written, nullptr);
    return s_isHalfSuccess;
}

int s_allocations; // the number that Allocate lets pass

void* Allocate(std::size_t size)
{
    return s_allocations-- > 0 ? std::malloc(size) : nullptr;
}

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

TEST_F(XmlTest, TheOldFileSurvivesAFullDisk)
{
    ASSERT_TRUE(Open("<r/>", false));
    ASSERT_TRUE(Root().setAttributeInt(L"n", 1));
    const ImportHook hook(L"zel_xml.dll", "WriteFile", &WriteHalf);
    for (const BOOL isSuccess : {FALSE, TRUE}) {
        s_isHalfSuccess = isSuccess;
        EXPECT_FALSE(zel_xml::SaveDocument(m_file));
        EXPECT_EQ(ReadFile(Path()), "<r/>");
        EXPECT_EQ(FilesInFolder(), 1u);
    }
}

TEST_F(XmlTest, TheOldFileSurvivesWantOfMemoryAtEveryPlace)
{
    ASSERT_TRUE(Open("<r/>", false));
    ASSERT_TRUE(Root().setAttributeInt(L"n", 1));
    bool isSaved = false;
    int passing = 0;
    for (; !isSaved && passing < 100; ++passing) {
        {
            const ImportHook hook(L"libstdc++-6.dll", "malloc", &Allocate);
            s_allocations = passing;
            isSaved = zel_xml::SaveDocument(m_file);
        }
        EXPECT_EQ(ReadFile(Path()) == "<r/>", !isSaved) << passing;
        EXPECT_EQ(FilesInFolder(), 1u) << passing;
    }
    EXPECT_TRUE(isSaved);
    EXPECT_GT(passing, 2) << "a save that takes memory";
}

// Changing XML documents: names, texts and numbers that come back as they were written.

using namespace std::string_literals;
using test_support::ReadFile;

TEST_F(XmlTest, CreatesAMissingChildOnlyWhenAsked)
{
    ASSERT_TRUE(Open("<r/>", false));
    EXPECT_FALSE(Root().getChildByName(L"Grid", false).isValid());
    EXPECT_TRUE(Root().getChildByName(L"Grid", true).setAttributeInt(L"row", -1));
    EXPECT_EQ(Root().getChildByName(L"Grid", true).getAttributeInt(L"row", 0), -1);
    EXPECT_EQ(ChildNames(Root()).size(), 1u);
}

TEST_F(XmlTest, AttributesAreReplacedAddedAndRemoved)
{
    ASSERT_TRUE(Open("<r a='1' b='2'/>", false));
    EXPECT_TRUE(Root().setAttribute(L"a", L"3"));
    EXPECT_TRUE(Root().setAttribute(L"c", std::wstring(L"4")));
    EXPECT_TRUE(Root().setAttribute(L"d", static_cast<const wchar_t*>(nullptr)));
    EXPECT_EQ(Root().getAttribute(L"d", L"default"), L"");
    EXPECT_TRUE(Root().removeAttribute(L"b"));
    EXPECT_FALSE(Root().removeAttribute(L"b"));
    EXPECT_FALSE(Root().removeAttribute(nullptr));
    ASSERT_TRUE(zel_xml::SaveDocument(m_file));
    EXPECT_EQ(ReadFile(Path()),
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<r a=\"3\" c=\"4\" d=\"\" />\n");
}

TEST_F(XmlTest, RefusesToWriteWhatXmlCannotHold)
{
    ASSERT_TRUE(Open("<r/>", false));
    for (const wchar_t* name : {L"", L"1a", L"a b", L"a=", L"<", L"a\"", L"-a", L"\xD800",
                                L"\u00D7", L"a\u2028", L"a\U0001F600", L"\u0300a"}) {
        EXPECT_FALSE(Root().setAttribute(name, L"x"));
        EXPECT_FALSE(zel_xml::AppendChild(Root(), name).isValid());
    }
    EXPECT_FALSE(Root().setAttribute(nullptr, L"x"));
    for (const std::wstring& text : {L"\x01"s, L"\xDC00"s, L"a\xD83D"s, L"\xFFFF"s, L"a\0b"s}) {
        EXPECT_FALSE(Root().setAttribute(L"a", text));
        EXPECT_FALSE(zel_xml::SetText(Root(), text));
    }
    EXPECT_FALSE(zel_xml::HasAttribute(Root(), L"a"));
}

TEST_F(XmlTest, NamesComeBackAsTheyWereWritten)
{
    for (const wchar_t* name : {L"a", L"_a-1.b", L"x:y", L"\u00C4\u00DF", L"\u4E2D", L"a\u0300"}) {
        ASSERT_TRUE(zel_xml::CreateDocument(m_file, Path().c_str(), name));
        ASSERT_TRUE(Root().setAttribute(name, L"x"));
        ASSERT_TRUE(zel_xml::SaveDocument(m_file));
        ASSERT_TRUE(m_file.open(Path(), true)) << testing::PrintToString(name);
        EXPECT_EQ(zel_xml::NameOf(Root()), name);
        EXPECT_EQ(Root().getAttribute(name), L"x");
    }
}

TEST_F(XmlTest, TextsComeBackAsTheyWereWritten)
{
    const std::wstring text = L"<&>\"' \t\r\n ]]> \u00E4\u20AC\U0001F600 &amp; \u0085\u2028";
    ASSERT_TRUE(Open("<r/>", false));
    ASSERT_TRUE(Root().setAttribute(L"\u00E4", text));
    ASSERT_TRUE(zel_xml::SetText(zel_xml::AppendChild(Root(), L"t"), L"x <&>]]> \u20AC"));
    ASSERT_TRUE(zel_xml::SaveDocument(m_file));
    ASSERT_TRUE(m_file.open(Path(), true)) << ReadFile(Path());
    EXPECT_EQ(Root().getAttribute(L"\u00E4"), text);
    EXPECT_EQ(zel_xml::TextOf(Root().getChildByName(L"t", false)), L"x <&>]]> \u20AC");
}

TEST_F(XmlTest, SetTextKeepsChildElements)
{
    ASSERT_TRUE(Open("<r>one<a/>two<![CDATA[three]]></r>", false));
    ASSERT_TRUE(zel_xml::SetText(Root(), L"four"));
    EXPECT_EQ(zel_xml::TextOf(Root()), L"four");
    EXPECT_EQ(ChildNames(Root()), std::vector<std::wstring>{L"a"});
    ASSERT_TRUE(zel_xml::SetText(Root(), L""));
    EXPECT_EQ(zel_xml::TextOf(Root()), L"");
}

TEST_F(XmlTest, WillNotBuildWhatItWouldNotRead)
{
    ASSERT_TRUE(zel_xml::CreateDocument(m_file, Path().c_str(), L"r"));
    zelXMLNode node = Root();
    int levels = 1;
    for (zelXMLNode child = node; child.isValid() && levels < 1000;
         child = zel_xml::AppendChild(node, L"a")) {
        node = child;
        ++levels;
    }
    EXPECT_EQ(levels - 1, 256);
    ASSERT_TRUE(zel_xml::SaveDocument(m_file));
    EXPECT_TRUE(m_file.open(Path(), true));
}

TEST_F(XmlTest, EveryRealNumberComesBackTheSame)
{
    ASSERT_TRUE(Open("<r/>", false));
    const auto expectSame = [this](double value) {
        ASSERT_TRUE(Root().setAttributeDouble(L"x", value, -1));
        const double read = Root().getAttributeDouble(L"x", 12345.0);
        EXPECT_EQ(std::bit_cast<std::uint64_t>(read), std::bit_cast<std::uint64_t>(value)) << value;
    };
    using Limits = std::numeric_limits<double>;
    for (const double value :
         {0.0, -0.0, 1.0, -0.5, 0.1, 1.0 / 3.0, 1e300, Limits::max(), Limits::min(),
          Limits::denorm_min(), -Limits::denorm_min(), Limits::infinity(), -Limits::infinity()})
        expectSame(value);
    std::mt19937_64 random(3);
    for (int i = 0; i < 20000; ++i)
        if (const double value = std::bit_cast<double>(random()); std::isfinite(value))
            expectSame(value);
    ASSERT_TRUE(Root().setAttributeDouble(L"x", Limits::quiet_NaN(), -1));
    EXPECT_TRUE(std::isnan(Root().getAttributeDouble(L"x", 1.0)));
}

TEST_F(XmlTest, PrecisionCountsDigitsAfterThePoint)
{
    ASSERT_TRUE(Open("<r/>", false));
    const auto written = [this](double value, int precision) {
        EXPECT_TRUE(Root().setAttributeDouble(L"x", value, precision));
        return Root().getAttribute(L"x");
    };
    EXPECT_EQ(written(-0.5, -1), L"-0.5");
    EXPECT_EQ(written(2.0, -1), L"2");
    EXPECT_EQ(written(1.0005, -1), L"1.0005");
    EXPECT_EQ(written(1.25, 0), L"1");
    EXPECT_EQ(written(1.25, 3), L"1.250");
    EXPECT_EQ(written(1.25, -7), L"1.25");
    EXPECT_EQ(written(std::numeric_limits<double>::max(), 1000).size(), 309u + 1 + 30);
}

TEST_F(XmlTest, IntegersAreWrittenInFull)
{
    ASSERT_TRUE(Open("<r/>", false));
    for (const int value :
         {0, -1, 1, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()}) {
        ASSERT_TRUE(Root().setAttributeInt(L"n", value));
        EXPECT_EQ(Root().getAttributeInt(L"n", 5), value);
    }
}

} // namespace
