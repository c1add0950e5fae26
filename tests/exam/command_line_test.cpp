#include "app/CommandLine.h"

#include <gtest/gtest.h>

using exam::ParseCommandLine;
using exam::Settings;

TEST(CommandLine, WithoutArgumentsOpensAsItIsSet)
{
    const auto options = ParseCommandLine({});
    EXPECT_TRUE(options.error.empty());
    EXPECT_FALSE(options.IsTour());
    Settings kept;
    kept.language = L"de";
    kept.recordings = L"D:\\loops";
    EXPECT_EQ(options.Over(kept), kept);
}

TEST(CommandLine, ReadsLanguageConsoleAndTour)
{
    const auto options =
        ParseCommandLine({L"--language", L"de", L"--console", L"Tavren", L"--tour", L"out"});
    EXPECT_EQ(options.error, L"");
    EXPECT_EQ(options.Over({}).language, L"de");
    EXPECT_EQ(options.Over({}).console, L"Tavren");
    EXPECT_EQ(options.tourFolder, L"out");
}

TEST(CommandLine, ReadsWhatHasToDoWithArchivesVersionsAndCrashes)
{
    auto options = ParseCommandLine({L"--pack", L"a.zip", L"folder", L"--overwrite"});
    EXPECT_EQ(options.error, L"");
    EXPECT_TRUE(options.IsCommand() && options.overwrite);
    EXPECT_EQ(options.archive, L"a.zip");
    EXPECT_EQ(options.folderToPack, L"folder");
    options = ParseCommandLine({L"--unpack", L"a.zip", L"folder", L"--password", L"secret"});
    EXPECT_EQ(options.error, L"");
    EXPECT_EQ(options.folderToFill, L"folder");
    EXPECT_EQ(options.password, L"secret");
    options = ParseCommandLine({L"--crash", L"stack", L"--log", L"logs", L"--service"});
    EXPECT_EQ(options.error, L"");
    EXPECT_TRUE(options.IsCommand() && options.service);
    EXPECT_EQ(options.logFolder, L"logs");
    EXPECT_EQ(ParseCommandLine({L"--version-info", L"a.exe"}).versionFile, L"a.exe");
    EXPECT_EQ(ParseCommandLine({L"--crash", L"softly"}).error,
              L"--crash takes read, write, divide, illegal, stack, thread, not 'softly'");
    EXPECT_EQ(ParseCommandLine({L"--password", L"p"}).error, L"--password goes with --unpack");
    EXPECT_NE(ParseCommandLine({L"--pack", L"a", L"b", L"--unpack", L"a", L"b"}).error, L"");
}

TEST(CommandLine, AsksForHelpWithEitherSpelling)
{
    EXPECT_TRUE(ParseCommandLine({L"--help"}).help);
    EXPECT_TRUE(ParseCommandLine({L"-h"}).help);
}

TEST(CommandLine, AsksForTheVersion)
{
    EXPECT_TRUE(ParseCommandLine({L"--version"}).version);
    EXPECT_FALSE(ParseCommandLine({L"--help"}).version);
}

TEST(CommandLine, TellsWhatIsWrong)
{
    EXPECT_EQ(ParseCommandLine({L"--surprise"}).error, L"unknown argument '--surprise'");
    EXPECT_EQ(ParseCommandLine({L"--tour"}).error, L"--tour needs a value");
    EXPECT_EQ(ParseCommandLine({L"--tour", L""}).error, L"--tour needs a folder");
    EXPECT_NE(ParseCommandLine({L"--language", L"fr"}).error, L"");
    EXPECT_NE(ParseCommandLine({L"--console", L"tavren"}).error, L"");
}

TEST(CommandLine, ReadsTheCommandsOnRawCines)
{
    EXPECT_FALSE(ParseCommandLine({}).IsCommand());
    const auto info = ParseCommandLine({L"--cine-info", L"a.cine"});
    EXPECT_TRUE(info.IsCommand());
    EXPECT_EQ(info.cineInfo, L"a.cine");
    const auto replay =
        ParseCommandLine({L"--cine-to-avi", L"a.cine", L"a.avi", L"--profile", L"exam.ini"});
    EXPECT_EQ(replay.error, L"");
    EXPECT_TRUE(replay.IsCommand());
    EXPECT_EQ(replay.cineToPlay, L"a.cine");
    EXPECT_EQ(replay.movie, L"a.avi");
    EXPECT_EQ(replay.profile, L"exam.ini");
}

