#include "zel_string_convert/TableLoading.h"

#include "TableState.h"
#include "XliffFile.h"

#include <algorithm>
#include <mutex>
#include <new>
#include <optional>
#include <shared_mutex>
#include <utility>

namespace zel_string_convert {

namespace {

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
    const std::scoped_lock guard(TableLock());
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

} // namespace

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
    const std::scoped_lock guard(TableLock());
    const int number = CurrentState().table.LanguageNumber(language);
    if (number < 0) return false;
    CurrentState().language = number;
    return true;
}

std::wstring CurrentLanguage()
{
    const std::shared_lock guard(TableLock());
    const auto& languages = CurrentState().table.Languages();
    return languages.empty() ? std::wstring()
                             : languages[static_cast<std::size_t>(CurrentState().language)];
}

std::wstring BaseLanguage()
{
    const std::shared_lock guard(TableLock());
    const auto& languages = CurrentState().table.Languages();
    return languages.empty() ? std::wstring() : languages.front();
}

std::vector<std::wstring> Languages()
{
    const std::shared_lock guard(TableLock());
    return CurrentState().table.Languages();
}

} // namespace zel_string_convert
