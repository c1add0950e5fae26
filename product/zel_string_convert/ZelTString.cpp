#include "zel_string_convert/ZelTString.h"

#include "StringTable.h"
#include "XliffFile.h"

#include <base/Encoding.h>
#include <base/SlimLock.h>
#include <zel_string_convert/TableLoading.h>

#include <algorithm>
#include <mutex>
#include <new>
#include <optional>
#include <shared_mutex>
#include <string_view>
#include <utility>

using namespace zel_string_convert;

namespace {

// The table in use, the chosen language and the texts that were handed out.
struct TableState
{
    static constexpr std::size_t mostUnknownKeys = 4096;

    TextPool pool;
    StringTable table;
    int language = 0; // its number in the table
    TextPool unknownKeys{mostUnknownKeys};
};

TableState& CurrentState()
{
    static TableState state;
    return state;
}

constinit base::SlimLock s_tableLock;  // guards the table and the language of the state
constinit base::SlimLock s_changeLock; // held while a new table is built, so that no change is lost

std::optional<StringTable> ReadInto(StringTable table, const std::wstring& path,
                                    std::wstring& error)
{
    const auto files = XliffFilesAt(path);
    if (files.empty()) error = path + L" has no string table";
    for (const std::wstring& file : files) {
        const auto sections = ReadXliffFile(file, error);
        if (!sections) return std::nullopt;
        if (table.Add(*sections, CurrentState().pool)) continue;
        error = file + L" has another base language";
        return std::nullopt;
    }
    if (files.empty()) return std::nullopt;
    table.Index();
    return table;
}

void ExchangeTable(StringTable table)
{
    const std::scoped_lock guard(s_tableLock);
    TableState& s = CurrentState();
    const bool hadLanguage = !s.table.Languages().empty();
    const std::wstring language =
        hadLanguage ? s.table.Languages()[static_cast<std::size_t>(s.language)] : L"";
    s.language = std::max(0, table.LanguageNumber(language));
    std::swap(s.table, table);
}

bool Change(StringTable start, const std::wstring& path, std::wstring* error)
try {
    std::wstring reason;
    std::optional<StringTable> table = ReadInto(std::move(start), path, reason);
    if (table) {
        ExchangeTable(*std::move(table));
        return true;
    }
    if (error) *error = reason;
    return false;
} catch (const std::bad_alloc&) {
    return false;
}

constexpr std::size_t longestUnknownKey = 256;

// Texts of the table are used as printf formats, so a key with a percent sign must not be returned
// as one.
const wchar_t* UnknownKey(std::string_view key)
{
    if (key.size() > longestUnknownKey || key.find('%') != std::string_view::npos) return L"";
    const wchar_t* kept = CurrentState().unknownKeys.Keep(base::WideFromUtf8(key));
    return kept ? kept : L"";
}

} // namespace

const wchar_t* ZelTString::get(const char* key, bool translated)
{
    if (!key) return L"";
    {
        const std::shared_lock guard(s_tableLock);
        if (const wchar_t* text =
                CurrentState().table.ByKey(key, translated ? CurrentState().language : 0))
            return text;
    }
    return UnknownKey(key);
}

const wchar_t* ZelTString::translate(const wchar_t* text)
{
    if (!text) return nullptr;
    const std::shared_lock guard(s_tableLock);
    return CurrentState().table.ByBase(text, CurrentState().language);
}

namespace zel_string_convert {

bool LoadTable(const std::wstring& path, std::wstring* error)
{
    const std::scoped_lock changing(s_changeLock);
    return Change({}, path, error);
}

bool AddToTable(const std::wstring& path, std::wstring* error)
{
    const std::scoped_lock changing(s_changeLock);
    // Only changes write the table, and this is the only one in progress, so it may be read without
    // its lock.
    return Change(CurrentState().table, path, error);
}

void ClearTable()
{
    const std::scoped_lock changing(s_changeLock);
    ExchangeTable({});
}

bool SetLanguage(const std::wstring& language)
{
    const std::scoped_lock guard(s_tableLock);
    const int number = CurrentState().table.LanguageNumber(language);
    if (number < 0) return false;
    CurrentState().language = number;
    return true;
}

std::wstring CurrentLanguage()
{
    const std::shared_lock guard(s_tableLock);
    const auto& languages = CurrentState().table.Languages();
    return languages.empty() ? std::wstring()
                             : languages[static_cast<std::size_t>(CurrentState().language)];
}

std::wstring BaseLanguage()
{
    const std::shared_lock guard(s_tableLock);
    const auto& languages = CurrentState().table.Languages();
    return languages.empty() ? std::wstring() : languages.front();
}

std::vector<std::wstring> Languages()
{
    const std::shared_lock guard(s_tableLock);
    return CurrentState().table.Languages();
}

} // namespace zel_string_convert
