// Reading XML documents: what is read, what is refused, and that no file does more than fail.
#include "XmlTest.h"

#include <algorithm>
#include <limits>
#include <random>

namespace {

using namespace std::string_literals;
using test_support::ReadFile;

std::string Nested(int levels)
{
    std::string text;
    for (int i = 0; i < levels; ++i)
        text += "<a>";
    for (int i = 0; i < levels; ++i)
        text += "</a>";
    return text;
}

std::string Utf16(const std::wstring& text, bool bigEndian)
{
    std::string bytes;
    for (const wchar_t c : text) {
        const char low = static_cast<char>(c & 0xFF);
        const char high = static_cast<char>(c >> 8);
        bytes += bigEndian ? std::string{high, low} : std::string{low, high};
    }
    return bytes;
}

TEST_F(XmlTest, WalksChildElementsInDocumentOrderAndPassesOverEverythingElse)
{
    ASSERT_TRUE(Open("<?xml version='1.0'?><!-- c --><r> text <One/><!-- c --><Two/><?pi "
                     "x?><![CDATA[<no/>]]><Three/></r>"));
    EXPECT_EQ(zel_xml::NameOf(Root()), L"r");
    EXPECT_EQ(ChildNames(Root()), (std::vector<std::wstring>{L"One", L"Two", L"Three"}));
    EXPECT_EQ(zel_xml::TextOf(Root()), L" text <no/>");
}

TEST_F(XmlTest, FindsTheFirstChildOfANameAndTellsCasesApart)
{
    ASSERT_TRUE(Open("<r><?a x?><a n='1'/><A n='2'/><a n='3'/></r>"));
    EXPECT_EQ(Root().getChildByName(L"a", false).getAttributeInt(L"n", 0), 1);
    EXPECT_EQ(Root().getChildByName(L"A", false).getAttributeInt(L"n", 0), 2);
    EXPECT_FALSE(Root().getChildByName(L"b", false).isValid());
    EXPECT_FALSE(Root().getChildByName(nullptr, false).isValid());
    EXPECT_FALSE(Root().getChildByName(nullptr, true).isValid());
}

TEST_F(XmlTest, ReadsAttributesWithTheirDefaults)
{
    ASSERT_TRUE(Open("<r name='b &amp; &#x42;' empty='' n=' -12 ' real='+2.5e-1' />"));
    EXPECT_EQ(Root().getAttribute(L"name"), L"b & B");
    EXPECT_EQ(Root().getAttribute(L"empty", L"default"), L"");
    EXPECT_EQ(Root().getAttribute(L"missing"), L"");
    EXPECT_EQ(Root().getAttribute(L"missing", L"default"), L"default");
    EXPECT_EQ(Root().getAttribute(L"missing", nullptr), L"");
    EXPECT_EQ(Root().getAttribute(nullptr), L"");
    EXPECT_TRUE(zel_xml::HasAttribute(Root(), L"empty"));
    EXPECT_FALSE(zel_xml::HasAttribute(Root(), L"missing"));
    EXPECT_EQ(Root().getAttributeInt(L"n", 7), -12);
    EXPECT_EQ(Root().getAttributeInt(L"missing", 7), 7);
    EXPECT_EQ(Root().getAttributeDouble(L"real", 7.0), 0.25);
    EXPECT_EQ(Root().getAttributeDouble(L"n", 7.0), -12.0);
    EXPECT_EQ(Root().getAttributeDouble(L"missing", 7.0), 7.0);
}

TEST_F(XmlTest, TakesTheDefaultForATextThatIsNoNumberOrDoesNotFit)
{
    ASSERT_TRUE(Open("<r/>", false));
    for (const wchar_t* text :
         {L"", L" ", L"x", L"1x", L"1 2", L"+-1", L"--1", L"0x10", L"2147483648", L"-2147483649",
          L"99999999999999999999", L"1.5", L"\u0661", L"+", L"-"}) {
        ASSERT_TRUE(Root().setAttribute(L"n", text));
        EXPECT_EQ(Root().getAttributeInt(L"n", 42), 42) << testing::PrintToString(text);
    }
    for (const wchar_t* text :
         {L"", L"x", L"1,5", L"1.5m", L"1e999", L"-1e999", L"1e", L"\uFF11", L"..1"}) {
        ASSERT_TRUE(Root().setAttribute(L"n", text));
        EXPECT_EQ(Root().getAttributeDouble(L"n", 42.0), 42.0) << testing::PrintToString(text);
    }
    ASSERT_TRUE(Root().setAttribute(L"n", std::wstring(5000, L'1')));
    EXPECT_EQ(Root().getAttributeDouble(L"n", 42.0), 42.0);
    ASSERT_TRUE(Root().setAttribute(L"n", L"-2147483648"));
    EXPECT_EQ(Root().getAttributeInt(L"n", 0), std::numeric_limits<int>::min());
}

TEST_F(XmlTest, ReadsEveryDocumentedEncoding)
{
    const std::wstring text = L"<r name='\u00E4\u20AC\U0001F600'/>";
    const std::wstring expected = L"\u00E4\u20AC\U0001F600";
    const std::string utf8 = "<r name='\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80'/>";
    const std::vector<std::string> forms{utf8,
                                         "\xEF\xBB\xBF" + utf8,
                                         "<?xml version='1.0' encoding='UTF-8'?>" + utf8,
                                         "\xFF\xFE" + Utf16(text, false),
                                         "\xFE\xFF" + Utf16(text, true),
                                         Utf16(text, false),
                                         Utf16(text, true)};
    for (const std::string& form : forms) {
        ASSERT_TRUE(Open(form)) << testing::PrintToString(form);
        EXPECT_EQ(Root().getAttribute(L"name"), expected) << testing::PrintToString(form);
    }
    ASSERT_TRUE(Open("<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><r name='\xE4'/>"));
    EXPECT_EQ(Root().getAttribute(L"name"), L"\u00E4");
    ASSERT_TRUE(Open("<?xml version='1.0' encoding='windows-1252'?><r name='\x80'/>"));
    EXPECT_EQ(Root().getAttribute(L"name"), L"\u20AC");
}

TEST_F(XmlTest, RefusesWronglyEncodedFiles)
{
    EXPECT_FALSE(Open("<r name='\xE4'/>"));             // Latin-1 without a declaration
    EXPECT_FALSE(Open("<r name='\xC0\x80'/>"));         // overlong
    EXPECT_FALSE(Open("<r name='\xED\xA0\x80'/>"));     // a surrogate in UTF-8
    EXPECT_FALSE(Open("<r name='\xF4\x90\x80\x80'/>")); // above U+10FFFF
    EXPECT_FALSE(Open("<r name='a\0b'/>"s));            // a zero
    EXPECT_FALSE(Open("<r name='\x01'/>"));             // a control code
    for (const wchar_t* text : {L"<r n='\xD800'/>", L"<r n='\xD800 x'/>", L"<r>\xD83D\xD83D</r>",
                                L"<r><!--\xD800-y--></r>", L"<r>\xDC00</r>"}) // lone surrogates
        EXPECT_FALSE(Open("\xFF\xFE" + Utf16(text, false))) << testing::PrintToString(text);
    EXPECT_FALSE(Open("\xFF\xFE" + Utf16(L"<r/>", false) + "x")); // half a code unit
    EXPECT_FALSE(
        Open("<?xml version='1.0' encoding='UTF-16'?><r/>")); // narrow bytes that claim to be wide
    EXPECT_FALSE(Open("<?xml version='1.0' encoding='EBCDIC'?><r/>")); // unknown encoding
    EXPECT_FALSE(Open("\xEF\xBB\xBF<?xml version='1.0' encoding='latin1'?><r/>")); // two encodings
    EXPECT_FALSE(zel_xml::IsOpen(m_file));
}

TEST_F(XmlTest, RefusesWhatIsNotWellFormed)
{
    for (const char* text :
         {"", " ", "\n", "text", "<", "<r", "<r>", "</r>", "<r></s>", "<r><a></r></a>", "<r/><r/>",
          "<r/>text", "text<r/>", "<r a/>", "<r a=1/>", "<r a='1/>", "<r a='1' a='2'/>",
          "<r><a b='1' c='2' b='1'/></r>", "<!-- <r/>", "<r><![CDATA[x</r>",
          "<?xml version='1.0'?>", "<!DOCTYPE r [<!ELEMENT", "<r/><![CDATA[x]]>", "<1/>",
          // behind the document element and before it
          "<r/>x", "<r/>\n<", "<r/>&#65;", "x<r/>", " <?xml version='1.0'?><r/>",
          // references
          "<r>a & b</r>", "<r a='b & c'/>", "<r>&</r>", "<r>&amp</r>", "<r>&undefined;</r>",
          "<r a='&undefined;'/>", "<r>&#0;</r>", "<r>&#1;</r>", "<r>&#xD800;</r>",
          "<r>&#xFFFF;</r>", "<r>&#x110000;</r>", "<r>&#99999999999;</r>", "<r>&#x;</r>",
          "<r>&#12a;</r>", "<r>&a b;</r>", "<r>&#X41;</r>",
          // characters where they may not stand
          "<r a='<'/>", "<r>a ]]> b</r>", "<r>\x01</r>", "<r a='1'b='2'/>", "<r a = '1' b/>",
          "<r 1='a'/>", "<r a='1' a=\"1\"/>", "< r/>", "<r></ r>", "<r></r x>",
          // comments and instructions
          "<r><!-- a -- b --></r>", "<r><!-- a ---></r>", "<r><!- a --></r>",
          "<r><?"
          "?></r>",
          "<r><? p?></r>", "<r><?xml version='1.0'?></r>", "<r><?XmL x?></r>",
          // declarations
          "<?xml?><r/>", "<?xml encoding='UTF-8'?><r/>", "<?xml version='x'?><r/>",
          "<?xml version='1.'?><r/>", "<?xml version='2.0'?><r/>",
          "<?xml version='1.0' standalone='maybe'?><r/>",
          "<?xml version='1.0' standalone='yes' encoding='UTF-8'?><r/>",
          "<?xml version='1.0'encoding='UTF-8'?><r/>", "<?xml version='1.0' a='b'?><r/>",
          "<r/><!DOCTYPE r>", "<!DOCTYPE r><!DOCTYPE r><r/>",
          "<!DOCTYPE r [<!ENTITY a '&a;'>]><r>&a;</r>",
          "<!DOCTYPE r [<!ENTITY a '<b>'>]><r>&a;</r>",
          "<!DOCTYPE r [<!ENTITY a '<'>]><r b='&a;'/>", "<!DOCTYPE r [x]><r/>"})
        EXPECT_FALSE(Open(text)) << text;
    EXPECT_FALSE(Root().isValid());
}

TEST_F(XmlTest, RefusesMissingFilesFoldersAndEmptyPaths)
{
    EXPECT_FALSE(m_file.open(m_folder / L"missing.xml", true));
    EXPECT_FALSE(m_file.open(m_folder.Path(), true));
    EXPECT_FALSE(m_file.open(L"", true));
    EXPECT_FALSE(m_file.open(static_cast<const wchar_t*>(nullptr), true));
    EXPECT_FALSE(m_file.open(m_folder / std::wstring(5000, L'x'), true));
    EXPECT_FALSE(m_file.open(m_folder / L"a*?|b.xml", true));
}

TEST_F(XmlTest, AcceptsTheDeepestDocumentAndRefusesOneLevelMore)
{
    EXPECT_TRUE(Open(Nested(256)));
    EXPECT_FALSE(Open(Nested(257)));
    EXPECT_FALSE(Open(Nested(500000)));
    EXPECT_FALSE(Open(std::string(3000000, '<')));
    EXPECT_FALSE(Open("<!DOCTYPE r " + std::string(1000000, '[')));
}

TEST_F(XmlTest, AcceptsAFileOfTheLargestSizeAndRefusesOneByteMore)
{
    const std::size_t limit = 16u << 20;
    const std::string start = "<r name='", end = "'/>";
    const std::string largest = start + std::string(limit - start.size() - end.size(), 'x') + end;
    EXPECT_TRUE(Open(largest));
    EXPECT_FALSE(Open(largest + "\n"));
}

TEST_F(XmlTest, ExpandsTheEntitiesThatTheDocumentTypeDeclares)
{
    ASSERT_TRUE(
        Open("<!DOCTYPE r [<!-- c --><?p i?><!ENTITY a 'aa &#38;#60;'><!ENTITY b '&a;-&#38;a;'>"
             "<!ENTITY e '<e n=\"1\">x</e>'>]><r name='&#38;'>&b;&e;&e;</r>"));
    EXPECT_EQ(Root().getAttribute(L"name"), L"&");
    EXPECT_EQ(ChildNames(Root()), (std::vector<std::wstring>{L"e", L"e"}));
    EXPECT_EQ(zel_xml::TextOf(Root()), L"aa <-aa <");
    EXPECT_EQ(zel_xml::AllTextOf(Root()), L"aa <-aa <xx");
}

TEST_F(XmlTest, FillsInTheDefaultAttributesThatTheDocumentTypeDeclares)
{
    ASSERT_TRUE(Open("<!DOCTYPE r [<!ATTLIST a n CDATA '7' t NMTOKENS ' x  y '>]>"
                     "<r><a/><a n='8' t=' p  q '/></r>"));
    zelXMLNode a = Root().getFirstChild();
    EXPECT_EQ(a.getAttributeInt(L"n", 0), 7);
    EXPECT_EQ(a.getAttribute(L"t"), L"x y");
    ++a;
    EXPECT_EQ(a.getAttributeInt(L"n", 0), 8);
    EXPECT_EQ(a.getAttribute(L"t"), L"p q");
}

TEST_F(XmlTest, ReadsTextAsItIsAndAttributesNormalised)
{
    ASSERT_TRUE(
        Open("<r a='1\n2\t3\r\n4&#10;5'> a\r\nb\rc <![CDATA[ <d> & ]]>&#13; <e> </e> f</r>"));
    EXPECT_EQ(Root().getAttribute(L"a"), L"1 2 3 4\n5");
    EXPECT_EQ(zel_xml::TextOf(Root()), L" a\nb\nc  <d> & \r  f");
    EXPECT_EQ(zel_xml::AllTextOf(Root()), L" a\nb\nc  <d> & \r   f");
    EXPECT_EQ(zel_xml::AllTextOf(zelXMLNode()), L"");
}

TEST_F(XmlTest, ManyAttributesAreCheckedInReasonableTime)
{
    std::string text = "<r";
    for (int i = 0; i < 200000; ++i)
        text += " a" + std::to_string(i) + "='1'";
    EXPECT_TRUE(Open(text + "/>"));
    EXPECT_FALSE(Open(text + " a7='2'/>"));
}

TEST_F(XmlTest, AFailedOpenLeavesNothingOfThePreviousDocument)
{
    ASSERT_TRUE(Open("<r/>"));
    EXPECT_FALSE(Open("<r>"));
    EXPECT_FALSE(zel_xml::IsOpen(m_file));
    EXPECT_FALSE(Root().isValid());
    EXPECT_FALSE(zel_xml::SaveDocument(m_file));
}

TEST_F(XmlTest, RandomDamageNeverDoesMoreThanFail)
{
    const std::string sound =
        "<?xml version='1.0' encoding='UTF-8'?><!DOCTYPE r [<!ENTITY a 'x'>]>\n<r a='1' "
        "b=\"&lt;&#65;\">"
        "<!-- c --><one n='\xC3\xA4'/>text<![CDATA[ ]]><two><three/></two><?pi x?></r>\n";
    std::mt19937 random(1);
    int opened = 0;
    for (int round = 0; round < 3000; ++round) {
        std::string bytes = sound;
        for (unsigned change = random() % 4; change-- > 0;) {
            const std::size_t at = random() % bytes.size();
            if (random() % 3 == 0)
                bytes.erase(at, random() % 8);
            else if (random() % 2 == 0)
                bytes.insert(at, bytes.substr(random() % bytes.size(), random() % 16));
            else
                bytes[at] = static_cast<char>(random());
            if (bytes.empty()) bytes = "<";
        }
        if (!Open(bytes, false)) continue;
        ++opened;
        // A document that was read must be written so that it can be read again.
        const std::wstring copy = m_folder / L"copy.xml";
        ASSERT_TRUE(zel_xml::SaveDocumentAs(m_file, copy.c_str()));
        zelXMLFile again;
        EXPECT_TRUE(again.open(copy, true)) << bytes << "\n---\n" << ReadFile(copy);
        EXPECT_EQ(ChildNames(again.getRootElement()), ChildNames(Root()));
    }
    EXPECT_GT(opened, 500);
}

// Handles of XML elements: invalid ones, ones that outlive the file object, and ones of removed
// elements.

using test_support::ReadFile;
using test_support::WriteFile;

TEST_F(XmlTest, AnInvalidHandleAnswersWithNothing)
{
    zelXMLNode none;
    EXPECT_FALSE(none.isValid());
    EXPECT_FALSE((++none).isValid());
    EXPECT_FALSE(none++.isValid());
    EXPECT_FALSE(none.getFirstChild().isValid());
    EXPECT_FALSE(none.getChildByName(L"a", true).isValid());
    EXPECT_FALSE(zel_xml::AppendChild(none, L"a").isValid());
    EXPECT_FALSE(none.removeChildByName(L"a"));
    EXPECT_FALSE(none.removeAttribute(L"a"));
    EXPECT_FALSE(zel_xml::HasAttribute(none, L"a"));
    EXPECT_FALSE(none.setAttribute(L"a", L"b"));
    EXPECT_FALSE(none.setAttributeInt(L"a", 1));
    EXPECT_FALSE(none.setAttributeDouble(L"a", 1.0, -1));
    EXPECT_FALSE(zel_xml::SetText(none, L"a"));
    EXPECT_EQ(none.getAttribute(L"a", L"d"), L"d");
    EXPECT_EQ(none.getAttributeInt(L"a", 5), 5);
    EXPECT_EQ(none.getAttributeDouble(L"a", 5.0), 5.0);
    EXPECT_EQ(zel_xml::TextOf(none), L"");
    EXPECT_EQ(zel_xml::NameOf(none), L"");
    EXPECT_TRUE(zel_xml::IsSameElement(none, zelXMLNode()));
}

TEST_F(XmlTest, HandlesOutliveTheFileObject)
{
    zelXMLNode child;
    {
        zelXMLFile file;
        WriteFile(Path(), "<r><a n='1'/><b/></r>");
        ASSERT_TRUE(file.open(Path(), true));
        child = file.getRootElement().getFirstChild();
        zel_xml::CloseDocument(file);
        EXPECT_FALSE(file.getRootElement().isValid());
    }
    EXPECT_EQ(child.getAttributeInt(L"n", 0), 1);
    EXPECT_TRUE(child.setAttribute(L"m", L"2"));
    EXPECT_EQ(zel_xml::NameOf(++child), L"b");
    EXPECT_FALSE((++child).isValid());
}

TEST_F(XmlTest, CopiesMeanTheSameElementAndDocument)
{
    ASSERT_TRUE(Open("<r><a/></r>", false));
    const zelXMLFile sameFile = m_file;
    const zelXMLNode one = Root().getFirstChild(), two = sameFile.getRootElement().getFirstChild();
    EXPECT_TRUE(zel_xml::IsSameElement(one, two));
    ASSERT_TRUE(one.setAttributeInt(L"n", 3));
    EXPECT_EQ(two.getAttributeInt(L"n", 0), 3);
}

TEST_F(XmlTest, AHandleToARemovedElementStaysUsableAndIsNotSaved)
{
    ASSERT_TRUE(Open("<r><a><b/></a><c/><a n='2'/></r>", false));
    zelXMLNode removed = Root().getFirstChild();
    zelXMLNode inside = removed.getFirstChild();
    ASSERT_TRUE(Root().removeChildByName(L"a"));
    ASSERT_TRUE(Root().removeChildByName(L"c"));
    EXPECT_TRUE(removed.setAttribute(L"x", L"y"));
    EXPECT_TRUE(zel_xml::AppendChild(inside, L"d").isValid());
    EXPECT_TRUE(removed.removeChildByName(L"b"));
    EXPECT_EQ(zel_xml::NameOf(inside), L"b");
    EXPECT_FALSE((++removed).isValid());
    EXPECT_EQ(ChildNames(Root()), std::vector<std::wstring>{L"a"});
    ASSERT_TRUE(zel_xml::SaveDocument(m_file));
    EXPECT_EQ(ReadFile(Path()),
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<r>\n  <a n=\"2\" />\n</r>\n");
    EXPECT_FALSE(Root().removeChildByName(L"c"));
}

TEST_F(XmlTest, RandomEditsAgreeWithAPlainListOfNames)
{
    ASSERT_TRUE(Open("<r/>", false));
    std::mt19937 random(2);
    std::vector<std::wstring> model;
    std::vector<zelXMLNode> kept;
    for (int step = 0; step < 5000; ++step) {
        const std::wstring name(1, static_cast<wchar_t>(L'a' + random() % 6));
        const auto found = std::find(model.begin(), model.end(), name);
        switch (random() % 3) {
        case 0:
            kept.push_back(zel_xml::AppendChild(Root(), name.c_str()));
            model.push_back(name);
            break;
        case 1:
            kept.push_back(Root().getChildByName(name.c_str(), true));
            if (found == model.end()) model.push_back(name);
            break;
        default:
            EXPECT_EQ(Root().removeChildByName(name.c_str()), found != model.end());
            if (found != model.end()) model.erase(found);
        }
        if (step % 50 == 0) {
            ASSERT_EQ(ChildNames(Root()), model);
        }
    }
    for (const zelXMLNode& node : kept)
        EXPECT_TRUE(node.setAttributeInt(L"seen", 1));
}

} // namespace
