#include "zel_string_convert/ZelTString.h"

#include "TableState.h"

#include <base/Encoding.h>

#include <shared_mutex>
#include <string_view>

namespace zel_string_convert {

TableState& CurrentState()
{
    static TableState state;
    return state;
}

base::SlimLock& TableLock()
{
    static constinit base::SlimLock lock;
    return lock;
}

} // namespace zel_string_convert

using zel_string_convert::CurrentState;
using zel_string_convert::TableLock;

namespace {

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
        const std::shared_lock guard(TableLock());
        if (const wchar_t* text =
                CurrentState().table.ByKey(key, translated ? CurrentState().language : 0))
            return text;
    }
    return UnknownKey(key);
}

const wchar_t* ZelTString::translate(const wchar_t* text)
{
    if (!text) return nullptr;
    const std::shared_lock guard(TableLock());
    return CurrentState().table.ByBase(text, CurrentState().language);
}
