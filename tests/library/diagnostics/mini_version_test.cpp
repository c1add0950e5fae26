// The reader of version resources: what it finds, and how it copes with resources that lie.
#include "VersionResource.h"

#include <gtest/gtest.h>
#include <test_support/Files.h>
#include <test_support/Program.h>
#include <test_support/TemporaryFolder.h>
#include <Utils_Statics/CMiniVersion.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <random>
#include <stdexcept>
#include <type_traits>
#include <utility>

namespace {

using namespace version_resource;
using Numbers = std::array<unsigned, 4>;

static_assert(std::is_trivially_copyable_v<CMiniVersion>, "a plain value");
// A pointer, a word, 16 bytes of versions, four words, four texts of 520.
static_assert(sizeof(CMiniVersion) == (sizeof(void*) + 4 + 16 + 16 + 4160 + 7) / 8 * 8 ||
              sizeof(CMiniVersion) == sizeof(void*) + 4 + 16 + 16 + 4160);

constexpr std::uint32_t german = 0x04B00407;

// Collects the results of one object, and reaches its protected members.
class Version : public CMiniVersion
{
public:
    using CMiniVersion::CMiniVersion;
    using CMiniVersion::GetFixedInfo;
    using CMiniVersion::GetStringInfo;

    Numbers File() const { return All(&CMiniVersion::GetFileVersion); }
    Numbers Product() const { return All(&CMiniVersion::GetProductVersion); }
    Numbers Words() const
    {
        unsigned long flags = 1, os = 1, type = 1, subtype = 1;
        EXPECT_EQ(GetFileFlags(flags) + GetFileOS(os) + GetFileType(type) + GetFileSubtype(subtype),
                  4);
        return {static_cast<unsigned>(flags), static_cast<unsigned>(os),
                static_cast<unsigned>(type), static_cast<unsigned>(subtype)};
    }
    std::wstring Company() const { return Read(&CMiniVersion::GetCompanyName); }
    std::wstring Description() const { return Read(&CMiniVersion::GetFileDescription); }
    std::wstring ProductName() const { return Read(&CMiniVersion::GetProductName); }
    std::wstring Texts() const { return Company() + L"|" + Description() + L"|" + ProductName(); }

private:
    Numbers All(int (CMiniVersion::*get)(unsigned short*) const) const
    {
        unsigned short out[4] = {9, 9, 9, 9};
        EXPECT_EQ((this->*get)(out), 1);
        return {out[0], out[1], out[2], out[3]};
    }
    std::wstring Read(int (CMiniVersion::*get)(unsigned short*, int) const) const
    {
        unsigned short out[600] = {};
        EXPECT_EQ((this->*get)(out, 600), 1);
        return std::wstring(out, out + wcsnlen(reinterpret_cast<const wchar_t*>(out), 600));
    }
};

constexpr Numbers none = {0, 0, 0, 0};

Node Table(const std::wstring& language, const std::wstring& company)
{
    return StringTable(language, company, L"What", L"Exam");
}

Node Complete()
{
    return InEnglish(Table(L"040904b0", L"Kestrow"));
}

// The offsets of the header of a file's resource section, and of the resources.
std::pair<std::size_t, std::size_t> ResourcesOf(const std::string& file)
{
    const std::size_t header = file.find(".rsrc");
    if (header == std::string::npos) throw std::runtime_error("the file has no resources");
    std::uint32_t begin = 0;
    std::memcpy(&begin, file.data() + header + 20, sizeof begin);
    return {header, begin};
}

class MiniVersion : public testing::Test
{
protected:
    std::wstring File() const
    {
        return m_folder / (L"file" + std::to_wstring(m_fileNumber) + L".dll");
    }

    Version Of(const std::string& resource)
    {
        WriteFile(File(), resource);
        return Again();
    }
    Version Of(const Node& root) { return Of(Bytes(root)); }

    // Writes a file with a complete resource and returns its bytes.
    std::string WholeFile()
    {
        WriteFile(File(), Bytes(Complete()));
        return test_support::ReadFile(File());
    }

    // Reads the file that exists already.
    Version Again()
    {
        Version version(File().c_str());
        m_found = version.Init();
        version.Release();
        return version;
    }
    Version Of16(const Node& root)
    {
        test_support::WriteFile(File(), File16(NarrowBytes(root)));
        return Again();
    }

