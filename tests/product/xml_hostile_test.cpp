// Files that were made to hurt: each is read or refused, in the time and memory of its size.
#include "XmlTest.h"

#include <zel_xml/XMLDiagnosis.h>

#include <windows.h>
#include <psapi.h>

#include <fstream>

namespace {

// The most memory that the process has ever had committed.
std::size_t PeakMemory()
{
    PROCESS_MEMORY_COUNTERS counters{};
    K32GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters);
    return counters.PeakPagefileUsage;
}

std::string Repeated(const std::string& text, std::size_t count)
{
    std::string repeated;
    repeated.reserve(text.size() * count);
    for (std::size_t i = 0; i < count; ++i)
        repeated += text;
    return repeated;
}

// The characters as UTF-16 with a mark.
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
    EXPECT_LT(PeakMemory() - before, 16u << 20);
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

TEST_F(XmlTest, EntitiesThatWouldGrowWithoutBoundStayAsTheyAre)
{
    std::string type = "<!DOCTYPE r [<!ENTITY e0 'lol'>";
    for (int i = 1; i < 30; ++i) {
        const std::string before = "&e" + std::to_string(i - 1) + ';';
        type += "<!ENTITY e" + std::to_string(i) + " '" + Repeated(before, 10) + "'>";
    }
    ASSERT_TRUE(Open(type + "]><r name='&e29;'>&e29;</r>"));
    EXPECT_EQ(Root().getAttribute(L"name"), L"&e29;");
    EXPECT_EQ(zel_xml::TextOf(Root()), L"&e29;");
    ASSERT_TRUE(Open("<!DOCTYPE r [<!ENTITY a '&b;'><!ENTITY b '&a;'>]><r>&a;</r>"));
    EXPECT_EQ(zel_xml::TextOf(Root()), L"&a;");
}

TEST_F(XmlTest, EntitiesOfOtherFilesAreNotFetched)
{
    test_support::WriteFile(m_folder / L"secret.txt", "secret");
    ASSERT_TRUE(Open("<!DOCTYPE r SYSTEM 'secret.txt' [<!ENTITY s SYSTEM 'secret.txt'>"
                     "<!ENTITY % p SYSTEM 'secret.txt'> %p;]><r name='&s;'>&s;</r>"));
    EXPECT_EQ(Root().getAttribute(L"name"), L"&s;");
    EXPECT_EQ(zel_xml::TextOf(Root()), L"&s;");
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
