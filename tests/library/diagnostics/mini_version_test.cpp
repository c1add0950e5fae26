// The reader of version resources: what it finds.
#include "MiniVersionFixture.h"

#include <base/Handles.h>
#include <test_support/Program.h>

#include <algorithm>
#include <type_traits>

namespace version_resource {
namespace {

static_assert(std::is_trivially_copyable_v<CMiniVersion>, "a plain value");
// A pointer, a word, 16 bytes of versions, four words, four texts of 520.
static_assert(sizeof(CMiniVersion) == (sizeof(void*) + 4 + 16 + 16 + 4160 + 7) / 8 * 8 ||
              sizeof(CMiniVersion) == sizeof(void*) + 4 + 16 + 16 + 4160);

constexpr std::uint32_t german = 0x04B00407;

TEST_F(MiniVersion, ReadsNumbersWordsAndTexts)
{
    const Version version = Of(Complete());
    EXPECT_EQ(m_found, 1);
    EXPECT_EQ(version.File(), (Numbers{1, 2, 3, 4}));
    EXPECT_EQ(version.Product(), (Numbers{5, 6, 7, 8}));
    EXPECT_EQ(version.Words(), (Numbers{0x142, 0x40004, 3, 7})) << "the flags without their mask";
    EXPECT_EQ(version.Texts(), L"Kestrow|What|Exam");
}

TEST_F(MiniVersion, TakesTheHalvesOfAllWords)
{
    Fixed fixed;
    fixed.fileHigh = 0xFFFF8000;
    fixed.fileLow = 0x7FFFFFFE;
    fixed.productHigh = 0x00010000;
    fixed.productLow = 0x0000FFFF;
    const Version version = Of(Root(fixed, {}));
    EXPECT_EQ(version.File(), (Numbers{0xFFFF, 0x8000, 0x7FFF, 0xFFFE}));
    EXPECT_EQ(version.Product(), (Numbers{1, 0, 0, 0xFFFF}));
}

TEST_F(MiniVersion, AFileWithoutAResourceGivesZerosAndEmptyTexts)
{
    for (const std::wstring& path :
         {test_support::BesideProgram(L"blank.dll"), m_folder / L"missing", m_folder.Path()}) {
        Version version(path.c_str());
        EXPECT_EQ(version.Init(), 0);
        VS_FIXEDFILEINFO info;
        wchar_t text[520] = L"x";
        EXPECT_EQ(version.GetFixedInfo(info), 0) << "there is no buffer";
        EXPECT_EQ(version.GetStringInfo(L"CompanyName", text), 0);
        EXPECT_EQ(version.File(), none);
        EXPECT_EQ(version.Product(), none);
        EXPECT_EQ(version.Words(), none);
        EXPECT_EQ(version.Texts(), L"||");
    }
}

TEST_F(MiniVersion, NothingIsReadWithoutAPath)
{
    for (Version version : {Version(), Version(nullptr), Version(L"")}) {
        EXPECT_EQ(version.Init(), 0) << "in particular not the running program";
        EXPECT_EQ(version.File(), none);
        EXPECT_EQ(version.Texts(), L"||");
    }
}

TEST_F(MiniVersion, WithoutStringTablesTheTextsAreEmpty)
{
    const Version version = Of(Root({}, {}));
    EXPECT_EQ(m_found, 1);
    EXPECT_EQ(version.File(), (Numbers{1, 2, 3, 4}));
    EXPECT_EQ(version.Texts(), L"||");
}

TEST_F(MiniVersion, WithoutATranslationTheTextsAreEmpty)
{
    EXPECT_EQ(Of(Root({}, {StringFileInfo({Table(L"040904b0", L"Kestrow")})})).Texts(), L"||");
    EXPECT_EQ(m_found, 1);
    EXPECT_EQ(
        Of(Root({}, {StringFileInfo({Table(L"040904b0", L"Kestrow")}), Translations({})})).Texts(),
        L"||");
    EXPECT_EQ(m_found, 1);
}

TEST_F(MiniVersion, OnlyTheFirstLanguageOfTheTranslationCounts)
{
    const Node tables =
        StringFileInfo({Table(L"040904b0", L"Kestrow"), Table(L"040704b0", L"Turm")});
    EXPECT_EQ(Of(Root({}, {tables, Translations({german, english})})).Company(), L"Turm");
    EXPECT_EQ(Of(Root({}, {tables, Translations({english, german})})).Company(), L"Kestrow");
    EXPECT_EQ(Of(Root({}, {tables, Translations({0x04B0040C, german})})).Texts(), L"||")
        << "a first language without texts";
    EXPECT_EQ(m_found, 1);
}

TEST_F(MiniVersion, AMissingTextStaysEmpty)
{
    const Version version =
        Of(InEnglish(StringTable(L"040904b0", {Text(L"ProductName", L"Exam")})));
    EXPECT_EQ(m_found, 1);
    EXPECT_EQ(version.Texts(), L"||Exam");
}

TEST_F(MiniVersion, CutsTextsToTheirFields)
{
    const std::wstring text(2000, L'x');
    EXPECT_EQ(Of(InEnglish(Table(L"040904b0", text))).Texts(), text.substr(0, 519) + L"|What|Exam");
}

TEST_F(MiniVersion, GettersStayWithinTheLengthTheyAreGiven)
{
    const Version version = Of(Complete());
    unsigned short out[12];
    std::fill(std::begin(out), std::end(out), std::uint16_t{0xAAAA});
    EXPECT_EQ(version.GetCompanyName(out, 5), 1);
    EXPECT_EQ(std::wstring(out, out + 5), std::wstring(L"Kest\0", 5));
    EXPECT_EQ(out[5], 0xAAAA);

    std::fill(std::begin(out), std::end(out), std::uint16_t{0xAAAA});
    EXPECT_EQ(version.GetProductName(out, 12), 1);
    EXPECT_EQ(std::wstring(out, out + 6), std::wstring(L"Exam\0\0", 6)) << "12 bytes are cleared";
    EXPECT_EQ(out[6], 0xAAAA);

    EXPECT_EQ(version.GetFileDescription(out, 1), 1);
    EXPECT_EQ(out[0], 0) << "room for the null only";
}

TEST_F(MiniVersion, GettersOfTextsStoreNothingWithoutAPlace)
{
    const Version version = Of(Complete());
    EXPECT_EQ(version.GetCompanyName(nullptr, 5), 0);
    EXPECT_EQ(version.GetFileDescription(nullptr, 5), 0);
    EXPECT_EQ(version.GetProductName(nullptr, 5), 0);
    unsigned short out = 7;
    EXPECT_EQ(version.GetCompanyName(&out, 0), 1);
    EXPECT_EQ(version.GetCompanyName(&out, -1), 1);
    EXPECT_EQ(out, 7);
}

TEST_F(MiniVersion, KeepsItsNumbersAfterRelease)
{
    WholeFile();
    Version version(File().c_str());
    Version copy = version; // shares the buffer
    VS_FIXEDFILEINFO info = {};
    EXPECT_EQ(copy.GetFixedInfo(info), 1);
    EXPECT_EQ(info.dwSignature, 0xFEEF04BDu);
    EXPECT_EQ(info.dwFileVersionMS, 0x10002u);
    version.Release();
    version.Release(); // a second call does nothing
    EXPECT_EQ(version.GetFixedInfo(info), 0);
    EXPECT_EQ(version.File(), (Numbers{1, 2, 3, 4}));
    EXPECT_EQ(copy.Texts(), L"Kestrow|What|Exam");
}

TEST_F(MiniVersion, StringInfoRefusesNull)
{
    WholeFile();
    Version version(File().c_str());
    wchar_t text[520] = L"before";
    EXPECT_EQ(version.GetStringInfo(nullptr, text), 0);
    EXPECT_STREQ(text, L"before");
    EXPECT_EQ(version.GetStringInfo(L"CompanyName", nullptr), 0);
    EXPECT_EQ(version.GetStringInfo(L"Missing", text), 0);
    EXPECT_STREQ(text, L"") << "emptied before it is looked up";
    EXPECT_EQ(version.GetStringInfo(std::wstring(5000, L'k').c_str(), text), 0);
    EXPECT_EQ(version.GetStringInfo(L"ProductName", text), 1);
    EXPECT_STREQ(text, L"Exam");
    version.Release();
}

TEST_F(MiniVersion, PathsEndAtTheirField)
{
    const Version version((m_folder.Path() + L"\\" + std::wstring(2000, L'x')).c_str());
    EXPECT_EQ(version.Texts(), L"||");
}

TEST_F(MiniVersion, ATextThatSaysItIsBinaryIsRead)
{
    Node root = Complete();
    for (Node& text : root.children[0].children[0].children)
        text.type = 0;
    ExpectTexts(root, L"Kestrow|What|Exam", "as some compilers write it");
}

TEST_F(MiniVersion, IsSearchedForAsLibrariesAre)
{
    for (const wchar_t* const name : {L"kernel32.dll", L"kernel32"}) {
        Version version(name);
        EXPECT_EQ(version.Init(), 1) << name;
        EXPECT_NE(version.File(), none) << name;
        version.Release();
    }
}

TEST_F(MiniVersion, AFileThatAnotherProgramWritesToOrDeletesIsRead)
{
    WholeFile();
    const DWORD everything = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    for (const DWORD access : {GENERIC_WRITE, DELETE}) {
        const base::File other(
            CreateFileW(File().c_str(), access, everything, nullptr, OPEN_EXISTING, 0, nullptr));
        ASSERT_TRUE(other);
        EXPECT_EQ(Again().File(), (Numbers{1, 2, 3, 4})) << access;
    }
}

TEST_F(MiniVersion, FilesOf16BitsAreRead)
{
    const Version version = Of16(Narrow());
    EXPECT_EQ(m_found, 1);
    EXPECT_EQ(version.File(), (Numbers{1, 2, 3, 4}));
    EXPECT_EQ(version.Product(), (Numbers{5, 6, 7, 8}));
    EXPECT_EQ(version.Words(), (Numbers{0x142, 0x40004, 3, 7}));
    EXPECT_EQ(version.Texts(), L"Kestrow, a company of old files|What|Exam");
}

} // namespace
} // namespace version_resource
