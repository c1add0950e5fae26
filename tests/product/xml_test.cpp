// XML documents: what is read, what is refused, handles that outlive everything, numbers, and saving that cannot lose
// the old file.
#include <zel_xml/zelXMLFile.h>
#include <zel_xml/zelXMLNode.h>

#include "../../product/zel_xml/AtomicFile.h"

#include <test_support/Files.h>
#include <test_support/InDirectory.h>
#include <test_support/TemporaryFolder.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <filesystem>
#include <limits>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using namespace std::string_literals;
using test_support::readFile;
using test_support::TemporaryFolder;
using test_support::writeFile;

class XmlTest : public testing::Test
{
protected:
    std::wstring path() const { return m_folder / L"document.xml"; }

    bool open(const std::string& bytes, bool readOnly = true)
    {
        writeFile(path(), bytes);
        return m_file.open(path(), readOnly);
    }

    zelXMLNode root() const { return m_file.getRootElement(); }

    std::size_t filesInFolder() const
    {
        const std::filesystem::directory_iterator files(m_folder.path());
        return static_cast<std::size_t>(std::distance(begin(files), end(files)));
    }

    TemporaryFolder m_folder;
    zelXMLFile m_file;
};

std::vector<std::wstring> childNames(const zelXMLNode& parent)
{
    std::vector<std::wstring> names;
    for (zelXMLNode child = parent.getFirstChild(); child.isValid(); ++child)
        names.push_back(child.getName());
    return names;
}

std::string nested(int levels)
{
    std::string text;
    for (int i = 0; i < levels; ++i)
        text += "<a>";
    for (int i = 0; i < levels; ++i)
        text += "</a>";
    return text;
}

std::string utf16(const std::wstring& text, bool bigEndian)
{
    std::string bytes;
    for (const wchar_t c : text) {
        const char low = static_cast<char>(c & 0xFF);
        const char high = static_cast<char>(c >> 8);
        bytes += bigEndian ? std::string{high, low} : std::string{low, high};
    }
    return bytes;
}

// ---- reading

TEST_F(XmlTest, WalksChildElementsInDocumentOrderAndPassesOverEverythingElse)
{
    ASSERT_TRUE(
        open("<?xml version='1.0'?><!-- c --><r> text <One/><!-- c --><Two/><?pi x?><![CDATA[<no/>]]><Three/></r>"));
    EXPECT_EQ(root().getName(), L"r");
    EXPECT_EQ(childNames(root()), (std::vector<std::wstring>{L"One", L"Two", L"Three"}));
    EXPECT_EQ(root().getText(), L" text <no/>");
}

TEST_F(XmlTest, FindsTheFirstChildOfANameAndTellsCasesApart)
{
    ASSERT_TRUE(open("<r><?a x?><a n='1'/><A n='2'/><a n='3'/></r>"));
    EXPECT_EQ(root().getChildByName(L"a", false).getAttributeInt(L"n", 0), 1);
    EXPECT_EQ(root().getChildByName(L"A", false).getAttributeInt(L"n", 0), 2);
    EXPECT_FALSE(root().getChildByName(L"b", false).isValid());
    EXPECT_FALSE(root().getChildByName(nullptr, false).isValid());
    EXPECT_FALSE(root().getChildByName(nullptr, true).isValid());
}

TEST_F(XmlTest, ReadsAttributesWithTheirDefaults)
{
    ASSERT_TRUE(open("<r name='b &amp; &#x42;' empty='' n=' -12 ' real='+2.5e-1' />"));
    EXPECT_EQ(root().getAttribute(L"name"), L"b & B");
    EXPECT_EQ(root().getAttribute(L"empty", L"default"), L"");
    EXPECT_EQ(root().getAttribute(L"missing"), L"");
    EXPECT_EQ(root().getAttribute(L"missing", L"default"), L"default");
    EXPECT_EQ(root().getAttribute(L"missing", nullptr), L"");
    EXPECT_EQ(root().getAttribute(nullptr), L"");
    EXPECT_TRUE(root().hasAttribute(L"empty"));
    EXPECT_FALSE(root().hasAttribute(L"missing"));
    EXPECT_EQ(root().getAttributeInt(L"n", 7), -12);
    EXPECT_EQ(root().getAttributeInt(L"missing", 7), 7);
    EXPECT_EQ(root().getAttributeDouble(L"real", 7.0), 0.25);
    EXPECT_EQ(root().getAttributeDouble(L"n", 7.0), -12.0);
    EXPECT_EQ(root().getAttributeDouble(L"missing", 7.0), 7.0);
}

