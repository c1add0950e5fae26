// Studies are packed and unpacked, and an archive's directory is read.
#include "record/StudyArchive.h"

#include <base/Handles.h>
#include <gtest/gtest.h>
#include <test_support/Files.h>
#include <test_support/TemporaryFolder.h>

#include <windows.h>

#include <algorithm>
#include <filesystem>
#include <random>

namespace {

using exam::ArchiveResult;
using exam::Existing;
using exam::PackFolder;
using exam::ReadEntryNames;
using exam::UnpackArchive;
using test_support::FileExists;
using test_support::ReadFile;
using test_support::WriteFile;
using Names = std::vector<std::wstring>;

bool Ignore(std::size_t, std::size_t, const std::wstring&)
{
    return true;
}

// The names of what lies in a folder, sorted.
Names FilesIn(const std::wstring& folder)
{
    Names names;
    for (const auto& entry : std::filesystem::directory_iterator(folder))
        names.push_back(entry.path().filename().wstring());
    std::ranges::sort(names);
    return names;
}

class StudyArchive : public testing::Test
{
protected:
    StudyArchive()
    {
        CreateDirectoryW(Study().c_str(), nullptr);
        CreateDirectoryW((Study() + L"\\deep").c_str(), nullptr);
        WriteFile(Study() + L"\\study.xml", "<study/>");
        WriteFile(Study() + L"\\deep\\image.raw", std::string(100'000, 'i'));
    }

    std::wstring Study() const { return m_folder / L"study"; }
    std::wstring Archive() const { return m_folder / L"study.zip"; }
    std::wstring Out() const { return m_folder / L"out"; }

    const test_support::TemporaryFolder m_folder;
};

TEST_F(StudyArchive, ComesBackByteForByte)
{
    const ArchiveResult packed = PackFolder(Archive(), Study(), Ignore);
    EXPECT_EQ(packed.problem, L"");
    EXPECT_EQ(packed.files, 2u);
    const ArchiveResult unpacked = UnpackArchive(Archive(), Out(), "", Existing::replace, Ignore);
    EXPECT_EQ(unpacked.problem, L"");
    EXPECT_EQ(unpacked.files, 2u);
    EXPECT_EQ(ReadFile(Out() + L"\\study.xml"), "<study/>");
    EXPECT_EQ(ReadFile(Out() + L"\\deep\\image.raw"), std::string(100'000, 'i'));
}

TEST_F(StudyArchive, TellsHowMuchOfWhichFileIsDone)
{
    WriteFile(Study() + L"\\deep\\image.raw", std::string(1 << 20, 'i'));
    Names told;
    std::size_t last = 0;
    int calls = 0;
    const auto progress = [&](std::size_t done, std::size_t all, const std::wstring& name) {
        EXPECT_GE(done, last);
        EXPECT_EQ(all, 1024u);
        last = done;
        ++calls;
        if (told.empty() || told.back() != name) told.push_back(name);
        return true;
    };
    PackFolder(Archive(), Study(), progress);
    EXPECT_EQ(last, 1024u);
    EXPECT_GE(calls, 18);
    EXPECT_EQ(told, (Names{L"deep\\image.raw", L"study.xml"}));
    EXPECT_EQ(ReadEntryNames(Archive()), told);
}

TEST_F(StudyArchive, ThatIsCancelledLeavesTheOlderOneAndNoPart)
{
    WriteFile(Archive(), "the older one");
    const ArchiveResult result =
        PackFolder(Archive(), Study(), [](std::size_t, std::size_t, const std::wstring& name) {
            return name != L"study.xml";
        });
    EXPECT_TRUE(result.isCancelled);
    EXPECT_EQ(result.files, 1u);
    EXPECT_EQ(ReadFile(Archive()), "the older one");
    EXPECT_EQ(FilesIn(m_folder.Path()), (Names{L"study", L"study.zip"}));
}

TEST_F(StudyArchive, OfALargeFileIsCancelledAtOnce)
{
    const std::wstring large = Study() + L"\\large.cine";
    {
        const base::File file(CreateFileW(large.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                                          FILE_ATTRIBUTE_NORMAL, nullptr));
        LARGE_INTEGER size{};
        size.QuadPart = 1 << 30;
        ASSERT_TRUE(SetFilePointerEx(file.get(), size, nullptr, FILE_BEGIN));
        ASSERT_TRUE(SetEndOfFile(file.get()));
    }
    std::size_t begun = 0;
    int refusals = 0;
    const ArchiveResult result = PackFolder(
        Archive(), Study(), [&](std::size_t done, std::size_t all, const std::wstring& name) {
            if (name != L"large.cine") return true;
            if (begun == 0) begun = done;
            EXPECT_GT(all, std::size_t{1} << 20);
            if (done < begun + 8192) return true;
            ++refusals;
            EXPECT_LT(done, begun + 2 * 8192) << "there is more to pack";
            return false;
        });
    EXPECT_EQ(refusals, 1);
    EXPECT_TRUE(result.isCancelled);
    EXPECT_EQ(result.problem, L"");
    EXPECT_EQ(FilesIn(m_folder.Path()), Names{L"study"});
}

TEST_F(StudyArchive, ThatIsCancelledWhileItIsUnpackedLeavesWholeFiles)
{
    PackFolder(Archive(), Study(), Ignore);
    const ArchiveResult result =
        UnpackArchive(Archive(), Out(), "", Existing::replace,
                      [](std::size_t done, std::size_t, const std::wstring&) { return done == 0; });
    EXPECT_TRUE(result.isCancelled);
    EXPECT_EQ(result.files, 1u);
    EXPECT_EQ(FilesIn(Out()), Names{L"deep"});
}

TEST_F(StudyArchive, LeavesItselfOutOfTheFolderItIsIn)
{
    const std::wstring inside = Study() + L"\\packed.zip";
    EXPECT_EQ(PackFolder(inside, Study(), Ignore).files, 2u);
    EXPECT_EQ(PackFolder(inside, Study(), Ignore).files, 2u) << "nor the one it replaces";
}

TEST_F(StudyArchive, OfNothingIsAProblem)
{
    CreateDirectoryW((m_folder / L"empty").c_str(), nullptr);
    EXPECT_NE(PackFolder(Archive(), m_folder / L"empty", Ignore).problem, L"");
    EXPECT_NE(PackFolder(Archive(), m_folder / L"missing", Ignore).problem, L"");
    EXPECT_NE(PackFolder(m_folder / L"missing\\a.zip", Study(), Ignore).problem, L"");
    EXPECT_FALSE(FileExists(Archive()));
}

TEST_F(StudyArchive, KeepsNamesOfAnyCharacters)
{
    WriteFile(Study() + L"\\\u8D85 \u00FC.xml", "name");
    EXPECT_EQ(PackFolder(Archive(), Study(), Ignore).problem, L"");
    EXPECT_EQ(UnpackArchive(Archive(), Out(), "", Existing::replace, Ignore).files, 3u);
    EXPECT_EQ(ReadFile(Out() + L"\\\u8D85 \u00FC.xml"), "name");
}

TEST_F(StudyArchive, FailsWhenAFileCannotBeRead)
{
    const base::File held(CreateFileW((Study() + L"\\study.xml").c_str(), GENERIC_READ, 0, nullptr,
                                      OPEN_EXISTING, 0, nullptr));
    const ArchiveResult result = PackFolder(Archive(), Study(), Ignore);
    EXPECT_NE(result.problem.find(L"study.xml\" cannot be packed"), std::wstring::npos);
    EXPECT_FALSE(FileExists(Archive())) << "half an archive is none";
}

TEST_F(StudyArchive, ThatIsDamagedIsAProblemAlsoInItsLastEntry)
{
    PackFolder(Archive(), Study(), Ignore);
    std::string bytes = ReadFile(Archive());
    const std::size_t last = bytes.find("study.xml");
    bytes[last + 9] = static_cast<char>(bytes[last + 9] ^ 0x55);
    WriteFile(Archive(), bytes);
    const ArchiveResult result = UnpackArchive(Archive(), Out(), "", Existing::replace, Ignore);
    EXPECT_NE(result.problem, L"");
    EXPECT_EQ(result.files, 1u);
}

TEST_F(StudyArchive, NamesWhatWasSkipped)
{
    PackFolder(Archive(), Study(), Ignore);
    std::string bytes = ReadFile(Archive());
    for (std::size_t at = bytes.find("deep\\image.raw"); at != std::string::npos;
         at = bytes.find("deep\\image.raw", at))
        bytes.replace(at, 14, "..\\..\\mage.raw");
    WriteFile(Archive(), bytes);
    ArchiveResult unpacked = UnpackArchive(Archive(), Out(), "", Existing::replace, Ignore);
    EXPECT_EQ(unpacked.problem,
              L"skipped, because no such file can be written: \"..\\..\\mage.raw\"");
    EXPECT_EQ(unpacked.files, 1u);
    ASSERT_EQ(unpacked.skipped.size(), 1u);
    EXPECT_EQ(unpacked.skipped[0].reason, exam::SkipReason::name);
    EXPECT_EQ(ReadFile(Out() + L"\\study.xml"), "<study/>") << "the rest is there";

    const base::File held(CreateFileW((Out() + L"\\study.xml").c_str(), GENERIC_READ, 0, nullptr,
                                      OPEN_EXISTING, 0, nullptr));
    unpacked = UnpackArchive(Archive(), Out(), "", Existing::replace, Ignore);
    EXPECT_NE(unpacked.problem.find(L"mage.raw, study.xml"), std::wstring::npos);
    ASSERT_EQ(unpacked.skipped.size(), 2u);
    EXPECT_EQ(unpacked.skipped[1].reason, exam::SkipReason::unwritable);
    EXPECT_EQ(unpacked.files, 0u);
}

TEST_F(StudyArchive, HasItsNameOnlyWhenItIsWhole)
{
    WriteFile(Archive(), "the older one");
    PackFolder(Archive(), Study(), [&](std::size_t, std::size_t, const std::wstring&) {
        EXPECT_EQ(ReadFile(Archive()), "the older one");
        return true;
    });
    EXPECT_EQ(ReadEntryNames(Archive()).value_or(Names()).size(), 2u);
    const std::string whole = ReadFile(Archive());
    const base::File held(CreateFileW((Study() + L"\\study.xml").c_str(), GENERIC_READ, 0, nullptr,
                                      OPEN_EXISTING, 0, nullptr));
    EXPECT_NE(PackFolder(Archive(), Study(), Ignore).problem, L"");
    EXPECT_EQ(ReadFile(Archive()), whole) << "a failure leaves the older one";
    EXPECT_EQ(FilesIn(m_folder.Path()), (Names{L"study", L"study.zip"}));
}

TEST_F(StudyArchive, ReplacesFilesOnlyWhenThatIsAllowed)
{
    PackFolder(Archive(), Study(), Ignore);
    CreateDirectoryW(Out().c_str(), nullptr);
    WriteFile(Out() + L"\\study.xml", "mine");
    EXPECT_EQ(exam::FilesInTheWay(Archive(), Out()), Names{L"study.xml"});
    EXPECT_NE(UnpackArchive(Archive(), Out(), "", Existing::keep, Ignore).problem, L"");
    EXPECT_EQ(ReadFile(Out() + L"\\study.xml"), "mine");
    EXPECT_EQ(FilesIn(Out()), Names{L"study.xml"}) << "nothing was unpacked";
    EXPECT_EQ(UnpackArchive(Archive(), Out(), "", Existing::replace, Ignore).files, 2u);
    EXPECT_EQ(ReadFile(Out() + L"\\study.xml"), "<study/>");
    EXPECT_EQ(FilesIn(Out()), (Names{L"deep", L"study.xml"}));
}

TEST_F(StudyArchive, LeavesNoPartOfAFileThatCannotBeUnpacked)
{
    PackFolder(Archive(), Study(), Ignore);
    std::string bytes = ReadFile(Archive());
    const std::size_t last = bytes.find("study.xml");
    bytes[last + 9] = static_cast<char>(bytes[last + 9] ^ 0x55);
    WriteFile(Archive(), bytes);
    CreateDirectoryW(Out().c_str(), nullptr);
    WriteFile(Out() + L"\\study.xml", "mine");
    EXPECT_NE(UnpackArchive(Archive(), Out(), "", Existing::replace, Ignore).problem, L"");
    EXPECT_EQ(ReadFile(Out() + L"\\study.xml"), "mine");
    EXPECT_EQ(FilesIn(Out()), (Names{L"deep", L"study.xml"}));
}

TEST_F(StudyArchive, KeepsNamesThatEndInADot)
{
    CreateDirectoryW((Study() + L"\\Smith Jr").c_str(), nullptr);
    WriteFile(Study() + L"\\Smith Jr\\name", "Smith");
    PackFolder(Archive(), Study(), Ignore);
    std::string bytes = ReadFile(Archive());
    for (std::size_t at = bytes.find("Jr\\name"); at != std::string::npos;
         at = bytes.find("Jr\\name", at))
        bytes.replace(at, 7, "J.\\name");
    WriteFile(Archive(), bytes);
    const ArchiveResult unpacked = UnpackArchive(Archive(), Out(), "", Existing::replace, Ignore);
    EXPECT_EQ(unpacked.problem, L"");
    EXPECT_EQ(ReadFile(Out() + L"\\Smith J\\name"), "Smith");
}

TEST_F(StudyArchive, CanHave65535Entries)
{
    PackFolder(Archive(), Study(), Ignore);
    std::string bytes = ReadFile(Archive());
    const std::size_t directory = bytes.find("PK\1\2");
    const std::size_t end = bytes.find("PK\5\6");
    const std::size_t second = bytes.find("PK\1\2", directory + 4);
    const std::string entry = bytes.substr(second, end - second);
    std::string entries = bytes.substr(directory, second - directory);
    for (int i = 1; i < 65535; ++i)
        entries += entry;
    const auto size = static_cast<std::uint32_t>(entries.size());
    std::string closing = bytes.substr(end);
    closing.replace(8, 4, 4, '\xFF');
    closing.replace(12, 4, reinterpret_cast<const char*>(&size), 4);
    WriteFile(Archive(), bytes.substr(0, directory) + entries + closing);
    EXPECT_EQ(ReadEntryNames(Archive()).value_or(Names()).size(), 65535u);
}

TEST_F(StudyArchive, IsNeededToUnpack)
{
    WriteFile(Archive(), "no archive at all");
    EXPECT_NE(UnpackArchive(Archive(), Out(), "", Existing::replace, Ignore).problem, L"");
    EXPECT_NE(
        UnpackArchive(m_folder / L"missing.zip", Out(), "", Existing::replace, Ignore).problem,
        L"");
}

TEST_F(StudyArchive, LeavesTheCurrentFolderAsItWas)
{
    wchar_t before[MAX_PATH] = {};
    wchar_t after[MAX_PATH] = {};
    GetCurrentDirectoryW(MAX_PATH, before);
    PackFolder(Archive(), Study(), Ignore);
    UnpackArchive(Archive(), Out(), "", Existing::replace, Ignore);
    GetCurrentDirectoryW(MAX_PATH, after);
    EXPECT_STREQ(before, after);
}

// The reader gives names or nothing for any bytes, and always ends.
TEST_F(StudyArchive, DirectoryThatLiesDoesNoHarm)
{
    PackFolder(Archive(), Study(), Ignore);
    const std::string sound = ReadFile(Archive());
    std::minstd_rand random(7);
    const std::size_t directory = sound.find("PK\1\2");
    for (int round = 0; round < 300; ++round) {
        std::string damaged = sound;
        for (int i = 0; i < 4; ++i)
            damaged[directory + random() % (damaged.size() - directory)] =
                static_cast<char>(random());
        WriteFile(Archive(), damaged);
        const auto names = ReadEntryNames(Archive());
        EXPECT_LE(names.value_or(Names()).size(), damaged.size() / 46);
    }
    for (std::size_t size = 0; size < sound.size(); size += 7) {
        WriteFile(Archive(), sound.substr(0, size));
        EXPECT_EQ(ReadEntryNames(Archive()), std::nullopt) << size;
    }
}

} // namespace
