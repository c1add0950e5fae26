#include "zel_string_convert/ZelTString.h"

#include "StringTable.h"
#include "TextPool.h"
#include "XliffFile.h"
#include "XliffFolder.h"

#include <base/Encoding.h>
#include <base/SlimLock.h>

#include <algorithm>
#include <mutex>
#include <new>
#include <optional>
#include <shared_mutex>
#include <string_view>

using zel_string_convert::StringTable;
using zel_string_convert::TextPool;

namespace {

constexpr std::size_t longestUnknownKey = 256;
constexpr std::size_t mostUnknownKeys = 4096;

struct State
{
    TextPool pool;
    StringTable table;
    int language = 0; // its number in the table
    TextPool unknownKeys{mostUnknownKeys};
};

constinit base::SlimLock
    s_changeLock; // held by whoever builds a new table, so that no change is lost
constinit base::SlimLock s_tableLock; // guards the table and the language

State& CurrentState()
{
    static State object;
    return object;
}

std::optional<StringTable> ReadInto(StringTable table, const std::wstring& path,
                                    std::wstring& error)
{
    const auto files = zel_string_convert::XliffFilesAt(path);
    if (files.empty()) error = path + L" has no string table";
    for (const std::wstring& file : files) {
        const auto sections = zel_string_convert::ReadXliffFile(file, error);
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
    State& s = CurrentState();
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
    if (table) ExchangeTable(*std::move(table));
    if (!table && error) *error = reason;
    return table.has_value();
} catch (const std::bad_alloc&) {
    return false;
}

// Texts of the table serve as printf formats, so a key with a percent sign must not pass for one.
const wchar_t* UnknownKey(std::string_view key)
{
    if (key.size() > longestUnknownKey || key.find('%') != std::string_view::npos) return L"";
    const wchar_t* kept = CurrentState().unknownKeys.Keep(base::WideFromUtf8(key));
    return kept ? kept : L"";
}

} // namespace

bool ZelTString::load(const std::wstring& path, std::wstring* error)
{
    const std::scoped_lock changing(s_changeLock);
    return Change({}, path, error);
}

bool ZelTString::add(const std::wstring& path, std::wstring* error)
{
    const std::scoped_lock changing(s_changeLock);
    return Change(CurrentState().table, path,
                  error); // only changes write the table, and this is the one under way
}

void ZelTString::clear()
{
    const std::scoped_lock changing(s_changeLock);
    ExchangeTable({});
}

bool ZelTString::setLanguage(const std::wstring& language)
{
    const std::scoped_lock guard(s_tableLock);
    const int number = CurrentState().table.LanguageNumber(language);
    if (number < 0) return false;
    CurrentState().language = number;
    return true;
}

std::wstring ZelTString::getLanguage()
{
    const std::shared_lock guard(s_tableLock);
    const auto& languages = CurrentState().table.Languages();
    return languages.empty() ? std::wstring()
                             : languages[static_cast<std::size_t>(CurrentState().language)];
}

std::wstring ZelTString::getBaseLanguage()
{
    const std::shared_lock guard(s_tableLock);
    const auto& languages = CurrentState().table.Languages();
    return languages.empty() ? std::wstring() : languages.front();
}

std::vector<std::wstring> ZelTString::getLanguages()
{
    const std::shared_lock guard(s_tableLock);
    return CurrentState().table.Languages();
}

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
