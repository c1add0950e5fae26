#include "diagnostics/CrashReporter.h"

#include <base/Handles.h>

namespace utils_statics {

namespace {

constexpr const wchar_t* pathSection = L"System\\Path";

bool FitsCodePage(std::wstring_view text) noexcept
{
    BOOL isReplaced = FALSE;
    WideCharToMultiByte(CP_ACP, WC_NO_BEST_FIT_CHARS, text.data(), static_cast<int>(text.size()),
                        nullptr, 0, nullptr, &isReplaced);
    return !isReplaced;
}

// The platform writes a settings file in the code page, which may lack characters of a name. When
// the file begins with the byte-order mark, it writes UTF-16. An existing file keeps its content.
// One too large to be converted stays unchanged.
void TurnToUtf16(const wchar_t* path) noexcept
{
    static constinit char bytes[0x8000] = {};
    static constinit wchar_t text[1 + sizeof bytes] = {0xFEFF};
    const base::File file(CreateFileW(path, GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_ALWAYS,
                                      FILE_ATTRIBUTE_NORMAL, nullptr));
    DWORD size = 0;
    if (!file || !ReadFile(file.get(), bytes, sizeof bytes, &size, nullptr)) return;
    const bool isUtf16 = size >= 2 && bytes[0] == '\xFF' && bytes[1] == '\xFE';
    if (isUtf16 || size == sizeof bytes) return;
    const int length =
        MultiByteToWideChar(CP_ACP, 0, bytes, static_cast<int>(size), text + 1, sizeof bytes);
    SetFilePointer(file.get(), 0, nullptr, FILE_BEGIN);
    WriteFile(file.get(), text, static_cast<DWORD>((1 + length) * 2), &size, nullptr);
}

// There is one in a process: it is too large for the stack of a crashed thread.
class SettingsFile
{
public:
    void Begin(const CrashFiles& files) noexcept
    {
        m_path = files.ProgramFolder();
        m_path += L"crashreport.ini";
        const bool isPlain = FitsCodePage(files.dump.View()) &&
                             (!files.hasActionLog || FitsCodePage(files.actionLog.View()));
        if (!isPlain) TurnToUtf16(m_path.Text());
    }

    void Set(const wchar_t* section, const wchar_t* name, const wchar_t* value) const noexcept
    {
        WritePrivateProfileStringW(section, name, value, m_path.Text());
    }

    void SetFile(const wchar_t* name, const CrashPath& path,
                 const wchar_t* description) const noexcept
    {
        FixedText<2 * MAX_PATH + 96> value;
        value = path.View();
        value += description;
        Set(L"FilesToAdd", name, value.Text());
    }

private:
    FixedText<32768> m_path;
};

} // namespace

void WriteReporterSettings(const CrashFiles& files) noexcept
{
    static constinit SettingsFile settings;
    settings.Begin(files);
    settings.Set(L"RegistryToAdd", L"Registry001", L"HKCU\\Software\\Kestrow,Registry Tree");
    settings.Set(
        L"RegistryToAdd", L"Registry002",
        L"HKLM\\Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\Exam,Version Tree");
    settings.SetFile(L"File001", files.dump, L",Crash Dump,DMP File");
    settings.SetFile(L"File002", files.report, L",Crash Log,Text Document");
    if (files.hasActionLog)
        settings.SetFile(L"File004", files.actionLog, L",Action Log,Text Document");
    settings.Set(L"ZipFileName", L"Zip", files.archive.Text());
}

bool StartReporter(const CrashFiles& files) noexcept
{
    SettingText setting;
    static constinit FixedText<32768> reporter;
    CrashSettingText(pathSection, L"CrashHandler", L"XCrashReport.exe", setting);
    reporter = files.ProgramFolder();
    reporter += setting.View();

    FixedText<2048> command;
    CrashSettingText(pathSection, L"CrashHandler_Params", L"", setting);
    command = L" ";
    command += setting.View();
    command += L" \"";
    command += FileNamePart(files.program.View());
    command += L"\"";

    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESHOWWINDOW;
    startup.wShowWindow = SW_SHOW;
    PROCESS_INFORMATION started = {};
    const bool isStarted = CreateProcessW(reporter.Text(), command.data(), nullptr, nullptr, FALSE,
                                          0, nullptr, nullptr, &startup, &started);
    const base::Thread thread(started.hThread);
    const base::Process process(started.hProcess);
    return isStarted;
}

} // namespace utils_statics