TEST_F(XmlTest, TakesTheDefaultForATextThatIsNoNumberOrDoesNotFit)
{
    ASSERT_TRUE(open("<r/>", false));
    for (const wchar_t* text : {L"", L" ", L"x", L"1x", L"1 2", L"+-1", L"--1", L"0x10", L"2147483648", L"-2147483649",
                                L"99999999999999999999", L"1.5", L"\u0661", L"+", L"-"}) {
        ASSERT_TRUE(root().setAttribute(L"n", text));
        EXPECT_EQ(root().getAttributeInt(L"n", 42), 42) << testing::PrintToString(text);
    }
    for (const wchar_t* text : {L"", L"x", L"1,5", L"1.5m", L"1e999", L"-1e999", L"1e", L"\uFF11", L"..1"}) {
        ASSERT_TRUE(root().setAttribute(L"n", text));
        EXPECT_EQ(root().getAttributeDouble(L"n", 42.0), 42.0) << testing::PrintToString(text);
    }
    ASSERT_TRUE(root().setAttribute(L"n", std::wstring(5000, L'1')));
    EXPECT_EQ(root().getAttributeDouble(L"n", 42.0), 42.0);
    ASSERT_TRUE(root().setAttribute(L"n", L"-2147483648"));
    EXPECT_EQ(root().getAttributeInt(L"n", 0), std::numeric_limits<int>::min());
}

TEST_F(XmlTest, ReadsEveryDocumentedEncoding)
{
    const std::wstring text = L"<r name='\u00E4\u20AC\U0001F600'/>";
    const std::wstring expected = L"\u00E4\u20AC\U0001F600";
    const std::string utf8 = "<r name='\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80'/>";
    const std::vector<std::string> forms{utf8,
                                         "\xEF\xBB\xBF" + utf8,
                                         "<?xml version='1.0' encoding='UTF-8'?>" + utf8,
                                         "\xFF\xFE" + utf16(text, false),
                                         "\xFE\xFF" + utf16(text, true),
                                         utf16(text, false),
                                         utf16(text, true)};
    for (const std::string& form : forms) {
        ASSERT_TRUE(open(form)) << testing::PrintToString(form);
        EXPECT_EQ(root().getAttribute(L"name"), expected) << testing::PrintToString(form);
    }
    ASSERT_TRUE(open("<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><r name='\xE4'/>"));
    EXPECT_EQ(root().getAttribute(L"name"), L"\u00E4");
    ASSERT_TRUE(open("<?xml version='1.0' encoding='windows-1252'?><r name='\x80'/>"));
    EXPECT_EQ(root().getAttribute(L"name"), L"\u20AC");
}

TEST_F(XmlTest, RefusesWronglyEncodedFiles)
{
    EXPECT_FALSE(open("<r name='\xE4'/>"));                                        // Latin-1 without saying so
    EXPECT_FALSE(open("<r name='\xC0\x80'/>"));                                    // overlong
    EXPECT_FALSE(open("<r name='\xED\xA0\x80'/>"));                                // a surrogate in UTF-8
    EXPECT_FALSE(open("<r name='\xF4\x90\x80\x80'/>"));                            // above U+10FFFF
    EXPECT_FALSE(open("<r name='a\0b'/>"s));                                       // a zero
    EXPECT_FALSE(open("<r name='\x01'/>"));                                        // a control code
    EXPECT_FALSE(open("\xFF\xFE" + utf16(L"<r n='\xD800'/>", false)));             // a lone surrogate
    EXPECT_FALSE(open("\xFF\xFE" + utf16(L"<r/>", false) + "x"));                  // half a code unit
    EXPECT_FALSE(open("<?xml version='1.0' encoding='UTF-16'?><r/>"));             // bytes that claim to be wide
    EXPECT_FALSE(open("<?xml version='1.0' encoding='EBCDIC'?><r/>"));             // unknown
    EXPECT_FALSE(open("\xEF\xBB\xBF<?xml version='1.0' encoding='latin1'?><r/>")); // two answers
    EXPECT_FALSE(m_file.isOpen());
}

