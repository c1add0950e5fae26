// XCrashReport.exe [/quiet] "PROGRAM.exe"
// XCrashReport.exe --version
// Packs what a crash of the program left behind, as "crashreport.ini" beside this program lists it.
// Tells where the archive is: in a message, or with /quiet on the standard output only.
#include "base/DarkDialog.h"
#include "base/LanguageVariable.h"
#include "RegistryExport.h"

#include <base/Encoding.h>
#include <base/FilePath.h>
#include <base/ProgramVersion.h>
#include <Utils_Statics/GetStr.h>
#include <Utils_Statics/utilsExam.h>
#include <Utils_Statics/ZipCompress.h>
#include <zel_string_convert/TableLoading.h>

#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace {

// The files and registry trees that a crash left behind, as the crash handler's settings file names
// them.
struct Collection
{
    std::wstring archive;                    // the path of the archive to make
    std::vector<std::wstring> files;         // to put into it; some may be missing
    std::vector<std::wstring> registryTrees; // "HKCU\Software\..."
};

// A text of the settings. For a null name, the keys of the section, each with a null at its end.
std::wstring Setting(const std::wstring& file, const wchar_t* section, const wchar_t* name)
{
    std::wstring text(32768, L'\0');
    text.resize(GetPrivateProfileStringW(section, name, L"", text.data(),
                                         static_cast<DWORD>(text.size()), file.c_str()));
    return text;
}

// `text` without its last `count` fields, which commas separate. A path may contain commas too.
std::wstring WithoutFields(std::wstring text, int count)
{
    for (; count > 0; --count)
        text.resize(std::min(text.rfind(L','), text.size()));
    return text;
}

// The values of a section, each without its last `fields` fields.
std::vector<std::wstring> Values(const std::wstring& file, const wchar_t* section, int fields)
{
    std::vector<std::wstring> values;
    const std::wstring names = Setting(file, section, nullptr);
    for (std::size_t begin = 0; begin < names.size();) {
        const std::wstring name = names.c_str() + begin;
        values.push_back(WithoutFields(Setting(file, section, name.c_str()), fields));
        begin += name.size() + 1;
    }
    return values;
}

std::wstring FolderOf(const std::wstring& path)
{
    return path.substr(0, path.rfind(L'\\') + 1);
}

bool IsThere(const std::wstring& path)
{
    WIN32_FIND_DATAW data;
    return utilsExam::GetFileData(path.c_str(), &data) != 0;
}

// Packs the tree, if there is one, by way of a file beside the archive.
bool PackTree(ZipCompress& zip, const std::wstring& tree, const std::wstring& file)
{
    const bool isWritten = exam::ExportTree(tree, file);
    const bool isPacked = isWritten && (!IsThere(file) || zip.AddFile(file.c_str()));
    DeleteFileW(file.c_str());
    return isPacked;
}

// Reads the settings file. Nothing when the file does not name an archive.
std::optional<Collection> ReadCollection(const std::wstring& settingsFile)
{
    Collection collection;
    collection.archive = Setting(settingsFile, L"ZipFileName", L"Zip");
    if (collection.archive.empty()) return std::nullopt;
    collection.files = Values(settingsFile, L"FilesToAdd", 2);
    collection.registryTrees = Values(settingsFile, L"RegistryToAdd", 1);
    return collection;
}

// Packs the existing files, and each registry tree as a file for registry editors. The names in the
// archive are relative to the archive's folder. False when any of it failed; the archive still
// holds the rest.
bool Pack(const Collection& collection)
{
    const std::wstring folder = FolderOf(collection.archive);
    ZipCompress zip;
    zip.SetBasePath(folder);
    if (!zip.Create(collection.archive.c_str())) return false;
    bool isPacked = true;
    for (const std::wstring& file : collection.files)
        if (IsThere(file)) isPacked = zip.AddFile(file.c_str()) && isPacked;
    int number = 0;
    for (const std::wstring& tree : collection.registryTrees)
        isPacked =
            PackTree(zip, tree, folder + L"registry" + std::to_wstring(++number) + L".reg") &&
            isPacked;
    return isPacked;
}

// Takes the language of the program that crashed. Without its tables the texts are English.
void LoadTexts()
{
    wchar_t language[16] = {};
    GetEnvironmentVariableW(exam::languageVariable, language, 16);
    zel_string_convert::LoadTable(FolderOf(base::ModuleFile(nullptr)) + L"sample\\strings");
    zel_string_convert::SetLanguage(language);
}

// The translation of a text that the string tables have.
std::wstring InUsersLanguage(const wchar_t* text)
{
    const CString translated = TranslateStr(text);
    return translated.IsEmpty() ? text : translated.GetString();
}

void Tell(const std::wstring& message, bool isQuiet)
{
    std::printf("%s\n", base::Utf8FromWide(message).c_str());
    std::fflush(stdout);
    if (!isQuiet)
        exam::ShowBox(nullptr, InUsersLanguage(L"Crash report"), message, {{IDOK, L"OK"}}, IDOK);
}

} // namespace

int WINAPI wWinMain(HINSTANCE, HINSTANCE, wchar_t*, int)
{
    // Reads the command line itself rather than its arguments, because the crash handler's does not
    // begin with a program.
    const std::wstring_view command = GetCommandLineW();
    if (command.ends_with(L" --version")) {
        Tell(L"XCrashReport " + base::ProgramVersion(), true);
        return 0;
    }
    LoadTexts();
    const bool isQuiet = command.find(L"/quiet") != std::wstring_view::npos;
    const std::wstring settings = FolderOf(base::ModuleFile(nullptr)) + L"crashreport.ini";
    const auto collection = ReadCollection(settings);
    if (!collection) {
        Tell(InUsersLanguage(L"There is no crash to report: no archive is named in") + L" " +
                 settings,
             isQuiet);
        return 1;
    }
    const bool isPacked = Pack(*collection);
    Tell(InUsersLanguage(isPacked ? L"The crash report is in"
                                  : L"A part of the crash report is in") +
             L" " + collection->archive,
         isQuiet);
    return isPacked ? 0 : 1;
}
