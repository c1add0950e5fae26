// utilsExam: the texts of the program file's version resource.
#include "Utils_Statics/utilsExam.h"

#include "environment/PathText.h"

#include <base/SlimLock.h>
#include <Utils_Statics/GetStr.h>

#include <cstddef>
#include <cwchar>
#include <mutex>
#include <shared_mutex>
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

// Guards the caches below: balloon messages ask for the product's name on any thread.
constinit base::SlimLock s_cacheLock;

// The text of `name`, read once and kept while it is not empty.
CString CachedEntry(CString& cache, const wchar_t* name)
{
    {
        const std::shared_lock lock(s_cacheLock);
        if (!cache.IsEmpty()) return cache;
    }
    CString entry = utilsExam::GetStringTableEntry(name); // without the lock: it may take long
    if (entry.IsEmpty()) entry = GetStr("product.description.notset");
    const std::unique_lock lock(s_cacheLock);
    if (cache.IsEmpty()) cache = entry;
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
