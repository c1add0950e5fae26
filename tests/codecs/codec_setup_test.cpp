// Tests codecsetup.exe, which installs and removes the codec.
#include <base/Encoding.h>
#include <base/Handles.h>
#include <gtest/gtest.h>
#include <test_support/Files.h>
#include <test_support/InstalledCodec.h>
#include <test_support/Program.h>
#include <test_support/TemporaryFolder.h>

#include <windows.h>

#include <string>

using test_support::BesideProgram;
using test_support::TemporaryFolder;

namespace {

constexpr wchar_t driversKey[] = L"Software\\Microsoft\\Windows NT\\CurrentVersion\\Drivers32";
constexpr wchar_t entryName[] = L"vidc.MJPG";

struct Ended
{
    DWORD status = STILL_ACTIVE;
    std::string output; // text of both streams
};

Ended RunProgram(const std::wstring& program, const std::wstring& argument)
{
    SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
    base::Pipe reading;
    base::Pipe writing;
    CreatePipe(reading.put(), writing.put(), &inherited, 0);
    SetHandleInformation(reading.get(), HANDLE_FLAG_INHERIT, 0);
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdOutput = startup.hStdError = writing.get();
    PROCESS_INFORMATION process{};
    std::wstring command = L"\"" + program + L"\" " + argument;
    EXPECT_TRUE(CreateProcessW(program.c_str(), command.data(), nullptr, nullptr, TRUE, 0, nullptr,
                               nullptr, &startup, &process));
    const base::Thread thread(process.hThread);
    const base::Process running(process.hProcess);
    writing.reset();
    Ended ended;
    char part[256];
    for (DWORD read = 0; ReadFile(reading.get(), part, sizeof part, &read, nullptr) && read > 0;)
        ended.output.append(part, read);
    WaitForSingleObject(running.get(), 60000);
    GetExitCodeProcess(running.get(), &ended.status);
    return ended;
}

// The registry's entry for the codec; empty when there is none.
std::wstring Entry()
{
    wchar_t value[2048] = {};
    DWORD size = sizeof value;
    RegGetValueW(HKEY_LOCAL_MACHINE, driversKey, entryName, RRF_RT_ANY | RRF_NOEXPAND, nullptr,
                 value, &size);
    return value;
}

void SetEntry(const std::wstring& value, DWORD type = REG_SZ)
{
    const auto size = static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t));
    ASSERT_EQ(RegSetKeyValueW(HKEY_LOCAL_MACHINE, driversKey, entryName, type, value.c_str(), size),
              ERROR_SUCCESS);
}

// The full path, whatever form the registry has; empty when no file lies there.
std::wstring LongPath(const std::wstring& path)
{
    wchar_t longPath[MAX_PATH] = {};
    GetLongPathNameW(path.c_str(), longPath, MAX_PATH);
    return longPath;
}

class CodecSetup : public testing::Test
{
protected:
    CodecSetup() { RegDeleteKeyValueW(HKEY_LOCAL_MACHINE, driversKey, entryName); }

    Ended RunSetup(const std::wstring& argument) { return RunProgram(m_program, argument); }

    const test_support::InstalledCodec m_asBefore{
        L"MJPG", L"mjpgcodec.dll"}; // restores the entry at the end
    const std::wstring m_program = BesideProgram(L"codecsetup.exe");
    const std::wstring m_codec = BesideProgram(L"mjpgcodec.dll");
};

} // namespace

TEST_F(CodecSetup, InstallsAndRemovesTheCodecBesideIt)
{
    EXPECT_EQ(RunSetup(L"status").output, "not installed\r\n");
    for (int i = 0; i < 2; ++i) { // a second installation changes nothing
        const Ended installed = RunSetup(L"install");
        EXPECT_EQ(installed.status, 0u) << installed.output;
        EXPECT_EQ(LongPath(Entry()), m_codec);
    }
    const Ended status = RunSetup(L"status");
    EXPECT_EQ(status.status, 0u);
    EXPECT_EQ(status.output, base::Utf8FromWide(m_codec) + "\r\n");
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(RunSetup(L"remove").status, 0u);
        EXPECT_EQ(Entry(), L"");
    }
}

