// Hostile files: each is read or refused, in time and memory proportional to its size.
#include "XmlTest.h"

#include <zel_xml/XMLDiagnosis.h>

#include <windows.h>
#include <psapi.h>

#include <algorithm>
#include <fstream>

namespace {

// The largest amount of memory that the process ever had committed.
std::size_t PeakMemory()
{
    PROCESS_MEMORY_COUNTERS counters{};
    K32GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters);
    return counters.PeakPagefileUsage;
}

// The growth of that amount. Some platforms report less than they did before.
std::size_t GrowthSince(std::size_t before)
{
    return std::max(PeakMemory(), before) - before;
}

std::string Repeated(const std::string& text, std::size_t count)
{
    std::string repeated;
    repeated.reserve(text.size() * count);
    for (std::size_t i = 0; i < count; ++i)
        repeated += text;
    return repeated;
}

// The characters as UTF-16 with a byte order mark.
std::string Utf16(const std::string& text)
{
    std::string bytes = "\xFF\xFE";
    for (const char c : text) {
        bytes += c;
        bytes += '\0';
    }
    return bytes;
}

TEST_F(XmlTest, AnElementOf200MegabytesIsRefusedWithoutBeingRead)
{
    {
        std::ofstream file(std::filesystem::path(Path()), std::ios::binary);
        const std::string megabyte(1 << 20, 'x');
        file << "<r><a b='";
        for (int i = 0; i < 200; ++i)
            file << megabyte;
        file << "'/></r>";
        ASSERT_TRUE(file.flush());
    }
    const std::size_t before = PeakMemory();
    EXPECT_FALSE(m_file.open(Path(), true));
    EXPECT_FALSE(zel_xml::IsOpen(m_file));
    EXPECT_LT(GrowthSince(before), 16u << 20);
    ASSERT_TRUE(DeleteFileW(Path().c_str()));
}

TEST_F(XmlTest, NestingWithoutMeasureIsRefused)
{
    const std::string deep = Repeated("<a>", 100000) + Repeated("</a>", 100000);
    EXPECT_FALSE(Open(deep));
    EXPECT_FALSE(Open(Utf16(deep)));
    EXPECT_FALSE(Open("\xEF\xBB\xBF" + deep));
    EXPECT_FALSE(Open(Repeated("<a b='1'>", 100000)));
    EXPECT_FALSE(Open("<r>" + Repeated("</a>", 100000)));
    EXPECT_FALSE(Open("<r a='" + Repeated("&lt;", 100000)));
}

// Entities of which each is ten times the one before. The document uses the last one.
std::string GrowingEntities(int count, const std::string& use)
{
    std::string type = "<!DOCTYPE r [<!ENTITY e0 'lol'>";
    for (int i = 1; i <= count; ++i) {
        const std::string before = "&e" + std::to_string(i - 1) + ';';
        type += "<!ENTITY e" + std::to_string(i) + " '" + Repeated(before, 10) + "'>";
    }
    return type + "]><r" + use;
}

TEST_F(XmlTest, EntitiesThatGrowWithoutMeasureAreRefused)
{
    ASSERT_TRUE(Open(GrowingEntities(3, " n='&e3;'>&e3;</r>")));
    EXPECT_EQ(Root().getAttribute(L"n").size(), 3000u);
    EXPECT_EQ(zel_xml::TextOf(Root()).size(), 3000u);
    const std::size_t before = PeakMemory();
    for (const char* use : {">&e9;</r>", " n='&e9;'/>", "><a>&e29;</a></r>", " n='&e29;'/>"}) {
        EXPECT_FALSE(Open(GrowingEntities(29, use))) << use;
        EXPECT_GT(zel_xml::FaultLineOf(Path().c_str()), 0);
    }
    EXPECT_LT(GrowthSince(before), 256u << 20);
}

