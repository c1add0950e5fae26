#include "qor_utils/zelPath.h"

#include <base/FilePath.h>
#include <base/SlimLock.h>
#include <qor_utils/StoreFolders.h>
#include <qor_utils/StoreNumbers.h>

#include <algorithm>
#include <map>
#include <mutex>
#include <optional>
#include <shared_mutex>

namespace {

struct DefaultFolder
{
    qor_utils::Store store;
    const wchar_t* folder;
};

constexpr DefaultFolder defaultFolders[] = {
    {qor_utils::applicationStore, L""},
    {qor_utils::fallbackFactoryStore, L"protocols\\fallback"},
    {qor_utils::imagesStore, L"images"},
    {qor_utils::layoutStore, L"layouts"},
    {qor_utils::fallbackLayoutStore, L"layouts\\fallback"},
    {qor_utils::savedProtocolsStore, L"protocols\\saved"},
    {qor_utils::logStore, L"log"},
    {qor_utils::patientDatabaseStore, L"patients"},
    {qor_utils::currentFactoryStore, L"protocols\\factory\\general"},
    {qor_utils::baseSuiteStore, L"protocols\\base"},
    {qor_utils::secondBaseStore, L"protocols\\base2"},
};

constinit base::SlimLock s_foldersLock;

std::map<int, std::wstring>& FoldersOfHost()
{
    static std::map<int, std::wstring> folders;
    return folders;
}

bool IsSeparator(wchar_t c)
{
    return c == L'\\' || c == L'/';
}

// True when the folder begins at a drive or at a root. "C:name" counts too, although it depends on
// the drive's current folder.
bool IsAbsolute(const std::wstring& folder)
{
    return IsSeparator(folder[0]) || (folder.size() > 1 && folder[1] == L':');
}

std::wstring Join(const std::wstring& folder, const std::wstring& name)
{
    const auto begin = std::find_if_not(name.begin(), name.end(), IsSeparator);
    return base::WithoutTrailingSeparators(folder) + L"\\" + std::wstring(begin, name.end());
}

std::wstring ApplicationFolder()
{
    std::wstring file = base::ModuleFile(nullptr);
    file.resize(file.find_last_of(L'\\') + 1); // without a backslash, npos + 1 is 0
    return file;
}

std::optional<std::wstring> FolderOf(int store)
{
    const std::shared_lock guard(s_foldersLock);
    const auto& folders = FoldersOfHost();
    if (const auto set = folders.find(store); set != folders.end()) return set->second;
    const auto* const known =
        std::find_if(std::begin(defaultFolders), std::end(defaultFolders),
                     [store](const DefaultFolder& f) { return f.store == store; });
    if (known == std::end(defaultFolders)) return std::nullopt;
    return known->folder;
}

} // namespace

std::wstring zelPath::getPath(int store, const std::wstring& name)
{
    std::optional<std::wstring> folder = FolderOf(store);
    if (!folder) return {};
    if (folder->empty()) return Join(ApplicationFolder(), name);
    if (!IsAbsolute(*folder)) folder = Join(ApplicationFolder(), *folder);
    return Join(*folder, name);
}

void qor_utils::SetStoreFolder(int store, const std::wstring& folder)
{
    std::wstring text = folder;
    std::replace(text.begin(), text.end(), L'/', L'\\');
    const std::scoped_lock guard(s_foldersLock);
    if (text.empty())
        FoldersOfHost().erase(store);
    else
        FoldersOfHost()[store] = std::move(text);
}
