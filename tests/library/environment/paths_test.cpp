#include <gtest/gtest.h>
#include <qor_utils/HostProfile.h>
#include <qor_utils/Profile.h>
#include <qor_utils/StoreNumbers.h>
#include <qor_utils/zelPath.h>
#include <test_support/Files.h>
#include <test_support/ImportHook.h>
#include <test_support/LogCapture.h>
#include <test_support/Program.h>
#include <test_support/StoreFolder.h>
#include <test_support/TemporaryFolder.h>
#include <test_support/TemporaryRegistryKey.h>
#include <Utils_Statics/utilsExam.h>

#include <windows.h>
#include <shlwapi.h>

#include <array>
#include <random>
#include <string>
#include <utility>

using test_support::ImportHook;
using test_support::LogCapture;
using test_support::LoggedMessage;
using test_support::StoreFolder;
using test_support::TemporaryFolder;
using test_support::WriteFile;

namespace {

std::wstring WithForwardSlashes(std::wstring path)
{
    for (wchar_t& character : path)
        if (character == L'\\') character = L'/';
    return path;
}

TEST(GetApplicationFilePath, IsTheFileOfTheRunningProgram)
{
    EXPECT_EQ(utilsExam::GetApplicationFilePath(), test_support::ProgramPath().c_str());
}

TEST(GetApplicationPath, IsTheProgramsFolderWithATrailingBackslash)
{
    EXPECT_EQ(utilsExam::GetApplicationPath(), test_support::BesideProgram(L"").c_str());
}

DWORD WINAPI FindNoName(HMODULE, wchar_t*, DWORD)
{
    return 0;
}

DWORD WINAPI TellNegative(HMODULE, wchar_t*, DWORD)
{
    return 0x80000000;
}

TEST(GetApplicationFilePath, IsEmptyAfterAFailureAndInTheApplicationFolderAfterANegativeCount)
{
    const TemporaryFolder folder;
    const StoreFolder application(qor_utils::applicationStore, folder.Path());
    {
        const ImportHook hook(L"Utils_Statics.dll", "GetModuleFileNameW", &FindNoName);
        EXPECT_EQ(utilsExam::GetApplicationFilePath(), L"");
    }
    const ImportHook hook(L"Utils_Statics.dll", "GetModuleFileNameW", &TellNegative);
    EXPECT_EQ(utilsExam::GetApplicationFilePath(), (folder / L"exam.exe").c_str());
    EXPECT_EQ(utilsExam::GetApplicationPath(), (folder / L"").c_str());
}

// Values below a root key of this process.
class RegistryPathTest : public testing::Test
{
protected:
    RegistryPathTest() { qor_utils::SetProfileRoot(m_root.Path().c_str()); }
    ~RegistryPathTest() override { qor_utils::SetProfileRoot(nullptr); }

