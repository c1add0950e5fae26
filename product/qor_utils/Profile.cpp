#include "qor_utils/Profile.h"

#include <base/Handles.h>
#include <base/SlimLock.h>
#include <qor_utils/HostProfile.h>

#include <algorithm>
#include <mutex>
#include <optional>
#include <shared_mutex>
#include <vector>

namespace qor_utils {
namespace {

constexpr wchar_t defaultRoot[] = L"Software\\Kestrow\\Exam";

constinit base::SlimLock s_rootLock;

std::wstring& RootText()
{
    static std::wstring text = defaultRoot;
    return text;
}

std::wstring Root()
{
    const std::shared_lock guard(s_rootLock);
    return RootText();
}

base::RegistryKey OpenForReading(const std::wstring& path)
{
    base::RegistryKey key;
    RegOpenKeyExW(HKEY_CURRENT_USER, path.c_str(), 0, KEY_QUERY_VALUE, key.put());
    return key;
}

struct Value
{
    DWORD type = REG_NONE;
    std::vector<BYTE> bytes;
};

// Another program may make the value longer between two calls, so the size is queried again until
// it suffices.
std::optional<Value> QueryValue(HKEY key, const wchar_t* name)
{
    Value value;
    value.bytes.resize(512);
    for (;;) {
        auto size = static_cast<DWORD>(value.bytes.size());
        const LSTATUS status =
            RegQueryValueExW(key, name, nullptr, &value.type, value.bytes.data(), &size);
        if (status != ERROR_SUCCESS && status != ERROR_MORE_DATA) return std::nullopt;
        value.bytes.resize(size);
        if (status == ERROR_SUCCESS) return value;
    }
}

std::optional<Value> ReadValue(const wchar_t* section, const wchar_t* name)
{
    if (!section || !name) return std::nullopt;
    const base::RegistryKey key = OpenForReading(Root() + L"\\" + section);
    if (!key) return std::nullopt;
    return QueryValue(key.get(), name);
}

// The registry keeps any bytes that a program wrote: an odd number, none to terminate the text, or
// some after the terminator.
std::wstring ToText(const std::vector<BYTE>& bytes)
{
    std::wstring text(bytes.size() / sizeof(wchar_t), L'\0');
    std::copy_n(bytes.begin(), text.size() * sizeof(wchar_t), reinterpret_cast<BYTE*>(text.data()));
    text.resize(std::min(text.size(), text.find(L'\0')));
    return text;
}

std::wstring ExpandVariables(const std::wstring& text)
{
    std::wstring expanded(text.size() + 256, L'\0');
    for (;;) {
        const DWORD needed = ExpandEnvironmentStringsW(text.c_str(), expanded.data(),
                                                       static_cast<DWORD>(expanded.size()));
        if (needed == 0) return text;
        if (needed <= expanded.size()) {
            expanded.resize(needed - 1); // the count includes the terminator
            return expanded;
        }
        expanded.resize(needed);
    }
}

} // namespace

std::wstring ReadProfileString(const wchar_t* section, const wchar_t* key,
                               const wchar_t* defaultValue)
{
    const auto value = ReadValue(section, key);
    if (value && value->type == REG_SZ) return ToText(value->bytes);
    if (value && value->type == REG_EXPAND_SZ) return ExpandVariables(ToText(value->bytes));
    return defaultValue ? defaultValue : L"";
}

int ReadProfileInt(const wchar_t* section, const wchar_t* key, int defaultValue)
{
    const auto value = ReadValue(section, key);
    int number = 0;
    if (!value || value->type != REG_DWORD || value->bytes.size() != sizeof number)
        return defaultValue;
    std::copy_n(value->bytes.begin(), sizeof number, reinterpret_cast<BYTE*>(&number));
    return number;
}

void SetProfileRoot(const wchar_t* newRoot)
{
    std::wstring text = newRoot && *newRoot ? newRoot : defaultRoot;
    while (text.size() > 1 && text.back() == L'\\')
        text.pop_back();
    const std::scoped_lock guard(s_rootLock);
    RootText() = std::move(text);
}

} // namespace qor_utils
