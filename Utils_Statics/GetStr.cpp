#include "Utils_Statics/GetStr.h"

#include "environment/EnvironmentLog.h"
#include "text/FormatContract.h"
#include "text/TextView.h"

#include <zel_string_convert/ZelTString.h>

#include <cstdarg>
#include <cwchar>

using namespace utils_statics;

namespace {

// The two spaces after each full stop are deliberate, in both messages.
constexpr const wchar_t* doesNotMatch =
    L"[%s] - The string '%s' could not be formated.  It probably doesn't match the "
    L"format specifier(s) found in '%s'.";
constexpr const wchar_t* notSatisfied =
    L"[%s] - The string '%s' could not be formated.  It's likely that the expected "
    L"format specifier(s) were not satisfied.";

// Keys are plain ASCII identifiers.
std::wstring WideKey(const char* key)
{
    std::wstring wide;
    for (; *key; ++key)
        wide += static_cast<wchar_t>(static_cast<unsigned char>(*key));
    return wide;
}

// Formats the text in the table's base language, after the translation could not be formatted.
std::wstring FormatBase(const char* key, const wchar_t* text, const wchar_t* base,
                        va_list arguments)
{
    const std::wstring wideKey = WideKey(key);
    if (std::wcscmp(base, text) == 0) {
        EnvironmentLog(messageTextUnusable, 1)(notSatisfied, wideKey.c_str(), text);
        return std::wstring();
    }
    EnvironmentLog(messageTranslationDoesNotMatch, 1)(doesNotMatch, wideKey.c_str(), text, base);
    if (auto formatted = FormatByContract(base, base, arguments)) return *formatted;
    EnvironmentLog(messageBaseTextUnusable, 1)(notSatisfied, wideKey.c_str(), base);
    return std::wstring();
}

std::wstring FormatText(const char* key, va_list arguments)
{
    const wchar_t* const text = OrEmpty(ZelTString::get(key, true));
    if (!std::wcschr(text, L'%')) return text;
    const wchar_t* const base = OrEmpty(ZelTString::get(key, false));
    if (auto formatted = FormatByContract(text, base, arguments)) return std::move(*formatted);
    return FormatBase(key, text, base, arguments);
}

} // namespace

CString GetStr(const char* key, ...)
{
    if (!key) return CString();
    va_list arguments;
    va_start(arguments, key);
    const std::wstring result = FormatText(key, arguments);
    va_end(arguments);
    return ToCString(result);
}

CString TranslateStr(const wchar_t* text)
{
    return CString(OrEmpty(ZelTString::translate(OrEmpty(text))));
}