    // Expects that the numbers are right and that the texts are these.
    void ExpectTexts(const Node& root, const std::wstring& texts, const char* what)
    {
        const Version version = Of(root);
        EXPECT_EQ(m_found, 1) << what;
        EXPECT_EQ(version.File(), (Numbers{1, 2, 3, 4})) << what;
        EXPECT_EQ(version.Product(), (Numbers{5, 6, 7, 8})) << what;
        EXPECT_EQ(version.Texts(), texts) << what;
    }

    // Expects that nothing at all is read.
    void ExpectNothing(const Node& root, const char* what)
    {
        const Version version = Of(root);
        EXPECT_EQ(m_found, 0) << what;
        EXPECT_EQ(version.File(), none) << what;
        EXPECT_EQ(version.Words(), none) << what;
        EXPECT_EQ(version.Texts(), L"||") << what;
    }

    // Expects that what a damaged resource gave is within bounds.
    void ExpectNoHarm(const Version& version)
    {
        EXPECT_TRUE(m_found == 0 || m_found == 1);
        EXPECT_LT(version.Texts().size(), 3u * 520);
    }

    // Reads the file with one bit flipped. True when it has numbers.
    bool ReadsWithBit(std::string bytes, std::size_t bit)
    {
        char& byte = bytes[bit / 8];
        byte = static_cast<char>(byte ^ (1 << bit % 8));
        // Each has a name of its own: a platform was seen to keep a damaged file open.
        DeleteFileW(File().c_str());
        ++m_fileNumber;
        test_support::WriteFile(File(), bytes);
        const Version version = Again();
        const testing::ScopedTrace trace(__FILE__, __LINE__, "bit " + std::to_string(bit));
        EXPECT_TRUE(m_found == 1 || version.File() == none);
        ExpectNoHarm(version);
        return m_found == 1;
    }

