// The line numbers of elements and faults in a file.
#include "XmlTest.h"

#include <zel_xml/XMLDiagnosis.h>

#include <algorithm>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace {

int LineOf(const zelXMLNode& parent, const wchar_t* child)
{
    return zel_xml::LineOf(parent.getChildByName(child, false));
}

int FaultLine(const std::wstring& path)
{
    return zel_xml::FaultLineOf(path.c_str());
}

TEST_F(XmlTest, AnElementKnowsTheLineItBeginsOn)
{
    ASSERT_TRUE(Open("<?xml version='1.0'?>\n<!-- two\nlines -->\n<r a='1\n2'\n  b='3'><a/>\n"
                     "<b\n/>text &amp;\n<![CDATA[\n]]><c/></r>"));
    EXPECT_EQ(zel_xml::LineOf(Root()), 4);
    EXPECT_EQ(LineOf(Root(), L"a"), 6);
    EXPECT_EQ(LineOf(Root(), L"b"), 7);
    EXPECT_EQ(LineOf(Root(), L"c"), 10);
}

TEST_F(XmlTest, EveryKindOfLineEndCountsOnce)
{
    for (const char* end : {"\n", "\r\n", "\r"}) {
        const std::string e(end);
        ASSERT_TRUE(Open("<r>" + e + "<a x='" + e + "'/>" + e + e + "text" + e + "<b/></r>"));
        EXPECT_EQ(zel_xml::LineOf(Root()), 1);
        EXPECT_EQ(LineOf(Root(), L"a"), 2);
        EXPECT_EQ(LineOf(Root(), L"b"), 6);
    }
}

TEST_F(XmlTest, WhatWasNotReadFromAFileHasNoLine)
{
    EXPECT_EQ(zel_xml::LineOf(zelXMLNode()), 0);
    ASSERT_TRUE(Open("<r>\n<a/></r>", false));
    EXPECT_EQ(zel_xml::LineOf(zel_xml::AppendChild(Root(), L"b")), 0);
    EXPECT_EQ(LineOf(Root(), L"a"), 2);
    ASSERT_TRUE(zel_xml::CreateDocument(m_file, Path().c_str(), L"r"));
    EXPECT_EQ(zel_xml::LineOf(Root()), 0);
}

TEST_F(XmlTest, AMarkAndTheEncodingMakeNoDifferenceToLines)
{
    ASSERT_TRUE(Open("\xEF\xBB\xBF\n<r>\xC3\xA4\n<a/></r>"));
    EXPECT_EQ(zel_xml::LineOf(Root()), 2);
    EXPECT_EQ(LineOf(Root(), L"a"), 3);
    const std::wstring wide = L"\uFEFF\n<r>\U0001F600\n<a/></r>";
    ASSERT_TRUE(Open(std::string(reinterpret_cast<const char*>(wide.data()), 2 * wide.size())));
    EXPECT_EQ(LineOf(Root(), L"a"), 3);
}

// The memory of a tree need not ascend, so here it comes from a heap with holes.
TEST_F(XmlTest, AnElementKnowsItsLineWhereverItLiesInMemory)
{
    std::mt19937 random(5);
    std::vector<std::unique_ptr<char[]>> kept, holes;
    for (int i = 0; i < 500; ++i)
        (i % 2 ? kept : holes).push_back(std::make_unique<char[]>(40000));
    std::shuffle(holes.begin(), holes.end(), random);
    while (!holes.empty())
        holes.pop_back(); // one after the other, in no order
    std::string text = "<r>";
    for (int i = 0; i < 50000; ++i)
        text += "<a/>\n";
    ASSERT_TRUE(Open(text + "</r>"));
    int line = 0;
    for (zelXMLNode child = Root().getFirstChild(); child.isValid(); ++child)
        ASSERT_EQ(zel_xml::LineOf(child), ++line);
}

