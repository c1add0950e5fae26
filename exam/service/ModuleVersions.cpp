#include "service/ModuleVersions.h"

#include "base/Console.h"

#include <base/FilePath.h>
#include <Utils_Statics/CMiniVersion.h>

#include <windows.h>
#include <psapi.h>

#include <cstdio>
#include <filesystem>
#include <iterator>

namespace exam {

namespace {

constexpr int longestText = 520; // characters that CMiniVersion keeps of a path or a text

// Four numbers with dots between them: "6.1.7601.24059".
std::wstring NumbersOf(const CMiniVersion& version,
                       int (CMiniVersion::*get)(unsigned short*) const noexcept)
{
    unsigned short numbers[4] = {};
    (version.*get)(numbers);
    std::wstring text;
    for (const unsigned short number : numbers)
        text += (text.empty() ? L"" : L".") + std::to_wstring(number);
    return text;
}

std::wstring TextOf(const CMiniVersion& version,
                    int (CMiniVersion::*get)(unsigned short*, int) const noexcept)
{
    unsigned short text[longestText] = {};
    (version.*get)(text, longestText);
    return reinterpret_cast<const wchar_t*>(text);
}

std::vector<HMODULE> Handles()
{
    std::vector<HMODULE> modules(256);
    for (;;) {
        const auto room = static_cast<DWORD>(modules.size() * sizeof(HMODULE));
        DWORD needed = 0;
        if (!EnumProcessModules(GetCurrentProcess(), modules.data(), room, &needed)) return {};
        modules.resize(needed / sizeof(HMODULE));
        if (needed <= room) return modules;
    }
}

LoadedModule Describe(HMODULE handle)
{
    const std::wstring path = base::ModuleFile(handle);
    CMiniVersion version(path.size() < longestText ? path.c_str() : nullptr);
    LoadedModule module{path.substr(path.rfind(L'\\') + 1),
                        NumbersOf(version, &CMiniVersion::GetFileVersion),
                        TextOf(version, &CMiniVersion::GetFileDescription)};
    version.Release();
    if (module.version == L"0.0.0.0") module.version.clear();
    return module;
}

std::wstring WordsText(const CMiniVersion& version)
{
    unsigned long flags = 0;
    unsigned long os = 0;
    unsigned long type = 0;
    unsigned long subtype = 0;
    version.GetFileFlags(flags);
    version.GetFileOS(os);
    version.GetFileType(type);
    version.GetFileSubtype(subtype);
    wchar_t text[128];
    std::swprintf(text, std::size(text),
                  L"flags            %08lx\nsystem           %08lx\n"
                  L"type             %08lx\nsubtype          %08lx\n",
                  flags, os, type, subtype);
    return text;
}

std::wstring Description(const CMiniVersion& version)
{
    return L"company          " + TextOf(version, &CMiniVersion::GetCompanyName) +
           L"\nproduct          " + TextOf(version, &CMiniVersion::GetProductName) +
           L"\ndescription      " + TextOf(version, &CMiniVersion::GetFileDescription) +
           L"\nfile version     " + NumbersOf(version, &CMiniVersion::GetFileVersion) +
           L"\nproduct version  " + NumbersOf(version, &CMiniVersion::GetProductVersion) + L"\n" +
           WordsText(version);
}

} // namespace

std::vector<LoadedModule> LoadedModules()
{
    std::vector<LoadedModule> modules;
    for (const HMODULE handle : Handles())
        modules.push_back(Describe(handle));
    return modules;
}

std::optional<std::wstring> FileVersionText(const std::wstring& path)
{
    CMiniVersion version(path.c_str());
    version.Release();
    const bool isThere = version.Init() != 0; // the constructor reports no failure
    version.Release();
    if (!isThere) return {};
    return Description(version);
}

bool PrintFileVersion(const std::wstring& path)
{
    const std::wstring file = base::FullPath(path.c_str());
    std::error_code error;
    if (!std::filesystem::is_regular_file(file, error)) return Fail(L"there is no file " + path);
    const auto text = FileVersionText(file);
    if (!text) return Fail(path + L" has no version resource");
    WriteOut(*text);
    return true;
}

} // namespace exam