TEST_F(CodecSetup, LeavesAnotherCodecAlone)
{
    struct
    {
        std::wstring value;
        DWORD type;
    } const others[] = {{L"C:\\other\\codec.dll", REG_SZ},
                        {L"%ProgramFiles%\\codec.dll", REG_EXPAND_SZ},
                        {L"C:\\" + std::wstring(900, L'x') + L".dll", REG_SZ},
                        {L"bytes", REG_BINARY}};
    for (const auto& other : others) {
        SetEntry(other.value, other.type);
        EXPECT_EQ(RunSetup(L"install").status, 1u);
        EXPECT_EQ(Entry(), other.value);
        EXPECT_EQ(RunSetup(L"remove").status, 0u);
        EXPECT_EQ(Entry(), other.value);
    }
}

TEST_F(CodecSetup, ReplacesACodecOfItsOwnInAnotherFolder)
{
    SetEntry(L"C:\\elsewhere\\mjpgcodec.dll");
    EXPECT_EQ(RunSetup(L"install").status, 0u);
    EXPECT_EQ(LongPath(Entry()), m_codec);
}

TEST_F(CodecSetup, TellsWhenTheInstalledFileIsGone)
{
    SetEntry(L"C:\\elsewhere\\mjpgcodec.dll");
    const Ended status = RunSetup(L"status");
    EXPECT_EQ(status.status, 0u);
    EXPECT_EQ(status.output, "C:\\elsewhere\\mjpgcodec.dll (the file is gone)\r\n");
}

TEST_F(CodecSetup, RefusesToInstallACodecThatIsNotThere)
{
    const TemporaryFolder folder;
    ASSERT_TRUE(CopyFileW(m_program.c_str(), (folder / L"codecsetup.exe").c_str(), TRUE));
    const Ended ended = RunProgram(folder / L"codecsetup.exe", L"install");
    EXPECT_EQ(ended.status, 1u);
    EXPECT_NE(ended.output.find("mjpgcodec.dll is not beside this program"), std::string::npos)
        << ended.output;
    EXPECT_EQ(Entry(), L"");
}

TEST_F(CodecSetup, GivesAFolderWithABlankByItsShortNameOrNotAtAll)
{
    const TemporaryFolder outer;
    const std::wstring folder = outer / L"ein Ordner \u00FC\u4E2D";
    ASSERT_TRUE(CreateDirectoryW(folder.c_str(), nullptr));
    ASSERT_TRUE(CopyFileW(m_program.c_str(), (folder + L"\\codecsetup.exe").c_str(), TRUE));
    ASSERT_TRUE(CopyFileW(m_codec.c_str(), (folder + L"\\mjpgcodec.dll").c_str(), TRUE));
    const Ended ended = RunProgram(folder + L"\\codecsetup.exe", L"install");
    if (ended.status != 0) { // a file system without short names
        EXPECT_NE(ended.output.find("no short name"), std::string::npos) << ended.output;
        EXPECT_EQ(Entry(), L"");
        return;
    }
    EXPECT_EQ(Entry().find(L' '), std::wstring::npos);
    EXPECT_EQ(LongPath(Entry()), folder + L"\\mjpgcodec.dll");
    EXPECT_EQ(RunSetup(L"status").output, base::Utf8FromWide(folder) + "\\mjpgcodec.dll\r\n");
    DeleteFileW((folder + L"\\mjpgcodec.dll").c_str());
    EXPECT_TRUE(Entry().ends_with(L"\\mjpgcodec.dll")) << "so it is known as ours when it is gone";
    EXPECT_EQ(RunProgram(folder + L"\\codecsetup.exe", L"remove").status, 0u);
    EXPECT_EQ(Entry(), L"");
}

TEST_F(CodecSetup, TellsItsUsageOtherwise)
{
    for (const wchar_t* argument : {L"", L"Install", L"install now", L"--help"}) {
        const Ended ended = RunSetup(argument);
        EXPECT_EQ(ended.status, argument == std::wstring_view(L"--help") ? 0u : 2u);
        EXPECT_NE(ended.output.find("usage: codecsetup install|remove|status|--version"),
                  std::string::npos);
    }
    EXPECT_EQ(Entry(), L"");
}
