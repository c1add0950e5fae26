#include "windows/NoticeText.h"

#include "text/FormatText.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <cwchar>
#include <string>

#define STRSAFE_NO_DEPRECATE // for the C functions that other headers call
#include <strsafe.h>

namespace utils_statics {

namespace {

using Piece = FormatReader::Piece;

bool IsReadable(const MEMORY_BASIC_INFORMATION& region)
{
    constexpr DWORD readable = PAGE_READONLY | PAGE_READWRITE | PAGE_WRITECOPY | PAGE_EXECUTE_READ |
                               PAGE_EXECUTE_READWRITE | PAGE_EXECUTE_WRITECOPY;
    return region.State == MEM_COMMIT && (region.Protect & readable) != 0 &&
           (region.Protect & PAGE_GUARD) == 0;
}

// The number of bytes that can be read from `place` on, up to the end of its region of memory.
std::size_t ReadableSize(const std::byte* place)
{
    MEMORY_BASIC_INFORMATION region;
    if (!VirtualQuery(place, &region, sizeof region) || !IsReadable(region)) return 0;
    const auto end = reinterpret_cast<std::uintptr_t>(region.BaseAddress) + region.RegionSize;
    return end - reinterpret_cast<std::uintptr_t>(place);
}

// True when one of the characters ends the text. They need not be aligned, because a wrong format
// takes any number for a text.
template <class Character>
bool HasEnd(const std::byte* text, std::size_t length)
{
    for (std::size_t i = 0; i < length; ++i) {
        Character character;
        std::memcpy(&character, text + i * sizeof character, sizeof character);
        if (character == 0) return true;
    }
    return false;
}

// True when the text of a conversion can be read up to its end or, with a precision, up to that
// length.
template <class Character>
bool CanRead(const Character* text, int precision)
{
    const auto* place = reinterpret_cast<const std::byte*>(text);
    std::size_t wanted = precision < 0 ? SIZE_MAX : static_cast<std::size_t>(precision);
    while (wanted > 0) {
        const std::size_t length = std::min(wanted, ReadableSize(place) / sizeof(Character));
        if (length == 0) return false;
        if (HasEnd<Character>(place, length)) return true;
        place += length * sizeof(Character);
        wanted -= length;
    }
    return true;
}

// The conversion for an empty text; it takes the same argument but does not read it.
std::wstring EmptyText(const FormatConversion& conversion)
{
    std::wstring text = conversion.leftAlign ? L"%-" : L"%";
    if (conversion.width > 0) text += std::to_wstring(conversion.width);
    return text + (conversion.type == L'S' ? L".0S" : L".0s");
}

// `format` with the percent sign of each %n doubled.
std::wstring WithoutWriting(const wchar_t* format)
{
    std::wstring safe;
    while (*format) {
        const std::size_t length =
            *format == L'%' ? 1 + std::wcsspn(format + 1, L"-+ #.*0123456789hlLwIjzt") : 1;
        if (*format == L'%' && format[length] == L'n') safe += L'%';
        // The type after a percent sign belongs to it, so that %% stays one piece.
        const std::size_t whole = length + (*format == L'%' && format[length] ? 1 : 0);
        safe.append(format, whole);
        format += whole;
    }
    return safe;
}

// Fetches the arguments of a format, one conversion after another.
class ArgumentWalk
{
public:
    // Works on a copy of `arguments`.
    explicit ArgumentWalk(va_list arguments) { va_copy(m_arguments, arguments); }
    ~ArgumentWalk() { va_end(m_arguments); }
    ArgumentWalk(const ArgumentWalk&) = delete;
    ArgumentWalk& operator=(const ArgumentWalk&) = delete;

    // Passes the argument of the conversion; false for a text that cannot be read.
    bool Pass(const FormatConversion& conversion)
    {
        switch (conversion.argument) {
        case FormatArgument::integer32: return Skip<int>();
        case FormatArgument::integer64: return Skip<long long>();
        case FormatArgument::real: return Skip<double>();
        case FormatArgument::address: return Skip<void*>();
        case FormatArgument::wideText:
            return CanRead(va_arg(m_arguments, const wchar_t*), conversion.precision);
        case FormatArgument::narrowText:
            return CanRead(va_arg(m_arguments, const char*), conversion.precision);
        }
        return true;
    }

private:
    template <class Argument>
    bool Skip()
    {
        static_cast<void>(va_arg(m_arguments, Argument));
        return true;
    }

    va_list m_arguments;
};

std::wstring SafeFormat(const wchar_t* format, va_list arguments)
{
    ArgumentWalk walk(arguments);
    FormatReader reader(format);
    std::wstring safe;
    for (;;) {
        const wchar_t* const begin = reader.Position();
        const Piece piece = reader.Next();
        if (piece == Piece::end) return safe;
        if (piece == Piece::refused) return safe + WithoutWriting(begin);
        if (piece == Piece::conversion && !walk.Pass(reader.Conversion()))
            safe += EmptyText(reader.Conversion());
        else
            safe.append(begin, reader.Position());
    }
}

} // namespace

NoticeText FormatNotice(const wchar_t* format, va_list arguments)
{
    constexpr std::size_t room = 8192;
    const std::size_t size = std::wcslen(format) + room;
    auto text = std::make_unique_for_overwrite<wchar_t[]>(size);
    const HRESULT result =
        StringCchVPrintfExW(text.get(), size, nullptr, nullptr, STRSAFE_IGNORE_NULLS,
                            SafeFormat(format, arguments).c_str(), arguments);
    if (FAILED(result)) return {result, nullptr};
    return {result, std::move(text)};
}

} // namespace utils_statics