TEST_F(XmlTest, RefusesWhatIsNotWellFormed)
{
    for (const char* text : {"",
                             " ",
                             "\n",
                             "text",
                             "<",
                             "<r",
                             "<r>",
                             "</r>",
                             "<r></s>",
                             "<r><a></r></a>",
                             "<r/><r/>",
                             "<r/>text",
                             "text<r/>",
                             "<r a/>",
                             "<r a=1/>",
                             "<r a='1/>",
                             "<r a='1' a='2'/>",
                             "<r><a b='1' c='2' b='1'/></r>",
                             "<!-- <r/>",
                             "<r><![CDATA[x</r>",
                             "<?xml version='1.0'?>",
                             "<!DOCTYPE r [<!ELEMENT",
                             "<r/><![CDATA[x]]>",
                             "<1/>"})
        EXPECT_FALSE(open(text)) << text;
    EXPECT_FALSE(root().isValid());
}

TEST_F(XmlTest, RefusesMissingFilesFoldersAndEmptyPaths)
{
    EXPECT_FALSE(m_file.open(m_folder / L"missing.xml", true));
    EXPECT_FALSE(m_file.open(m_folder.path(), true));
    EXPECT_FALSE(m_file.open(L"", true));
    EXPECT_FALSE(m_file.open(static_cast<const wchar_t*>(nullptr), true));
    EXPECT_FALSE(m_file.open(m_folder / std::wstring(5000, L'x'), true));
    EXPECT_FALSE(m_file.open(m_folder / L"a*?|b.xml", true));
}

TEST_F(XmlTest, AcceptsTheDeepestDocumentAndRefusesOneLevelMore)
{
    EXPECT_TRUE(open(nested(256)));
    EXPECT_FALSE(open(nested(257)));
    EXPECT_FALSE(open(nested(500000)));
    EXPECT_FALSE(open(std::string(3000000, '<')));
    EXPECT_FALSE(open("<!DOCTYPE r " + std::string(1000000, '[')));
}

TEST_F(XmlTest, AcceptsAFileOfTheLargestSizeAndRefusesOneByteMore)
{
    const std::size_t limit = 16u << 20;
    const std::string start = "<r name='", end = "'/>";
    const std::string largest = start + std::string(limit - start.size() - end.size(), 'x') + end;
    EXPECT_TRUE(open(largest));
    EXPECT_FALSE(open(largest + "\n"));
}

TEST_F(XmlTest, DoesNotExpandEntities)
{
    ASSERT_TRUE(open("<!DOCTYPE r [<!ENTITY a 'aaaa'><!ENTITY b '&a;&a;'>]><r name='&b;'/>"));
    EXPECT_EQ(root().getAttribute(L"name"), L"&b;");
}

TEST_F(XmlTest, ManyAttributesAreCheckedInReasonableTime)
{
    std::string text = "<r";
    for (int i = 0; i < 200000; ++i)
        text += " a" + std::to_string(i) + "='1'";
    EXPECT_TRUE(open(text + "/>"));
    EXPECT_FALSE(open(text + " a7='2'/>"));
}

TEST_F(XmlTest, AFailedOpenLeavesNothingOfThePreviousDocument)
{
    ASSERT_TRUE(open("<r/>"));
    EXPECT_FALSE(open("<r>"));
    EXPECT_FALSE(m_file.isOpen());
    EXPECT_FALSE(root().isValid());
    EXPECT_FALSE(m_file.save());
}

TEST_F(XmlTest, RandomDamageNeverDoesMoreThanFail)
{
    const std::string sound =
        "<?xml version='1.0' encoding='UTF-8'?><!DOCTYPE r [<!ENTITY a 'x'>]>\n<r a='1' b=\"&lt;&#65;\">"
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
        if (!open(bytes, false)) continue;
        ++opened;
        // What was taken must be written so that it is taken again.
        const std::wstring copy = m_folder / L"copy.xml";
        ASSERT_TRUE(m_file.saveAs(copy.c_str()));
        zelXMLFile again;
        EXPECT_TRUE(again.open(copy, true)) << bytes << "\n---\n" << readFile(copy);
        EXPECT_EQ(childNames(again.getRootElement()), childNames(root()));
    }
    EXPECT_GT(opened, 500);
}

