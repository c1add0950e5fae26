#include "service/FileVersion.h"

#include "base/Console.h"
#include "service/VersionText.h"

#include <base/FilePath.h>

#include <cstdio>
#include <filesystem>
#include <iterator>

namespace exam {

namespace {

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
    unsigned short file[4] = {};
    unsigned short product[4] = {};
    version.GetFileVersion(file);
    version.GetProductVersion(product);
    return L"company          " + TextOf(version, &CMiniVersion::GetCompanyName) +
           L"\nproduct          " + TextOf(version, &CMiniVersion::GetProductName) +
           L"\ndescription      " + TextOf(version, &CMiniVersion::GetFileDescription) +
           L"\nfile version     " + NumbersText(file) + L"\nproduct version  " +
           NumbersText(product) + L"\n" + WordsText(version);
}

} // namespace

bool PrintFileVersion(const std::wstring& path)
{
    const std::wstring file = base::FullPath(path.c_str());
    std::error_code error;
    if (!std::filesystem::is_regular_file(file, error)) {
        WriteError(L"exam: there is no file " + path + L"\n");
        return false;
    }
    CMiniVersion version(file.c_str());
    version.Release();
    const bool isThere = version.Init() != 0; // the constructor reports no failure
    version.Release();
    if (isThere)
        WriteOut(Description(version));
    else
        WriteError(L"exam: " + path + L" has no version resource\n");
    return isThere;
}

} // namespace exam