    const test_support::TemporaryFolder m_folder;
    int m_found = 0; // the result of the last Init
    int m_fileNumber = 0;
};

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

TEST_F(MiniVersion, NumbersThatAreNotThereGiveNothing)
{
    Node root = Complete();
    root.length = 6;
    root.value.clear();
    root.children.clear();
    root.valueLength = 52;
    ExpectNothing(root, "numbers that are not there");

    root = Complete();
    root.length = 80;
    ExpectNothing(root, "numbers that are there in part");
}

// The results are those of the platform, where it does not read beyond the resource.
TEST_F(MiniVersion, LengthsBeyondTheParentEndThere)
{
    Node root = Complete();
    root.length = 0xFFFF;
    ExpectTexts(root, L"Kestrow|What|Exam", "the whole");

    root = Complete();
    root.children[0].children[0].children[2].length = 0x4000;
    ExpectTexts(root, L"Kestrow|What|Exam", "the last text");

    root = Complete();
    root.children[0].children[0].children[0].length = 0x4000;
    ExpectTexts(root, L"Kestrow||", "a text that hides the others");

    root = Complete();
    root.children[0].length = 0xFFF0;
    ExpectTexts(root, L"||", "string tables that hide the translation");
}

TEST_F(MiniVersion, ADamagedTextIsEmptyAndTheOthersAreRight)
{
    for (std::size_t damaged = 0; damaged < 3; ++damaged) {
        std::wstring texts[3] = {L"Kestrow", L"What", L"Exam"};
        const std::string whole = Bytes(Complete());
        std::string resource = whole;
        const std::wstring keys[3] = {L"CompanyName", L"FileDescription", L"ProductName"};
        const std::string key(reinterpret_cast<const char*>(keys[damaged].c_str()),
                              keys[damaged].size() * sizeof(wchar_t));
        const std::size_t at = resource.find(key);
        ASSERT_NE(at, std::string::npos);
        const std::size_t end = at - 6 + static_cast<unsigned char>(resource[at - 6]);
        for (std::size_t i = at; i < end; ++i) // a key without an end, and no value
            resource[i] = 'x';
        texts[damaged].clear();
        EXPECT_EQ(Of(resource).Texts(), texts[0] + L"|" + texts[1] + L"|" + texts[2]);
        EXPECT_EQ(m_found, 1);
    }
}

TEST_F(MiniVersion, ANodeShorterThanItsHeadEndsItsList)
{
    Node root = Complete();
    root.children[0].children[0].children[1].length = 3;
    ExpectTexts(root, L"Kestrow||", "the second text");
    root.children[0].children[0].length = 3;
    ExpectTexts(root, L"||", "the table of the language");
    root.children[0].length = 3;
    ExpectTexts(root, L"||", "the string tables");
}

TEST_F(MiniVersion, TextsEndAtTheirNullWhateverLengthTheyName)
{
    for (const unsigned length : {0u, 1u, 3u, 8u, 9u, 0x7000u, 0xFFFFu}) {
        Node root = Complete();
        for (Node& text : root.children[0].children[0].children)
            text.valueLength = static_cast<std::uint16_t>(length);
        ExpectTexts(root, L"Kestrow|What|Exam", std::to_string(length).c_str());
    }
}

TEST_F(MiniVersion, ATextThatSaysItIsBinaryIsRead)
{
    Node root = Complete();
    for (Node& text : root.children[0].children[0].children)
        text.type = 0;
    ExpectTexts(root, L"Kestrow|What|Exam", "as some compilers write it");
}

TEST_F(MiniVersion, TooShortNumbersGiveNothing)
{
    Node root = Complete();
    root.valueLength = 51;
    ExpectNothing(root, "one byte is missing");
    root.valueLength = 0;
    ExpectNothing(root, "all are missing");
}

TEST_F(MiniVersion, AnUnknownTypeGivesNothing)
{
    Node root = Complete();
    root.type = 0x4141; // makes the platform read the layout of 16-bit files
    ExpectNothing(root, "not of this layout");
}

TEST_F(MiniVersion, ALastTextWithoutItsNullStaysInTheResource)
{
    Node text = Text(L"ProductName", L"Exam");
    text.value.resize(text.value.size() - 2);
    text.valueLength = 4;
    const Version version =
        Of(Root({}, {Translations({english}), StringFileInfo({StringTable(L"040904b0", {text})})}));
    EXPECT_EQ(version.ProductName(), L"Exam");
}

TEST_F(MiniVersion, ResourcesThatBreakOffDoNoHarm)
{
    const std::string whole = Bytes(Complete());
    for (std::size_t size = 1; size < whole.size(); size += 7)
        ExpectNoHarm(Of(whole.substr(0, size)));
}

// Each node takes no more than a glance, although thousands of keys have no end, and megabytes
// follow.
TEST_F(MiniVersion, NodesWithoutAnEndAreReadAtOnce)
{
    std::string resource = Bytes(Root({}, {}));
    while (resource.size() < 0xFFF8)
        resource += std::string("\x08\0\0\0\1\0x\1", 8);
    resource.replace(0, 2, "\xF8\xFF");
    resource += std::string(4'000'000, 'x');
    const ULONGLONG begin = GetTickCount64();
    EXPECT_EQ(Of(resource).File(), (Numbers{1, 2, 3, 4}));
    EXPECT_LT(GetTickCount64() - begin, 3000u);
}

// Each node reaches to the end of the resource.
TEST_F(MiniVersion, NodesInsideOfEachOtherAreReadAtOnce)
{
    std::string resource = Bytes(Root({}, {}));
    for (std::uint16_t rest = 0xFFF8 - 92; rest > 100;
         rest = static_cast<std::uint16_t>(rest - 8)) {
        const char node[] = {
            static_cast<char>(rest & 0xFF), static_cast<char>(rest >> 8), 0, 0, 1, 0, 0, 0};
        resource.append(node, sizeof node);
    }
    resource.replace(0, 2, "\xF8\xFF");
    resource.resize(0xFFF8);
    const ULONGLONG begin = GetTickCount64();
    EXPECT_EQ(Of(resource).Texts(), L"||");
    EXPECT_EQ(m_found, 1);
    EXPECT_LT(GetTickCount64() - begin, 3000u);
}

TEST_F(MiniVersion, DamagedResourcesDoNoHarm)
{
    const std::string whole = Bytes(Complete());
    std::minstd_rand random(17);
    for (int round = 0; round < 300; ++round) {
        std::string damaged = whole;
        for (unsigned i = 1 + random() % 5; i > 0; --i)
            damaged[random() % damaged.size()] = static_cast<char>(random());
        ExpectNoHarm(Of(damaged));
    }
}

TEST_F(MiniVersion, FilesWithOneWrongBitDoNoHarm)
{
    const std::string whole = WholeFile();
    std::minstd_rand random(23);
    int read = 0;
    for (int round = 0; round < 2000; ++round) {
        // Every second bit lies in the part that the platform must walk through.
        const std::size_t size =
            round % 2 ? whole.size() : std::min<std::size_t>(whole.size(), 1024);
        read += ReadsWithBit(whole, random() % (size * 8));
    }
    EXPECT_GT(read, 1000) << "most bits are no matter";
}

// The flipped bits cover the resource directory, its data and the section's header.
TEST_F(MiniVersion, AResourceDirectoryWithOneWrongBitDoesNoHarm)
{
    const std::string whole = WholeFile();
    const auto [header, begin] = ResourcesOf(whole);
    for (std::size_t bit = 0; bit < 40 * 8; ++bit)
        ReadsWithBit(whole, header * 8 + bit);
    for (std::size_t bit = 0; bit < 100 * 8; ++bit)
        ReadsWithBit(whole, begin * 8 + bit);
}

TEST_F(MiniVersion, DataBeyondTheFileGivesNothing)
{
    const std::string whole = WholeFile();
    const std::size_t begin = ResourcesOf(whole).second;
    constexpr std::size_t dataEntry = 3 * (16 + 8); // behind three tables of one entry each
    for (const std::size_t field : {dataEntry, dataEntry + 4}) {
        std::string damaged = whole;
        damaged[begin + field + 2] = '\x40'; // 4 MiB too far, or too large
        test_support::WriteFile(File(), damaged);
        EXPECT_EQ(Again().Texts(), L"||");
        EXPECT_EQ(m_found, 0);
    }
}

TEST_F(MiniVersion, AFileThatBreaksOffDoesNoHarm)
{
    const std::string whole = WholeFile();
    for (std::size_t size = 0; size < whole.size(); size += 1 + size / 50) {
        test_support::WriteFile(File(), whole.substr(0, size));
        EXPECT_TRUE(Again().File() == none || m_found == 1) << size;
    }
}

TEST_F(MiniVersion, IsSearchedForAsLibrariesAre)
{
    Version version(L"kernel32.dll");
    EXPECT_EQ(version.Init(), 1);
    EXPECT_NE(version.File(), none);
    version.Release();
}

Node Narrow()
{
    return Root({}, {StringFileInfo({Table(L"040904e4", L"Kestrow, a company of old files")}),
                     Translations({0x04E40409})});
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

TEST_F(MiniVersion, LengthsBeyondTheParentEndThereIn16BitsToo)
{
    Node root = Narrow();
    root.length = 0xFFFF;
    EXPECT_EQ(Of16(root).Texts(), L"Kestrow, a company of old files|What|Exam");
    root = Narrow();
    root.children[0].children[0].children[0].length = 0x4000;
    EXPECT_EQ(Of16(root).Texts(), L"Kestrow, a company of old files||");
    EXPECT_EQ(m_found, 1);
}

TEST_F(MiniVersion, FilesOf16BitsWithOneWrongBitDoNoHarm)
{
    const std::string whole = File16(NarrowBytes(Narrow()));
    for (std::size_t bit = 0; bit < whole.size() * 8; bit += 1 + bit % 3)
        ReadsWithBit(whole, bit);
}

TEST_F(MiniVersion, DataBeyondAFileOf16BitsGivesNothing)
{
    const std::string whole = File16(NarrowBytes(Narrow()));
    for (const std::size_t field : {0x80u + 11, 0x80u + 13, 0x80u + 5}) { // offset, size, count
        std::string damaged = whole;
        damaged[field] = '\x7F';
        if (field == 0x80u + 5) damaged[0x80 + 16] = 2; // there is no resource of that name
        test_support::WriteFile(File(), damaged);
        EXPECT_EQ(Again().File(), none) << field;
        EXPECT_EQ(m_found, 0) << field;
    }
}

} // namespace
