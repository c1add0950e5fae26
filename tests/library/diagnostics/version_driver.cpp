// Prints what the version reader finds in each file of the system folder, one line a file, for
// version-readers. A line holds name, result, versions, words and texts, separated by tabs, in
// UTF-8.
#include <base/Encoding.h>
#include <base/Handles.h>
#include <Utils_Statics/CMiniVersion.h>

#include <cstdio>
#include <cwchar>
#include <string>

namespace {

std::string Numbers(const CMiniVersion& version)
{
    unsigned short file[4] = {};
    unsigned short product[4] = {};
    unsigned long flags = 0, os = 0, type = 0, subtype = 0;
    version.GetFileVersion(file);
    version.GetProductVersion(product);
    version.GetFileFlags(flags);
    version.GetFileOS(os);
    version.GetFileType(type);
    version.GetFileSubtype(subtype);
    char text[200];
    std::snprintf(text, sizeof text, "%u.%u.%u.%u\t%u.%u.%u.%u\t%lx\t%lx\t%lx\t%lx", file[0],
                  file[1], file[2], file[3], product[0], product[1], product[2], product[3], flags,
                  os, type, subtype);
    return text;
}

using GetText = int (CMiniVersion::*)(unsigned short*, int) const;

std::string Text(const CMiniVersion& version, GetText get)
{
    unsigned short text[520] = {};
    (version.*get)(text, 520);
    std::string utf8 = base::Utf8FromWide(reinterpret_cast<const wchar_t*>(text));
    for (char& character : utf8)
        if (character == '\t' || character == '\n' || character == '\r') character = ' ';
    return utf8;
}

void Print(const std::wstring& folder, const wchar_t* name)
{
    CMiniVersion version((folder + name).c_str());
    CMiniVersion again = version; // the result of reading
    const int found = again.Init();
    std::printf("%s\t%d\t%s\t%s\t%s\t%s\n", base::Utf8FromWide(name).c_str(), found,
                Numbers(version).c_str(), Text(version, &CMiniVersion::GetCompanyName).c_str(),
                Text(version, &CMiniVersion::GetFileDescription).c_str(),
                Text(version, &CMiniVersion::GetProductName).c_str());
    again.Release();
    version.Release();
}

} // namespace

// The argument is the folder, with a backslash at its end.
int wmain(int count, wchar_t** arguments)
{
    if (count != 2) return 2;
    const std::wstring folder = arguments[1];
    WIN32_FIND_DATAW found = {};
    const base::Find find(FindFirstFileW((folder + L"*").c_str(), &found));
    if (!find) return 1;
    do {
        if (!(found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY)) Print(folder, found.cFileName);
    } while (FindNextFileW(find.get(), &found));
    return 0;
}