// ---- handles

TEST_F(XmlTest, AnInvalidHandleAnswersWithNothing)
{
    zelXMLNode none;
    EXPECT_FALSE(none.isValid());
    EXPECT_FALSE((++none).isValid());
    EXPECT_FALSE(none++.isValid());
    EXPECT_FALSE(none.getFirstChild().isValid());
    EXPECT_FALSE(none.getChildByName(L"a", true).isValid());
    EXPECT_FALSE(none.appendChild(L"a").isValid());
    EXPECT_FALSE(none.removeChildByName(L"a"));
    EXPECT_FALSE(none.removeAttribute(L"a"));
    EXPECT_FALSE(none.hasAttribute(L"a"));
    EXPECT_FALSE(none.setAttribute(L"a", L"b"));
    EXPECT_FALSE(none.setAttributeInt(L"a", 1));
    EXPECT_FALSE(none.setAttributeDouble(L"a", 1.0, -1));
    EXPECT_FALSE(none.setText(L"a"));
    EXPECT_EQ(none.getAttribute(L"a", L"d"), L"d");
    EXPECT_EQ(none.getAttributeInt(L"a", 5), 5);
    EXPECT_EQ(none.getAttributeDouble(L"a", 5.0), 5.0);
    EXPECT_EQ(none.getText(), L"");
    EXPECT_EQ(none.getName(), L"");
    EXPECT_EQ(none, zelXMLNode());
}

TEST_F(XmlTest, HandlesOutliveTheFileObject)
{
    zelXMLNode child;
    {
        zelXMLFile file;
        writeFile(path(), "<r><a n='1'/><b/></r>");
        ASSERT_TRUE(file.open(path(), true));
        child = file.getRootElement().getFirstChild();
        file.close();
        EXPECT_FALSE(file.getRootElement().isValid());
    }
    EXPECT_EQ(child.getAttributeInt(L"n", 0), 1);
    EXPECT_TRUE(child.setAttribute(L"m", L"2"));
    EXPECT_EQ((++child).getName(), L"b");
    EXPECT_FALSE((++child).isValid());
}

TEST_F(XmlTest, CopiesMeanTheSameElementAndDocument)
{
    ASSERT_TRUE(open("<r><a/></r>", false));
    const zelXMLFile sameFile = m_file;
    const zelXMLNode one = root().getFirstChild(), two = sameFile.getRootElement().getFirstChild();
    EXPECT_EQ(one, two);
    ASSERT_TRUE(one.setAttributeInt(L"n", 3));
    EXPECT_EQ(two.getAttributeInt(L"n", 0), 3);
}

TEST_F(XmlTest, AHandleToARemovedElementStaysUsableAndIsNotSaved)
{
    ASSERT_TRUE(open("<r><a><b/></a><c/><a n='2'/></r>", false));
    zelXMLNode removed = root().getFirstChild();
    zelXMLNode inside = removed.getFirstChild();
    ASSERT_TRUE(root().removeChildByName(L"a"));
    ASSERT_TRUE(root().removeChildByName(L"c"));
    EXPECT_TRUE(removed.setAttribute(L"x", L"y"));
    EXPECT_TRUE(inside.appendChild(L"d").isValid());
    EXPECT_TRUE(removed.removeChildByName(L"b"));
    EXPECT_EQ(inside.getName(), L"b");
    EXPECT_FALSE((++removed).isValid());
    EXPECT_EQ(childNames(root()), std::vector<std::wstring>{L"a"});
    ASSERT_TRUE(m_file.save());
    EXPECT_EQ(readFile(path()), "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<r>\n  <a n=\"2\" />\n</r>\n");
    EXPECT_FALSE(root().removeChildByName(L"c"));
}

