// utilsExam: the texts of the program file's version resource.
#include "Utils_Statics/utilsExam.h"

#include "diagnostics/VersionBlock.h"
#include "environment/PathText.h"

#include <base/SlimLock.h>
#include <Utils_Statics/GetStr.h>

#include <cwchar>
#include <mutex>
#include <shared_mutex>
#include <string>
#include <string_view>
#include <vector>

using namespace utils_statics;

namespace {

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
    const CString file = GetApplicationFilePath();
    const VersionReader reader(file);
    std::vector<unsigned char> block(reader.Size());
    if (block.empty() || !reader.Read(block.data())) return CString();
    std::wstring query(versionQuerySize + std::wcslen(OrEmpty(name)), L'\0');
    const std::wstring_view text = VersionText(block.data(), OrEmpty(name), query);
    return CString(text.data(), static_cast<int>(text.size()));
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
