#include "archive/EntryName.h"

#include <base/Encoding.h>

#include <algorithm>
#include <array>

namespace utils_statics {

namespace {

constexpr std::wstring_view separators = L"/\\";

// Names that are devices in every folder, whatever extension follows.
constexpr std::array<std::wstring_view, 6> devices = {L"CON", L"PRN",    L"AUX",
                                                      L"NUL", L"CONIN$", L"CONOUT$"};
// These are devices with one digit behind them, which may be a superscript.
constexpr std::array<std::wstring_view, 2> numberedDevices = {L"COM", L"LPT"};
constexpr std::wstring_view deviceDigits = L"0123456789\u00B9\u00B2\u00B3";

wchar_t UpperAscii(wchar_t character)
{
    return character >= L'a' && character <= L'z' ? static_cast<wchar_t>(character - L'a' + L'A')
                                                  : character;
}

bool IsAsciiLetter(wchar_t character)
{
    const wchar_t upper = UpperAscii(character);
    return upper >= L'A' && upper <= L'Z';
}

bool IsDevice(std::wstring_view part)
{
    std::wstring stem(part.substr(0, part.find(L'.')));
    stem.erase(stem.find_last_not_of(L' ') + 1); // "NUL .txt" is the device, too
    std::ranges::transform(stem, stem.begin(), UpperAscii);
    if (std::ranges::find(devices, stem) != devices.end()) return true;
    return stem.size() == 4 && deviceDigits.find(stem.back()) != std::wstring_view::npos &&
           std::ranges::find(numberedDevices, stem.substr(0, 3)) != numberedDevices.end();
}

// A colon would name a drive or an alternate stream of a file.
bool HasForbiddenCharacter(std::wstring_view part)
{
    static constexpr std::wstring_view forbidden = L"<>:\"|?*";
    return std::ranges::any_of(part, [](wchar_t character) {
        return character < L' ' || forbidden.find(character) != std::wstring_view::npos;
    });
}

// Whether one part of a path names itself and nothing else. The platform drops dots and blanks at
// the end of a name; with them ". ." could become the parent folder.
bool IsUsablePart(std::wstring_view part)
{
    return part.back() != L'.' && part.back() != L' ' && !HasForbiddenCharacter(part) &&
           !IsDevice(part);
}

std::wstring_view WithoutDrive(std::wstring_view name)
{
    const bool hasDrive = name.size() >= 2 && IsAsciiLetter(name[0]) && name[1] == L':';
    return hasDrive ? name.substr(2) : name;
}

// Takes the first part off `rest`, with the separator behind it.
std::wstring_view TakePart(std::wstring_view& rest)
{
    const std::size_t end = std::min(rest.find_first_of(separators), rest.size());
    const std::wstring_view part = rest.substr(0, end);
    rest.remove_prefix(std::min(end + 1, rest.size()));
    return part;
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
    std::wstring path;
    for (std::wstring_view rest = WithoutDrive(name); !rest.empty();) {
        const std::wstring_view part = TakePart(rest);
        if (part.empty() || part == L".") continue;
        if (!IsUsablePart(part)) return std::nullopt;
        if (!path.empty()) path += L'\\';
        path += part;
    }
    if (path.empty()) return std::nullopt;
    return path;
}

} // namespace utils_statics