TEST_F(XmlTest, RandomEditsAgreeWithAPlainListOfNames)
{
    ASSERT_TRUE(open("<r/>", false));
    std::mt19937 random(2);
    std::vector<std::wstring> model;
    std::vector<zelXMLNode> kept;
    for (int step = 0; step < 5000; ++step) {
        const std::wstring name(1, static_cast<wchar_t>(L'a' + random() % 6));
        const auto found = std::find(model.begin(), model.end(), name);
        switch (random() % 3) {
        case 0:
            kept.push_back(root().appendChild(name.c_str()));
            model.push_back(name);
            break;
        case 1:
            kept.push_back(root().getChildByName(name.c_str(), true));
            if (found == model.end()) model.push_back(name);
            break;
        default:
            EXPECT_EQ(root().removeChildByName(name.c_str()), found != model.end());
            if (found != model.end()) model.erase(found);
        }
        if (step % 50 == 0) {
            ASSERT_EQ(childNames(root()), model);
        }
    }
    for (const zelXMLNode& node : kept)
        EXPECT_TRUE(node.setAttributeInt(L"seen", 1));
}

// ---- writing

TEST_F(XmlTest, CreatesAMissingChildOnlyWhenAsked)
{
    ASSERT_TRUE(open("<r/>", false));
    EXPECT_FALSE(root().getChildByName(L"Grid", false).isValid());
    EXPECT_TRUE(root().getChildByName(L"Grid", true).setAttributeInt(L"row", -1));
    EXPECT_EQ(root().getChildByName(L"Grid", true).getAttributeInt(L"row", 0), -1);
    EXPECT_EQ(childNames(root()).size(), 1u);
}

TEST_F(XmlTest, AttributesAreReplacedAddedAndRemoved)
{
    ASSERT_TRUE(open("<r a='1' b='2'/>", false));
    EXPECT_TRUE(root().setAttribute(L"a", L"3"));
    EXPECT_TRUE(root().setAttribute(L"c", std::wstring(L"4")));
    EXPECT_TRUE(root().setAttribute(L"d", static_cast<const wchar_t*>(nullptr)));
    EXPECT_TRUE(root().removeAttribute(L"b"));
    EXPECT_FALSE(root().removeAttribute(L"b"));
    EXPECT_FALSE(root().removeAttribute(nullptr));
    ASSERT_TRUE(m_file.save());
    EXPECT_EQ(readFile(path()), "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<r a=\"3\" c=\"4\" d=\"\" />\n");
}

TEST_F(XmlTest, RefusesToWriteWhatXmlCannotHold)
{
    ASSERT_TRUE(open("<r/>", false));
    for (const wchar_t* name : {L"", L"1a", L"a b", L"a=", L"<", L"a\"", L"-a", L"\xD800"}) {
        EXPECT_FALSE(root().setAttribute(name, L"x"));
        EXPECT_FALSE(root().appendChild(name).isValid());
    }
    EXPECT_FALSE(root().setAttribute(nullptr, L"x"));
    for (const std::wstring& text : {L"\x01"s, L"\xDC00"s, L"a\xD83D"s, L"\xFFFF"s, L"a\0b"s}) {
        EXPECT_FALSE(root().setAttribute(L"a", text));
        EXPECT_FALSE(root().setText(text));
    }
    EXPECT_FALSE(root().hasAttribute(L"a"));
}

TEST_F(XmlTest, TextsComeBackAsTheyWereWritten)
{
    const std::wstring text = L"<&>\"' \t\r\n ]]> \u00E4\u20AC\U0001F600 &amp; \u0085\u2028";
    ASSERT_TRUE(open("<r/>", false));
    ASSERT_TRUE(root().setAttribute(L"\u00E4", text));
    ASSERT_TRUE(root().appendChild(L"t").setText(L"x <&>]]> \u20AC"));
    ASSERT_TRUE(m_file.save());
    ASSERT_TRUE(m_file.open(path(), true)) << readFile(path());
    EXPECT_EQ(root().getAttribute(L"\u00E4"), text);
    EXPECT_EQ(root().getChildByName(L"t", false).getText(), L"x <&>]]> \u20AC");
}

TEST_F(XmlTest, SetTextKeepsChildElements)
{
    ASSERT_TRUE(open("<r>one<a/>two<![CDATA[three]]></r>", false));
    ASSERT_TRUE(root().setText(L"four"));
    EXPECT_EQ(root().getText(), L"four");
    EXPECT_EQ(childNames(root()), std::vector<std::wstring>{L"a"});
    ASSERT_TRUE(root().setText(L""));
    EXPECT_EQ(root().getText(), L"");
}

