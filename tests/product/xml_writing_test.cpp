// Changing XML documents: names, texts and numbers that come back as they were written.
#include "XmlTest.h"

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>

namespace {

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
