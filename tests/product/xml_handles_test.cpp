// Handles of XML elements: invalid ones, ones that outlive the file object, and ones of removed
// elements.
#include "XmlTest.h"

#include <algorithm>
#include <random>

namespace {

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