// One long entity, used often: the file with its entities expanded would be too large.
TEST_F(XmlTest, ALongEntityThatIsUsedOftenIsRefused)
{
    const std::string type = "<!DOCTYPE r [<!ENTITY e '" + std::string(1 << 20, 'x') + "'>]>";
    EXPECT_TRUE(Open(type + "<r>" + Repeated("&e;", 7) + "</r>"));
    EXPECT_EQ(zel_xml::TextOf(Root()).size(), 7u << 20);
    EXPECT_FALSE(Open(type + "<r>" + Repeated("&e;", 40) + "</r>"));
    EXPECT_FALSE(Open(type + "<r>" + Repeated("<a b='&e;'/>", 40) + "</r>"));
    const std::string declaration = type.substr(0, type.size() - 2);
    EXPECT_FALSE(Open(declaration + "<!ATTLIST a b CDATA '" + Repeated("&e;", 40) + "'>]><r/>"));
}

TEST_F(XmlTest, DefaultAttributesThatGrowWithoutMeasureAreRefused)
{
    const std::string type =
        "<!DOCTYPE r [<!ATTLIST a b CDATA '" + std::string(1 << 20, 'x') + "'>]>";
    EXPECT_TRUE(Open(type + "<r>" + Repeated("<a/>", 10) + "</r>"));
    EXPECT_FALSE(Open(type + "<r>" + Repeated("<a/>", 100) + "</r>"));
}

TEST_F(XmlTest, AChainOfEntitiesIsFollowedToItsEnd)
{
    std::string type = "<!DOCTYPE r [<!ENTITY e0 'end'>";
    for (int i = 1; i <= 100000; ++i)
        type += "<!ENTITY e" + std::to_string(i) + " '&e" + std::to_string(i - 1) + ";'>";
    ASSERT_TRUE(Open(type + "]><r>&e100000;</r>"));
    EXPECT_EQ(zel_xml::TextOf(Root()), L"end");
    ASSERT_TRUE(Open(type + "]><r n='&e100000;'/>"));
    EXPECT_EQ(Root().getAttribute(L"n"), L"end");
    EXPECT_FALSE(Open("<!DOCTYPE r [<!ENTITY a '&b;'><!ENTITY b '&a;'>]><r>&a;</r>"));
}

TEST_F(XmlTest, EntitiesOfOtherFilesAreNotFetched)
{
    test_support::WriteFile(m_folder / L"secret.txt", "secret");
    ASSERT_TRUE(Open("<!DOCTYPE r SYSTEM 'secret.txt' [<!ENTITY s SYSTEM 'secret.txt'>"
                     "<!ENTITY % p SYSTEM 'secret.txt'> %p;]><r>a&s;b&unknown;c</r>"));
    EXPECT_EQ(zel_xml::AllTextOf(Root()), L"abc");
    EXPECT_FALSE(Open("<!DOCTYPE r [<!ENTITY s SYSTEM 'secret.txt'>]><r n='&s;'/>"));
}

TEST_F(XmlTest, AFileOfAsManyElementsAsItCanHoldIsRead)
{
    const std::size_t count = (16u << 20) / 4 - 2;
    ASSERT_TRUE(Open("<r>" + Repeated("<a/>", count) + "</r>"));
    zelXMLNode child = Root().getFirstChild();
    std::size_t children = 0;
    for (; child.isValid(); ++child)
        ++children;
    EXPECT_EQ(children, count);
}

TEST_F(XmlTest, LongNamesAndManyLinesAreNoDifferentFromShortOnes)
{
    const std::string name(5 << 20, 'n');
    ASSERT_TRUE(Open("<r><" + name + ' ' + name + "='1'/></r>"));
    EXPECT_EQ(zel_xml::NameOf(Root().getFirstChild()).size(), name.size());
    ASSERT_TRUE(Open("<r>" + std::string(15 << 20, '\n') + "<a/></r>"));
    EXPECT_EQ(zel_xml::LineOf(Root().getFirstChild()), (15 << 20) + 1);
}

} // namespace