    void Store(const wchar_t* name, const std::wstring& value) const
    {
        m_root.SetText(L"System\\Path", name, value);
    }

private:
    test_support::TemporaryRegistryKey m_root;
};

TEST_F(RegistryPathTest, GivesTheDefaultAsItIsWhenNothingIsStored)
{
    EXPECT_STREQ(utilsExam::GetRegistryPath(L"Export", L"D:\\default"), L"D:\\default");
    EXPECT_STREQ(utilsExam::GetRegistryPath(L"Export", L""), L"");
    EXPECT_STREQ(utilsExam::GetRegistryPath(L"Export", nullptr), L"");
}

TEST_F(RegistryPathTest, AppendsABackslashToWhatIsStored)
{
    Store(L"Export", L"D:\\data");
    EXPECT_STREQ(utilsExam::GetRegistryPath(L"Export", L"E:\\default"), L"D:\\data\\");
    EXPECT_STREQ(utilsExam::GetRegistryPath(L"Export", L"D:\\data"), L"D:\\data\\");
    Store(L"Export", L"D:\\data\\");
    EXPECT_STREQ(utilsExam::GetRegistryPath(L"Export", L"E:\\default"), L"D:\\data\\");
    Store(L"Export", L"D:/data/");
    EXPECT_STREQ(utilsExam::GetRegistryPath(L"Export", L"E:\\default"), L"D:/data/\\");
}

TEST_F(RegistryPathTest, GivesTheDefaultWhenAnEmptyTextIsStored)
{
    Store(L"Export", L"");
    EXPECT_STREQ(utilsExam::GetRegistryPath(L"Export", L"E:\\default"), L"E:\\default");
}

TEST_F(RegistryPathTest, TakesTextsLongerThanAPathBuffer)
{
    const std::wstring longPath = L"D:\\" + std::wstring(300, L'x');
    Store(L"Export", longPath);
    EXPECT_EQ(utilsExam::GetRegistryPath(L"Export", L""), (longPath + L"\\").c_str());
}

TEST(GetPatientRootPath, IsTheFolderOfThePatientDatabase)
{
    const StoreFolder patients(34, L"D:\\patients");
    EXPECT_STREQ(utilsExam::GetPatientRootPath(), L"D:\\patients\\");
}

TEST(GetImage, IsANameInTheImageFolder)
{
    const StoreFolder images(2, L"D:\\images");
    EXPECT_EQ(utilsExam::GetImage(L"status/net.png"), L"D:\\images\\status/net.png");
    EXPECT_EQ(utilsExam::GetImage(nullptr), L"D:\\images\\");
}

TEST(DatabasePaths, FollowTheFolderOfPatientStudyAndObject)
{
    EXPECT_STREQ(utilsExam::GetObjectPath(L"D:\\db\\P1\\S1\\O1"), L"D:\\db\\P1\\S1\\O1.xml");
    EXPECT_STREQ(utilsExam::GetStudyPath(L"D:\\db\\P1\\S1\\O1"), L"D:\\db\\P1\\S1\\study.xml");
    EXPECT_STREQ(utilsExam::GetPatientPath(L"D:\\db\\P1\\S1\\O1"), L"D:\\db\\P1\\patient.xml");
}

TEST(DatabasePaths, AreNormalisedOnce)
{
    EXPECT_STREQ(utilsExam::GetObjectPath(L"D:/db//P1\\\\\\S1/\\O1"), L"D:\\db\\P1\\\\S1\\O1.xml");
    EXPECT_STREQ(utilsExam::GetStudyPath(L"D:/db//P1/S1/O1"), L"D:\\db\\P1\\S1\\study.xml");
    EXPECT_STREQ(utilsExam::GetPatientPath(L"D:/db//P1/S1/O1"), L"D:\\db\\P1\\patient.xml");
    EXPECT_STREQ(utilsExam::GetObjectPath(L"\\\\server\\O1"), L"\\server\\O1.xml"); // deliberate
}

// Turns forward slashes round, then makes one of each pair of backslashes, in one walk over the
// characters.
std::wstring PlainlyNormalised(const std::wstring& path)
{
    std::wstring result;
    bool halfOfPair = false;
    for (wchar_t character : path) {
        if (character == L'/') character = L'\\';
        const bool drop = halfOfPair && character == L'\\';
        halfOfPair = character == L'\\' && !drop;
        if (!drop) result += character;
    }
    return result;
}

// The normalised path without its last components, found by the platform's own function.
std::wstring PlainAncestor(const std::wstring& path, int generations)
{
    wchar_t buffer[MAX_PATH] = {};
    PlainlyNormalised(path).copy(buffer, MAX_PATH - 1);
    for (int i = 0; i < generations; ++i)
        PathRemoveFileSpecW(buffer);
    return buffer;
}

TEST(DatabasePaths, AgreeWithThePlainNormalisationOnRandomTexts)
{
    std::mt19937 random(31);
    for (int round = 0; round < 3000; ++round) {
        std::wstring object(random() % 20, L'a');
        for (wchar_t& character : object)
            character = L"ab\\\\//.: "[random() % 9];
        ASSERT_EQ(std::wstring(utilsExam::GetObjectPath(object.c_str())),
                  PlainlyNormalised(object) + L".xml");
        ASSERT_EQ(std::wstring(utilsExam::GetStudyPath(object.c_str())),
                  PlainAncestor(object, 1) + L"\\study.xml");
        ASSERT_EQ(std::wstring(utilsExam::GetPatientPath(object.c_str())),
                  PlainAncestor(object, 2) + L"\\patient.xml");
    }
}

TEST(DatabasePaths, OfAnEmptyOrNullObjectAreTheNamesAlone)
{
    EXPECT_STREQ(utilsExam::GetObjectPath(L""), L".xml");
    EXPECT_STREQ(utilsExam::GetObjectPath(nullptr), L".xml");
    EXPECT_STREQ(utilsExam::GetPatientPath(nullptr), L"\\patient.xml");
}

TEST(DatabasePaths, LoseNothingToTheLengthOfTheObjectsName)
{
    for (const std::size_t length : {259u, 260u, 300u, 5000u}) {
        std::wstring object = L"D:\\p\\s\\";
        object.resize(length, L'x');
        EXPECT_EQ(utilsExam::GetObjectPath(object.c_str()), (object + L".xml").c_str());
        EXPECT_STREQ(utilsExam::GetStudyPath(object.c_str()), L"D:\\p\\s\\study.xml");
        EXPECT_STREQ(utilsExam::GetPatientPath(object.c_str()), L"D:\\p\\patient.xml");
    }
}

TEST(DatabasePaths, MayHaveFoldersOfAnyLength)
{
    const std::wstring patient = L"D:\\" + std::wstring(300, L'p');
    const std::wstring study = patient + L"\\" + std::wstring(300, L's');
    const std::wstring object = study + L"\\O1";
    EXPECT_EQ(utilsExam::GetStudyPath(object.c_str()), (study + L"\\study.xml").c_str());
    EXPECT_EQ(utilsExam::GetPatientPath(object.c_str()), (patient + L"\\patient.xml").c_str());
}

TEST(DatabasePaths, KeepCharactersBeyondTheBasicPlane)
{
    EXPECT_STREQ(utilsExam::GetStudyPath(L"D:\\\U0001F600\\S\u00e4\\O1"),
                 L"D:\\\U0001F600\\S\u00e4\\study.xml");
}

TEST(GetStudyPath, HasTheLoggerCheckTheStudysFolder)
{
    LogCapture log;
    utilsExam::GetStudyPath(L"D:\\db\\P1\\S1\\O1");
    EXPECT_TRUE(log.Take().empty());
    EXPECT_STREQ(utilsExam::GetStudyPath(L"D:\\db\\P1\\S|1\\O1"), L"D:\\db\\P1\\S|1\\study.xml");
    const auto messages = log.Take();
    ASSERT_EQ(messages.size(), 1u);
    EXPECT_EQ(messages[0].source, "Utils_Statics/Utils_Statics");
    EXPECT_EQ(messages[0].line, 1029);
    utilsExam::GetPatientPath(L"D:\\db\\P1\\S|1\\O1");
    EXPECT_TRUE(log.Take().empty());
}

class ParsePathTest : public testing::Test
{
protected:
    ParsePathTest() : m_reference(m_folder / L"lay\\main.xml")
    {
        for (const wchar_t* const name :
             {L"lay", L"lay\\res", L"layouts", L"layouts\\res", L"fallback"})
            CreateDirectoryW((m_folder / name).c_str(), nullptr);
    }

