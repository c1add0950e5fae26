#include <gtest/gtest.h>
#include <qor_utils/StoreFolders.h>
#include <qor_utils/zelPath.h>
#include <test_support/Files.h>
#include <test_support/LogCapture.h>
#include <test_support/ProtocolFolders.h>
#include <Utils_Statics/utilsExam.h>

#include <windows.h>

using test_support::FileExists;
using test_support::LogCapture;
using test_support::LoggedMessage;
using test_support::WriteFile;

namespace {

class ProtocolFilesTest : public testing::Test
{
protected:
    test_support::ProtocolFolders folder;
    LogCapture log;
};

TEST_F(ProtocolFilesTest, SavePathIsInAFolderNamedLikeTheFactoryFolder)
{
    ASSERT_FALSE(FileExists(folder / L"saved\\P1"));
    EXPECT_EQ(utilsExam::GetProtocolSavePath(L"a.xml", nullptr),
              (folder / L"saved\\P1\\a.xml").c_str());
    EXPECT_TRUE(FileExists(folder / L"saved\\P1"));
    EXPECT_EQ(utilsExam::GetProtocolSavePath(L"a.xml", nullptr),
              (folder / L"saved\\P1\\a.xml").c_str());
}

TEST_F(ProtocolFilesTest, SavePathTakesAFolderThatIsNamed)
{
    EXPECT_EQ(utilsExam::GetProtocolSavePath(L"a.xml", L"other"),
              (folder / L"saved\\other\\a.xml").c_str());
    EXPECT_EQ(utilsExam::GetProtocolSavePath(L"a.xml", L"x\\y\\/\\"),
              (folder / L"saved\\x\\y\\a.xml").c_str());
    EXPECT_TRUE(FileExists(folder / L"saved\\x\\y"));
    EXPECT_EQ(utilsExam::GetProtocolSavePath(L"a.xml", L""), (folder / L"saved\\a.xml").c_str());
    EXPECT_EQ(utilsExam::GetProtocolSavePath(nullptr, L"other"),
              (folder / L"saved\\other\\").c_str());
}

TEST_F(ProtocolFilesTest, SavePathTakesFoldersWithoutAndWithSeveralTrailingSlashes)
{
    for (const wchar_t* const factory : {L"factory\\P2", L"factory\\P2\\\\", L"factory\\P2/"}) {
        qor_utils::SetStoreFolder(37, folder / factory);
        EXPECT_EQ(utilsExam::GetProtocolSavePath(L"a.xml", nullptr),
                  (folder / L"saved\\P2\\a.xml").c_str());
    }
}

TEST_F(ProtocolFilesTest, SavePathIsGivenWhereTheFolderCannotBeCreated)
{
    WriteFile(folder / L"saved\\P1", "a file in the way");
    EXPECT_EQ(utilsExam::GetProtocolSavePath(L"a.xml", nullptr),
              (folder / L"saved\\P1\\a.xml").c_str());
    EXPECT_TRUE(log.Take().empty());
}

TEST_F(ProtocolFilesTest, EachLayerShadowsTheNextOnes)
{
    const std::wstring layers[] = {folder / L"saved\\P1\\m.xml", folder / L"factory\\P1\\m.xml",
                                   folder / L"base\\m.xml", folder / L"second\\m.xml",
                                   folder / L"fallback\\m.xml"};
    utilsExam::CreateDirectoryW((folder / L"saved\\P1").c_str());
    for (const std::wstring& layer : layers)
        WriteFile(layer, "x");
    for (const std::wstring& layer : layers) {
        EXPECT_EQ(utilsExam::GetProtocolFile(L"m.xml"), layer.c_str());
        ASSERT_TRUE(DeleteFileW(layer.c_str()));
    }
    EXPECT_TRUE(log.Take().empty());
}

TEST_F(ProtocolFilesTest, FactoryAndBaseFilesIgnoreTheLayersAbove)
{
    utilsExam::CreateDirectoryW((folder / L"saved\\P1").c_str());
    WriteFile(folder / L"saved\\P1\\m.xml", "x");
    WriteFile(folder / L"factory\\P1\\m.xml", "x");
    WriteFile(folder / L"second\\m.xml", "x");
    EXPECT_EQ(utilsExam::GetFactoryProtocolFile(L"m.xml"),
              (folder / L"factory\\P1\\m.xml").c_str());
    EXPECT_EQ(utilsExam::GetBaseProtocolFile(L"m.xml"), (folder / L"second\\m.xml").c_str());
}

TEST_F(ProtocolFilesTest, AMissingFileIsLoggedAndItsLastCandidateGiven)
{
    const LoggedMessage missing{"Utils_Statics/Utils_Statics", 1497, 1,
                                L"Neither the Base Protocol Suite (" + folder / L"base\\" +
                                    L") nor Factory Settings Folder (" + folder / L"fallback\\" +
                                    L") contain none.xml."};
    EXPECT_EQ(utilsExam::GetProtocolFile(L"none.xml"), (folder / L"fallback\\none.xml").c_str());
    EXPECT_EQ(log.Take(), std::vector<LoggedMessage>{missing});
    EXPECT_EQ(utilsExam::GetBaseProtocolFile(L"none.xml"),
              (folder / L"fallback\\none.xml").c_str());
    EXPECT_EQ(log.Take(), std::vector<LoggedMessage>{missing});
}

TEST_F(ProtocolFilesTest, TheTwoOptionalFilesAreNotLoggedInAnySpelling)
{
    for (const wchar_t* const name : {L"worksheet.xml", L"Worksheet.XML",
                                      L"measurements-custom.xml", L"MEASUREMENTS-Custom.xml"}) {
        EXPECT_EQ(utilsExam::GetProtocolFile(name), (folder / L"fallback" + L"\\" + name).c_str());
        EXPECT_TRUE(log.Take().empty());
    }
    utilsExam::GetProtocolFile(L"worksheet.xml2");
    EXPECT_EQ(log.Take().size(), 1u);
}

TEST_F(ProtocolFilesTest, NamesMayBeLongOrBeyondTheBasicPlane)
{
    WriteFile(folder / L"base\\\U0001F600.xml", "x");
    EXPECT_EQ(utilsExam::GetProtocolFile(L"\U0001F600.xml"),
              (folder / L"base\\\U0001F600.xml").c_str());
    const std::wstring name(300, L'x');
    EXPECT_EQ(utilsExam::GetProtocolFile(name.c_str()),
              (folder / L"fallback" + L"\\" + name).c_str());
}

} // namespace
