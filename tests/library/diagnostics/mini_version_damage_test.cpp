// The reader of version resources: how it copes with resources that lie.
#include "MiniVersionFixture.h"

#include <algorithm>
#include <cstring>
#include <random>
#include <stdexcept>
#include <utility>

namespace version_resource {
namespace {

// The offsets of the header of a file's resource section, and of the resources.
std::pair<std::size_t, std::size_t> ResourcesOf(const std::string& file)
{
    const std::size_t header = file.find(".rsrc");
    if (header == std::string::npos) throw std::runtime_error("the file has no resources");
    std::uint32_t begin = 0;
    std::memcpy(&begin, file.data() + header + 20, sizeof begin);
    return {header, begin};
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

    root = Complete();
    Node empty;
    empty.length = 7; // one byte less than the head and the end of the key
    std::vector<Node>& texts = root.children[0].children[0].children;
    texts.insert(texts.begin() + 1, empty);
    ExpectTexts(root, L"Kestrow||", "a text without a whole key");
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
} // namespace version_resource