TEST_F(XmlTest, WillNotBuildWhatItWouldNotRead)
{
    ASSERT_TRUE(m_file.create(path().c_str(), L"r"));
    zelXMLNode node = root();
    int levels = 1;
    for (zelXMLNode child = node; child.isValid() && levels < 1000; child = node.appendChild(L"a")) {
        node = child;
        ++levels;
    }
    EXPECT_EQ(levels - 1, 256);
    ASSERT_TRUE(m_file.save());
    EXPECT_TRUE(m_file.open(path(), true));
}

TEST_F(XmlTest, EveryRealNumberComesBackTheSame)
{
    ASSERT_TRUE(open("<r/>", false));
    const auto expectSame = [this](double value) {
        ASSERT_TRUE(root().setAttributeDouble(L"x", value, -1));
        const double read = root().getAttributeDouble(L"x", 12345.0);
        EXPECT_EQ(std::bit_cast<std::uint64_t>(read), std::bit_cast<std::uint64_t>(value)) << value;
    };
    using limits = std::numeric_limits<double>;
    for (const double value : {0.0, -0.0, 1.0, -0.5, 0.1, 1.0 / 3.0, 1e300, limits::max(), limits::min(),
                               limits::denorm_min(), -limits::denorm_min(), limits::infinity(), -limits::infinity()})
        expectSame(value);
    std::mt19937_64 random(3);
    for (int i = 0; i < 20000; ++i)
        if (const double value = std::bit_cast<double>(random()); std::isfinite(value)) expectSame(value);
    ASSERT_TRUE(root().setAttributeDouble(L"x", limits::quiet_NaN(), -1));
    EXPECT_TRUE(std::isnan(root().getAttributeDouble(L"x", 1.0)));
}

