// utilsExam: the texts of the program file's version resource.
#include "environment/PathText.h"

#include <Utils_Statics/GetStr.h>
#include <Utils_Statics/utilsExam.h>

#include <cstddef>
#include <cwchar>
#include <vector>

using namespace utils_statics;

namespace {

struct LanguageAndCodePage
{
    WORD language;
    WORD codePage;
};

std::vector<std::byte> VersionInformation(const CString& file)
{
    DWORD unused = 0;
    std::vector<std::byte> information(GetFileVersionInfoSizeW(file, &unused));
    if (!information.empty() &&
        !GetFileVersionInfoW(file, 0, static_cast<DWORD>(information.size()), information.data()))
        information.clear();
    return information;
}

bool FirstTranslation(const std::vector<std::byte>& information, LanguageAndCodePage& first)
{
    void* found = nullptr;
    UINT size = 0;
    if (!VerQueryValueW(information.data(), L"\\VarFileInfo\\Translation", &found, &size) ||
        size < sizeof first)
        return false;
    first = *static_cast<const LanguageAndCodePage*>(found);
    return true;
}

std::wstring ValueQuery(const LanguageAndCodePage& translation, const wchar_t* name)
{
    wchar_t block[32];
    std::swprintf(block, std::size(block), L"\\StringFileInfo\\%04x%04x\\", translation.language,
                  translation.codePage);
    return std::wstring(block) + OrEmpty(name);
}

// The text of `name`, read once and kept while it is not empty.
CString CachedEntry(CString& cache, const wchar_t* name)
{
    if (cache.IsEmpty()) cache = utilsExam::GetStringTableEntry(name);
    if (cache.IsEmpty()) cache = GetStr("product.description.notset");
    return cache;
}

} // namespace

CString utilsExam::GetStringTableEntry(const wchar_t* name)
{
    const std::vector<std::byte> information = VersionInformation(GetApplicationFilePath());
    LanguageAndCodePage translation = {};
    if (information.empty() || !FirstTranslation(information, translation)) return CString();

    void* value = nullptr;
    UINT length = 0; // in characters
    const std::wstring query = ValueQuery(translation, name);
    if (!VerQueryValueW(information.data(), query.c_str(), &value, &length) || !value)
        return CString();
    const wchar_t* const text = static_cast<const wchar_t*>(value);
    return CString(text, static_cast<int>(wcsnlen(text, length)));
}

CString utilsExam::GetProductVersion()
{
    static CString cache;
    return CachedEntry(cache, L"ProductVersion");
}

CString utilsExam::GetProductName()
{
    static CString cache;
    return CachedEntry(cache, L"ProductName");
}

CString utilsExam::GetProductPublisher()
{
    static CString cache;
    return CachedEntry(cache, L"CompanyName");
}

CString utilsExam::GetBuildDate()
{
    static CString cache;
    return CachedEntry(cache, L"BuildDate");
}
