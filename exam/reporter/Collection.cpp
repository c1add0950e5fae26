#include "Collection.h"

#include "RegistryExport.h"

#include <Utils_Statics/ZipCompress.h>

#include <windows.h>

#include <algorithm>

namespace exam {

namespace {

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

// The first field of each value of a section.
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
    return GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES;
}

// Packs the tree by way of a file beside the archive.
bool PackTree(ZipCompress& zip, const std::wstring& tree, const std::wstring& file)
{
    if (!ExportTree(tree, file)) return true; // there is no such tree
    const bool isPacked = zip.AddFile(file.c_str());
    DeleteFileW(file.c_str());
    return isPacked;
}

} // namespace

std::optional<Collection> ReadCollection(const std::wstring& settingsFile)
{
    Collection collection;
    collection.archive = Setting(settingsFile, L"ZipFileName", L"Zip");
    if (collection.archive.empty()) return std::nullopt;
    collection.files = Values(settingsFile, L"FilesToAdd", 2);
    collection.registryTrees = Values(settingsFile, L"RegistryToAdd", 1);
    return collection;
}

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

} // namespace exam