TEST(CommandLine, AsksForAllValuesOfAnOption)
{
    EXPECT_EQ(ParseCommandLine({L"--cine-to-avi"}).error, L"--cine-to-avi needs two values");
    EXPECT_EQ(ParseCommandLine({L"--cine-to-avi", L"a.cine"}).error,
              L"--cine-to-avi needs two values");
    EXPECT_EQ(ParseCommandLine({L"--cine-to-avi", L"a.cine", L""}).error,
              L"--cine-to-avi needs two files");
    EXPECT_EQ(ParseCommandLine({L"--cine-info", L""}).error, L"--cine-info needs a file");
    EXPECT_EQ(ParseCommandLine({L"--profile", L""}).error, L"--profile needs a file");
}

TEST(CommandLine, OpensOneFileInAWindow)
{
    EXPECT_EQ(ParseCommandLine({L"a.cine"}).image, L"a.cine");
    EXPECT_EQ(ParseCommandLine({L"--service", L"a.cine"}).error, L"");
    EXPECT_EQ(ParseCommandLine({L"a.cine", L"b.cine"}).error, L"unknown argument 'b.cine'");
    EXPECT_EQ(ParseCommandLine({L"--cine-info", L"a", L"b"}).error, L"unknown argument 'b'");
}

TEST(CommandLine, KeepsTheFirstError)
{
    EXPECT_EQ(ParseCommandLine({L"--one", L"--two"}).error, L"unknown argument '--one'");
}

TEST(CommandLine, DoesOneThingAtATime)
{
    EXPECT_EQ(ParseCommandLine({L"--cine-info", L"a", L"--cine-to-avi", L"a", L"b"}).error,
              L"--cine-info and --cine-to-avi cannot be done at once");
    EXPECT_EQ(ParseCommandLine({L"--cine-to-avi", L"a", L"b", L"--tour", L"out"}).error,
              L"--tour and --cine-to-avi cannot be done at once");
    EXPECT_EQ(ParseCommandLine({L"--tour", L"a", L"--tour", L"b"}).error, L"--tour is given twice");
    EXPECT_EQ(ParseCommandLine({L"--language", L"de", L"--language", L"en"}).error,
              L"--language is given twice");
}

TEST(CommandLine, OverwritesOnlyWhereItIsAsked)
{
    EXPECT_FALSE(ParseCommandLine({L"--cine-to-avi", L"a", L"b"}).overwrite);
    EXPECT_TRUE(ParseCommandLine({L"--overwrite", L"--cine-to-avi", L"a", L"b"}).overwrite);
    EXPECT_EQ(ParseCommandLine({L"--overwrite", L"--cine-info", L"a"}).error,
              L"--overwrite goes with --cine-to-avi, --pack or --unpack");
}

TEST(CommandLine, ReadsTheCommandOnProtocolFiles)
{
    const auto check = ParseCommandLine({L"--check-protocol", L"protocols"});
    EXPECT_EQ(check.error, L"");
    EXPECT_TRUE(check.IsCommand());
    EXPECT_EQ(check.protocolToCheck, L"protocols");
    EXPECT_EQ(ParseCommandLine({L"--check-protocol", L""}).error,
              L"--check-protocol needs a folder");
    EXPECT_EQ(ParseCommandLine({L"--cine-info", L"a", L"--check-protocol", L"b"}).error,
              L"--cine-info and --check-protocol cannot be done at once");
}

TEST(CommandLine, RecordsWhereItIsAskedTo)
{
    EXPECT_EQ(ParseCommandLine({L"--recordings", L"D:\\loops"}).Over({}).recordings, L"D:\\loops");
    EXPECT_EQ(ParseCommandLine({L"--recordings", L""}).error, L"--recordings needs a folder");
}

TEST(CommandLine, RecordsBelowTheCurrentFolderOrTheTours)
{
    EXPECT_EQ(ParseCommandLine({}).Over({}).recordings, L"out\\recordings");
    EXPECT_EQ(ParseCommandLine({L"--tour", L"D:\\tour"}).Over({}).recordings,
              L"D:\\tour\\recordings");
}
