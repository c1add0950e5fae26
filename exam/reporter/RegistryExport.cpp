#include "RegistryExport.h"

#include <base/Handles.h>

#include <cstring>
#include <vector>

namespace exam {

namespace {

struct Root
{
    const wchar_t* shortName;
    const wchar_t* name;
    HKEY key;
};
const Root roots[] = {
    {L"HKCU\\", L"HKEY_CURRENT_USER\\", HKEY_CURRENT_USER},
    {L"HKLM\\", L"HKEY_LOCAL_MACHINE\\", HKEY_LOCAL_MACHINE},
};

constexpr int deepestKey = 512; // the platform's own limit of levels

std::wstring Quoted(const std::wstring& text)
{
    std::wstring quoted = L"\"";
    for (const wchar_t character : text) {
        if (character == L'"' || character == L'\\') quoted += L'\\';
        quoted += character;
    }
    return quoted + L"\"";
}

std::wstring Bytes(DWORD type, const std::vector<BYTE>& data)
{
    wchar_t piece[16];
    wsprintfW(piece, L"hex(%x):", static_cast<unsigned>(type));
    std::wstring text = type == REG_BINARY ? L"hex:" : piece;
    for (std::size_t i = 0; i < data.size(); ++i) {
        wsprintfW(piece, i == 0 ? L"%02x" : L",%02x", data[i]);
        text += piece;
    }
    return text;
}

std::wstring ValueText(DWORD type, const std::vector<BYTE>& data)
{
    if (type == REG_DWORD && data.size() == sizeof(DWORD)) {
        DWORD number = 0;
        std::memcpy(&number, data.data(), sizeof number);
        wchar_t text[20];
        wsprintfW(text, L"dword:%08x", static_cast<unsigned>(number));
        return text;
    }
    // Line breaks in a text would break the file's lines.
    std::wstring text(data.size() / sizeof(wchar_t), L'\0');
    std::memcpy(text.data(), data.data(), text.size() * sizeof(wchar_t));
    if (!text.empty() && text.back() == L'\0') text.pop_back();
    constexpr std::wstring_view breaks(L"\0\r\n", 3);
    const bool isPlain = type == REG_SZ && text.find_first_of(breaks) == std::wstring::npos;
    return isPlain ? Quoted(text) : Bytes(type, data);
}

// The sizes of the longest name below a key and of the largest value, so that each can be read.
struct Limits
{
    DWORD subkeyName = 0;
    DWORD valueName = 0;
    DWORD valueSize = 0;
};

Limits LimitsOf(HKEY key)
{
    Limits limits;
    RegQueryInfoKeyW(key, nullptr, nullptr, nullptr, nullptr, &limits.subkeyName, nullptr, nullptr,
                     &limits.valueName, &limits.valueSize, nullptr, nullptr);
    return limits;
}

void AppendValues(HKEY key, const Limits& limits, std::wstring& out)
{
    for (DWORD index = 0;; ++index) {
        std::wstring name(limits.valueName + 1, L'\0');
        std::vector<BYTE> data(limits.valueSize);
        auto nameSize = static_cast<DWORD>(name.size());
        auto dataSize = static_cast<DWORD>(data.size());
        DWORD type = REG_NONE;
        if (RegEnumValueW(key, index, name.data(), &nameSize, nullptr, &type, data.data(),
                          &dataSize) != ERROR_SUCCESS)
            return;
        name.resize(nameSize);
        data.resize(dataSize);
        out += (name.empty() ? L"@" : Quoted(name)) + L"=" + ValueText(type, data) + L"\r\n";
    }
}

void AppendTree(HKEY key, const std::wstring& path, int level, std::wstring& out)
{
    const Limits limits = LimitsOf(key);
    out += L"[" + path + L"]\r\n";
    AppendValues(key, limits, out);
    out += L"\r\n";
    for (DWORD index = 0; level < deepestKey; ++index) {
        std::wstring name(limits.subkeyName + 1, L'\0');
        auto size = static_cast<DWORD>(name.size());
        if (RegEnumKeyExW(key, index, name.data(), &size, nullptr, nullptr, nullptr, nullptr) !=
            ERROR_SUCCESS)
            return;
        name.resize(size);
        base::RegistryKey child;
        if (RegOpenKeyExW(key, name.c_str(), 0, KEY_READ, child.put()) == ERROR_SUCCESS)
            AppendTree(child.get(), std::wstring(path).append(L"\\").append(name), level + 1, out);
    }
}

bool WriteText(const std::wstring& path, const std::wstring& text)
{
    const base::File file(CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                      FILE_ATTRIBUTE_NORMAL, nullptr));
    const auto size = static_cast<DWORD>(text.size() * sizeof(wchar_t));
    DWORD written = 0;
    return file && WriteFile(file.get(), text.data(), size, &written, nullptr) && written == size;
}

} // namespace

bool ExportTree(const std::wstring& path, const std::wstring& file)
{
    for (const Root& root : roots) {
        if (!path.starts_with(root.shortName)) continue;
        const std::wstring below = path.substr(std::wcslen(root.shortName));
        base::RegistryKey key;
        if (RegOpenKeyExW(root.key, below.c_str(), 0, KEY_READ, key.put()) != ERROR_SUCCESS)
            return true;
        std::wstring text = L"\uFEFFWindows Registry Editor Version 5.00\r\n\r\n";
        AppendTree(key.get(), root.name + below, 0, text);
        return WriteText(file, text);
    }
    return true;
}

} // namespace exam