TEST_F(XmlTest, SaysOnWhichLineAFileIsNotWellFormed)
{
    const std::pair<const char*, int> faults[] = {
        {"<r>\n<a>\n</b>\n</r>", 3},
        {"<r>\n<a b=1/>\n</r>", 2},
        {"<r>\n\n<a b='1' c='2' b='3'/>\n</r>", 3}, // an attribute twice
        {"<r/>\n<r/>\n", 2},                        // a second root
        {"<r/>\n\ntext", 3},                        // a text behind the root
        {"<r>\n<!-- \n\n", 2},                      // a comment without an end
        {"<r>\n<a>\n", 3},                          // elements without an end
        {"<r>\n&undefined;\n</r>", 2},
        {"<r\na='\xFF'/>", 2},
        {"<?xml version='1.0'?>\n<!-- no root -->", 2}};
    for (const auto& [text, line] : faults) {
        EXPECT_FALSE(Open(text));
        EXPECT_EQ(FaultLine(Path()), line) << text;
    }
}

TEST_F(XmlTest, SaysOnWhichLineADocumentIsTooDeep)
{
    std::string text;
    for (int i = 0; i < 300; ++i)
        text += "<a>\n";
    for (int i = 0; i < 300; ++i)
        text += "</a>";
    EXPECT_FALSE(Open(text));
    EXPECT_EQ(FaultLine(Path()), 257);
}

TEST_F(XmlTest, WhatAnEntityHoldsLiesWhereItIsUsed)
{
    ASSERT_TRUE(Open("<!DOCTYPE r [\n<!ENTITY e '<a/>\n<b/>'>\n]>\n<r>\n\n&e;<c/></r>"));
    for (const wchar_t* name : {L"a", L"b", L"c"})
        EXPECT_EQ(LineOf(Root(), name), 7) << name;
}

TEST_F(XmlTest, AFaultWithoutAPlaceHasNoLine)
{
    EXPECT_EQ(zel_xml::FaultLineOf(nullptr), 0);
    EXPECT_EQ(FaultLine(m_folder / L"missing.xml"), 0);
    EXPECT_FALSE(Open(""));
    EXPECT_EQ(FaultLine(Path()), 0);
    EXPECT_FALSE(Open(std::string((16u << 20) + 1, ' ')));
    EXPECT_EQ(FaultLine(Path()), 0);
    EXPECT_TRUE(Open("<r/>"));
    EXPECT_EQ(FaultLine(Path()), 0);
}

TEST_F(XmlTest, NamesTheAttributesInTheirOrder)
{
    ASSERT_TRUE(Open("<r b='1' a='2'><c/></r>"));
    EXPECT_EQ(zel_xml::AttributeNamesOf(Root()), (std::vector<std::wstring>{L"b", L"a"}));
    EXPECT_TRUE(zel_xml::AttributeNamesOf(Root().getFirstChild()).empty());
    EXPECT_TRUE(zel_xml::AttributeNamesOf(zelXMLNode()).empty());
}

// Compares with the line numbers counted while the text is written.
TEST_F(XmlTest, LinesAgreeWithPlainCounting)
{
    std::mt19937 random(3);
    for (int round = 0; round < 100; ++round) {
        std::string text = "<r>";
        std::vector<int> lines;
        int line = 1;
        for (int i = 0; i < 200; ++i) {
            const char* const pieces[] = {"\n",    "\r\n",      "x",
                                          "&#10;", "<!--\n-->", "<![CDATA[\r\n]]>"};
            const int lineEnds[] = {1, 1, 0, 0, 1, 1};
            const auto piece = random() % 6;
            text += pieces[piece];
            line += lineEnds[piece];
            lines.push_back(line);
            text += random() % 2 == 0 ? "<a b='\n&lt;'/>" : "<a b='2'\r\n>\n</a>";
            line += text.back() == '>' && text[text.size() - 2] == '/' ? 1 : 2;
            text += ' '; // keeps a carriage return away from the next line feed
        }
        ASSERT_TRUE(Open(text + "</r>"));
        zelXMLNode element = Root().getFirstChild();
        for (const int expected : lines) {
            ASSERT_EQ(zel_xml::LineOf(element), expected);
            ++element;
        }
    }
}

} // namespace
