#include "archive/EntryName.h"

#include <base/Encoding.h>
#include <base/FilePath.h>

#include <algorithm>

namespace utils_statics {

namespace {

constexpr std::wstring_view separators = L"/\\";

bool IsDriveLetter(wchar_t character)
{
    return (character >= L'A' && character <= L'Z') || (character >= L'a' && character <= L'z');
}

std::wstring_view WithoutRoot(std::wstring_view name)
{
    const bool hasDrive = name.size() >= 2 && IsDriveLetter(name[0]) && name[1] == L':';
    if (hasDrive) name.remove_prefix(2);
    name.remove_prefix(std::min(name.find_first_not_of(separators), name.size()));
    return name;
}

void EndWithSeparator(std::wstring& path)
{
    if (!path.ends_with(L'\\')) path += L'\\';
}

// True for a part of nothing but dots and blanks. The platform strips them from the end of some
// parts and not of others. So such a folder can be created, and later means itself to one function
// and its parent to another.
bool IsParent(std::wstring_view part)
{
    return !part.empty() && part.find_first_not_of(L". ") == std::wstring_view::npos;
}

bool IsDevice(std::wstring_view part)
{
    return base::FullPath(std::wstring(part).c_str()).starts_with(L"\\\\.\\");
}

// True when a part of the path is the parent folder, an alternate stream or a device.
bool LeadsOut(std::wstring_view path)
{
    for (std::size_t end = 0; end != std::wstring_view::npos;) {
        end = path.find(L'\\');
        const std::wstring_view part = path.substr(0, end);
        if (IsParent(part) || part.find(L':') != std::wstring_view::npos || IsDevice(part))
            return true;
        path.remove_prefix(std::min(part.size() + 1, path.size()));
    }
    return false;
}

} // namespace

std::wstring EntryText(std::string_view bytes, bool isUtf8)
{
    if (isUtf8)
        if (auto text = base::WideFromBytes(CP_UTF8, bytes, MB_ERR_INVALID_CHARS))
            return *std::move(text);
    return base::WideFromBytes(CP_ACP, bytes).value_or(std::wstring());
}

bool IsFolderEntry(std::wstring_view name)
{
    return name.empty() || separators.find(name.back()) != std::wstring_view::npos;
}

std::optional<std::wstring> PathInside(std::wstring_view name)
{
    std::wstring folder = base::FullPath(L".");
    EndWithSeparator(folder);
    std::wstring path = base::FullPath((folder + std::wstring(WithoutRoot(name))).c_str());
    if (path.empty()) return path;
    EndWithSeparator(path);
    if (!path.starts_with(folder)) return std::nullopt;
    path.erase(0, folder.size());
    if (!path.empty()) path.pop_back();
    if (LeadsOut(path)) return std::nullopt;
    return path;
}

} // namespace utils_statics