    CString Parse(const wchar_t* path) const
    {
        return utilsExam::ParsePath(m_reference.c_str(), path);
    }
    std::wstring Address(const wchar_t* name) const { return WithForwardSlashes(m_folder / name); }

    TemporaryFolder m_folder;
    StoreFolder m_layouts{9, m_folder / L"layouts"};
    StoreFolder m_fallback{21, m_folder / L"fallback"};
    std::wstring m_reference;
    LogCapture m_log;
};

TEST_F(ParsePathTest, GivesAnEmptyTextForBlanks)
{
    EXPECT_STREQ(Parse(L""), L"");
    EXPECT_STREQ(Parse(L" \t\r\n "), L"");
    EXPECT_STREQ(Parse(nullptr), L"");
    EXPECT_TRUE(m_log.Take().empty());
}

TEST_F(ParsePathTest, TrimsAllWhiteSpace)
{
    WriteFile(m_folder / L"lay\\img.png", "");
    for (const wchar_t* const blank :
         {L" ", L"\t", L"\r\n", L"\v", L"\f", L"\x00A0", L"\x2003", L"\x3000", L" \x2028\t"}) {
        EXPECT_STREQ(Parse(blank), L"");
        EXPECT_EQ(Parse((std::wstring(blank) + L"img.png" + blank).c_str()),
                  Address(L"lay\\img.png").c_str());
    }
}

TEST_F(ParsePathTest, GivesAnAbsolutePathTrimmedAndUnchanged)
{
    EXPECT_STREQ(Parse(L"C:\\no such\\img.png"), L"C:\\no such\\img.png");
    EXPECT_STREQ(Parse(L"  C:/no such/img.png\t"), L"C:/no such/img.png");
    EXPECT_STREQ(Parse(L"\\img.png"), L"\\img.png");
    EXPECT_TRUE(m_log.Take().empty());
}

TEST_F(ParsePathTest, FindsAFileBesideTheReference)
{
    WriteFile(m_folder / L"lay\\img.png", "");
    EXPECT_EQ(Parse(L" img.png "), Address(L"lay\\img.png").c_str());
    const std::wstring asAddress = L"file:///" + WithForwardSlashes(m_reference);
    EXPECT_EQ(utilsExam::ParsePath(asAddress.c_str(), L"img.png"),
              Address(L"lay\\img.png").c_str());
    EXPECT_TRUE(m_log.Take().empty());
}

TEST_F(ParsePathTest, TriesTheFiveCandidatesInOrder)
{
    const std::wstring candidates[] = {
        Address(L"lay\\img.png"), Address(L"lay\\res\\img.png"), m_folder / L"layouts\\img.png",
        m_folder / L"layouts\\res/img.png", m_folder / L"fallback\\img.png"};
    for (const std::wstring& candidate : candidates)
        WriteFile(candidate, "");
    for (const std::wstring& candidate : candidates) {
        EXPECT_EQ(Parse(L"img.png"), candidate.c_str());
        ASSERT_TRUE(DeleteFileW(candidate.c_str()));
    }
    EXPECT_TRUE(m_log.Take().empty());
    EXPECT_STREQ(Parse(L"img.png"), L"");
    const LoggedMessage missing{"Utils_Statics/Utils_Statics", 1332, 2,
                                L"Layout File - File " + candidates[4] + L" not found."};
    EXPECT_EQ(m_log.Take(), std::vector<LoggedMessage>{missing});
}

TEST_F(ParsePathTest, TurnsTheBackslashesOfThePathRound)
{
    CreateDirectoryW((m_folder / L"lay\\sub").c_str(), nullptr);
    WriteFile(m_folder / L"lay\\sub\\img.png", "");
    EXPECT_EQ(Parse(L"sub\\img.png"), Address(L"lay\\sub\\img.png").c_str());
}

TEST_F(ParsePathTest, ComposesAPathThroughTheParentFolderWithoutLookingForIt)
{
    const std::wstring asAddress = L"file:///" + WithForwardSlashes(m_reference);
    EXPECT_EQ(utilsExam::ParsePath(asAddress.c_str(), L"..\\other\\none.png"),
              Address(L"lay\\../other/none.png").c_str());
    EXPECT_EQ(Parse(L"..\\none.png"), Address(L"lay\\../none.png").c_str());
    // Only the second character decides.
    EXPECT_EQ(Parse(L"a.png"), Address(L"lay\\a.png").c_str());
    EXPECT_TRUE(m_log.Take().empty());
}

TEST_F(ParsePathTest, LooksForANameOfOneCharacter)
{
    WriteFile(m_folder / L"lay\\x", "");
    EXPECT_EQ(Parse(L"x"), Address(L"lay\\x").c_str());
}

TEST_F(ParsePathTest, CutsTheReferenceAtTheFirstOccurrenceOfItsFileName)
{
    CreateDirectoryW((m_folder / L"my-main.xml-files").c_str(), nullptr);
    const std::wstring reference = m_folder / L"my-main.xml-files\\main.xml";
    WriteFile(m_folder / L"my-img.png", "");
    EXPECT_EQ(utilsExam::ParsePath(reference.c_str(), L"img.png"), Address(L"my-img.png").c_str());
}

TEST_F(ParsePathTest, LooksInTheCurrentDirectoryAndTheStoresWithoutAReference)
{
    WriteFile(m_folder / L"layouts\\only-here.png", "");
    EXPECT_EQ(utilsExam::ParsePath(nullptr, L"only-here.png"),
              (m_folder / L"layouts\\only-here.png").c_str());
    EXPECT_EQ(utilsExam::ParsePath(L"", L"only-here.png"),
              (m_folder / L"layouts\\only-here.png").c_str());
}

TEST_F(ParsePathTest, TakesPathsOfAnyLength)
{
    for (const std::size_t length : {259u, 260u, 300u, 40000u}) {
        EXPECT_STREQ(Parse(std::wstring(length, L'x').c_str()), L"");
        const auto messages = m_log.Take();
        ASSERT_EQ(messages.size(), 1u);
        EXPECT_EQ(messages[0].line, 1332);
        const std::wstring absolute = L"C:\\" + std::wstring(length - 3, L'x');
        EXPECT_EQ(Parse(absolute.c_str()), absolute.c_str());
    }
}

TEST_F(ParsePathTest, FindsNamesBeyondTheBasicPlane)
{
    WriteFile(m_folder / L"lay\\\U0001F600.png", "");
    EXPECT_EQ(Parse(L"\U0001F600.png"), Address(L"lay\\\U0001F600.png").c_str());
}

// ---- The rules in their plainest form

std::wstring PlainAddress(const std::wstring& text)
{
    const std::wstring scheme = L"file:///", turned = WithForwardSlashes(text);
    std::wstring result;
    for (std::size_t i = 0; i < turned.size();)
        if (turned.compare(i, scheme.size(), scheme) == 0)
            i += scheme.size();
        else
            result += turned[i++];
    return result;
}

// The text before the first place that is followed by the name of its file.
std::wstring PlainFolder(const std::wstring& reference)
{
    const std::wstring name = PathFindFileNameW(reference.c_str());
    std::wstring folder;
    while (reference.compare(folder.size(), name.size(), name) != 0)
        folder += reference[folder.size()];
    return folder;
}

// The rule that gave the result.
enum class Rule : std::size_t
{
    Unchanged,
    Composed,
    BesideReference,
    InResBesideReference,
    InLayouts,
    InResOfLayouts,
    InFallback,
    Nowhere,
    count
};

std::pair<Rule, std::wstring> PlainParse(const std::wstring& reference, std::wstring path)
{
    path.erase(0, path.find_first_not_of(L' '));
    while (!path.empty() && path.back() == L' ')
        path.pop_back();
    if (path.empty() || !PathIsRelativeW(path.c_str())) return {Rule::Unchanged, path};
    const std::wstring folder = PlainFolder(reference);
    if (path.size() > 1 && path[1] == L'.') return {Rule::Composed, PlainAddress(folder + path)};
    const std::wstring place = PlainAddress(folder), name = WithForwardSlashes(path);
    const std::pair<Rule, std::wstring> candidates[] = {
        {Rule::BesideReference, place + name},
        {Rule::InResBesideReference, place + L"res/" + name},
        {Rule::InLayouts, zelPath::getPath(9, name)},
        {Rule::InResOfLayouts, zelPath::getPath(9, L"res/" + name)},
        {Rule::InFallback, zelPath::getPath(21, name)}};
    for (const auto& candidate : candidates)
        if (PathFileExistsW(candidate.second.c_str())) return candidate;
    return {Rule::Nowhere, L""};
}

TEST_F(ParsePathTest, AgreesWithThePlainRulesOnRandomTexts)
{
    for (const wchar_t* const file :
         {L"lay\\a", L"lay\\aa.b", L"lay\\res\\x", L"lay\\res\\a", L"layouts\\ax", L"layouts\\a",
          L"layouts\\res\\xa", L"fallback\\xx", L"fallback\\a"})
        WriteFile(m_folder / file, "");
    std::mt19937 random(4);
    const auto text = [&](auto& pieces, std::size_t count) {
        std::wstring joined;
        for (auto left = random() % count; left > 0; --left)
            joined += pieces[random() % std::size(pieces)];
        return joined;
    };
    const std::wstring references[] = {m_reference, L"file:///" + WithForwardSlashes(m_reference),
                                       L"file:///" + m_reference, m_folder / L"lay\\lay"};
    const wchar_t* const pieces[] = {L"a",      L"x",  L"a",  L"x", L"..",       L".",
                                     L"/",      L"\\", L"//", L" ", L"file:///", L"res/",
                                     L"\u00e4", L":",  L"~",  L"*", L"|"};
    std::array<int, static_cast<std::size_t>(Rule::count)> met = {};
    for (int round = 0; round < 4000; ++round) {
        const std::wstring reference =
            round % 2 ? text(pieces, 8) : references[random() % std::size(references)];
        const std::wstring path = text(pieces, 5);
        const auto [rule, expected] = PlainParse(reference, path);
        ASSERT_EQ(std::wstring(utilsExam::ParsePath(reference.c_str(), path.c_str())), expected)
            << "reference " << reference << ", path " << path;
        ASSERT_EQ(m_log.Take().size(), rule == Rule::Nowhere ? 1u : 0u);
        ++met[static_cast<std::size_t>(rule)];
    }
    for (std::size_t rule = 0; rule < met.size(); ++rule)
        EXPECT_GT(met[rule], 5) << "rule " << rule;
}

} // namespace