TEST_F(XmlTest, PrecisionCountsDigitsAfterThePoint)
{
    ASSERT_TRUE(open("<r/>", false));
    const auto written = [this](double value, int precision) {
        EXPECT_TRUE(root().setAttributeDouble(L"x", value, precision));
        return root().getAttribute(L"x");
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
    ASSERT_TRUE(open("<r/>", false));
    for (const int value : {0, -1, 1, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()}) {
        ASSERT_TRUE(root().setAttributeInt(L"n", value));
        EXPECT_EQ(root().getAttributeInt(L"n", 5), value);
    }
}

// ---- saving

TEST_F(XmlTest, SavesBackOnlyWhenNotOpenedForReadingOnly)
{
    ASSERT_TRUE(open("<r/>", true));
    ASSERT_TRUE(root().setAttributeInt(L"n", 1));
    EXPECT_FALSE(m_file.save());
    EXPECT_EQ(readFile(path()), "<r/>");
    EXPECT_TRUE(m_file.saveAs((m_folder / L"copy.xml").c_str()));
    ASSERT_TRUE(m_file.open(path(), false));
    ASSERT_TRUE(root().setAttributeInt(L"n", 1));
    EXPECT_TRUE(m_file.save());
    EXPECT_EQ(readFile(path()), readFile(m_folder / L"copy.xml"));
    EXPECT_EQ(filesInFolder(), 2u);
}

TEST_F(XmlTest, KeepsCommentsInstructionsAndTheDocumentType)
{
    ASSERT_TRUE(open("<?xml version='1.0' encoding='ISO-8859-1'?><?style x?><!DOCTYPE r><!-- \xE4 --><r><!-- b "
                     "--><a/></r><!-- c -->",
                     false));
    ASSERT_TRUE(m_file.save());
    EXPECT_EQ(readFile(path()),
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<?style x?>\n<!DOCTYPE r>\n<!-- \xC3\xA4 -->\n"
              "<r>\n  <!-- b -->\n  <a />\n</r>\n<!-- c -->\n");
}

TEST_F(XmlTest, CreatesANewFileOnTheFirstSave)
{
    const std::wstring fresh = m_folder / L"new.xml";
    ASSERT_TRUE(m_file.create(fresh.c_str(), L"layout"));
    EXPECT_FALSE(std::filesystem::exists(fresh));
    ASSERT_TRUE(m_file.save());
    EXPECT_EQ(readFile(fresh), "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<layout />\n");
    EXPECT_FALSE(m_file.create(fresh.c_str(), L"not a name"));
    EXPECT_FALSE(m_file.isOpen());
    EXPECT_FALSE(m_file.create(L"", L"r"));
    EXPECT_FALSE(m_file.create(nullptr, L"r"));
    EXPECT_FALSE(m_file.create(fresh.c_str(), nullptr));
}

TEST_F(XmlTest, SavesToTheSameFileAfterTheCurrentDirectoryChanged)
{
    writeFile(path(), "<r/>");
    {
        const test_support::InDirectory inside(m_folder.path());
        ASSERT_TRUE(m_file.open(L"document.xml", false));
    }
    ASSERT_TRUE(root().setAttributeInt(L"n", 1));
    ASSERT_TRUE(m_file.save());
    EXPECT_NE(readFile(path()).find("n=\"1\""), std::string::npos);
}

TEST_F(XmlTest, AFileThatAnotherProgramHoldsSurvivesAFailedSave)
{
    ASSERT_TRUE(open("<r/>", false));
    ASSERT_TRUE(root().setAttributeInt(L"n", 1));
    const zel_xml::FileHandle held(CreateFileW(path().c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                                               FILE_ATTRIBUTE_NORMAL, nullptr));
    ASSERT_NE(held.get(), INVALID_HANDLE_VALUE);
    EXPECT_FALSE(m_file.save());
    EXPECT_EQ(readFile(path()), "<r/>");
    EXPECT_EQ(filesInFolder(), 1u);
}

TEST_F(XmlTest, AReadOnlyFileSurvivesAFailedSave)
{
    ASSERT_TRUE(open("<r/>", false));
    ASSERT_TRUE(SetFileAttributesW(path().c_str(), FILE_ATTRIBUTE_READONLY));
    EXPECT_FALSE(m_file.save());
    EXPECT_EQ(readFile(path()), "<r/>");
    EXPECT_EQ(filesInFolder(), 1u);
}

TEST_F(XmlTest, SavingIntoAFolderThatIsGoneFails)
{
    ASSERT_TRUE(open("<r/>", false));
    EXPECT_FALSE(m_file.saveAs((m_folder / L"gone\\x.xml").c_str()));
    EXPECT_FALSE(m_file.saveAs(m_folder.path().c_str()));
    EXPECT_FALSE(m_file.saveAs(L""));
    EXPECT_FALSE(m_file.saveAs(nullptr));
    EXPECT_EQ(filesInFolder(), 1u);
}

// The way a disk that fills up half-way looks to the writer: the first bytes go in, then the write fails.
TEST_F(XmlTest, TheOldFileSurvivesAFullDisk)
{
    writeFile(path(), "old");
    const auto fillsUp = [](HANDLE file) { return zel_xml::writeBytes(file, "half of the n") && false; };
    EXPECT_FALSE(zel_xml::replaceFile(path(), fillsUp));
    EXPECT_EQ(readFile(path()), "old");
    EXPECT_EQ(filesInFolder(), 1u);
}

TEST_F(XmlTest, TheOldFileSurvivesWantOfMemory)
{
    writeFile(path(), "old");
    EXPECT_THROW(zel_xml::replaceFile(path(), [](HANDLE) -> bool { throw std::bad_alloc(); }), std::bad_alloc);
    EXPECT_EQ(readFile(path()), "old");
    EXPECT_EQ(filesInFolder(), 1u);
}

TEST_F(XmlTest, AWriteThatFailsIsReported)
{
    writeFile(path(), "old");
    const HANDLE opened = CreateFileW(path().c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                                      FILE_ATTRIBUTE_NORMAL, nullptr);
    ASSERT_NE(opened, INVALID_HANDLE_VALUE);
    const zel_xml::FileHandle readable(opened);
    EXPECT_FALSE(zel_xml::writeBytes(readable.get(), "new"));
    EXPECT_EQ(readFile(path()), "old");
}

TEST_F(XmlTest, TheNewFileIsPutInPlaceWhole)
{
    writeFile(path(), "old");
    EXPECT_TRUE(zel_xml::replaceFile(path(), [](HANDLE file) { return zel_xml::writeBytes(file, "new"); }));
    EXPECT_EQ(readFile(path()), "new");
    EXPECT_EQ(filesInFolder(), 1u);
}

} // namespace
