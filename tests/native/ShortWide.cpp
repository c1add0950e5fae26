// The wide functions of the C library for characters of 16 bits, as the compiler makes them with
// -fshort-wchar. The machine's own library has them for 32 bits only. Those here stand before it in
// every program of the native build.
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <cwchar>
#include <string>

static_assert(sizeof(wchar_t) == 2);

extern "C" {

size_t wcslen(const wchar_t* text)
{
    size_t length = 0;
    while (text[length])
        ++length;
    return length;
}

size_t wcsnlen(const wchar_t* text, size_t most)
{
    size_t length = 0;
    while (length < most && text[length])
        ++length;
    return length;
}

int wmemcmp(const wchar_t* a, const wchar_t* b, size_t count)
{
    for (size_t i = 0; i < count; ++i)
        if (a[i] != b[i]) return a[i] < b[i] ? -1 : 1;
    return 0;
}

int wcscmp(const wchar_t* a, const wchar_t* b)
{
    for (; *a && *a == *b; ++a)
        ++b;
    return *a == *b ? 0 : (*a < *b ? -1 : 1);
}

wchar_t* wmemcpy(wchar_t* to, const wchar_t* from, size_t count)
{
    if (count) std::memcpy(to, from, count * sizeof *to);
    return to;
}

wchar_t* wmemmove(wchar_t* to, const wchar_t* from, size_t count)
{
    if (count) std::memmove(to, from, count * sizeof *to);
    return to;
}

wchar_t* wmemset(wchar_t* to, wchar_t character, size_t count)
{
    for (size_t i = 0; i < count; ++i)
        to[i] = character;
    return to;
}

wchar_t* wmemchr(const wchar_t* text, wchar_t character, size_t count)
{
    for (size_t i = 0; i < count; ++i)
        if (text[i] == character) return const_cast<wchar_t*>(text + i);
    return nullptr;
}

wchar_t* wcschr(const wchar_t* text, wchar_t character)
{
    return wmemchr(text, character, wcslen(text) + 1);
}

size_t wcscspn(const wchar_t* text, const wchar_t* others)
{
    size_t length = 0;
    while (text[length] && !wcschr(others, text[length]))
        ++length;
    return length;
}

int _wcsicmp(const wchar_t* a, const wchar_t* b)
{
    const auto lower = [](wchar_t c) { return c >= L'A' && c <= L'Z' ? c + 32 : int{c}; };
    for (; *a && lower(*a) == lower(*b); ++a)
        ++b;
    return lower(*a) - lower(*b);
}

} // extern "C"

namespace {

// The characters that are there in both widths.
std::string Narrow(const wchar_t* text)
{
    return std::string(text, text + wcslen(text));
}

} // namespace

extern "C" {

// These two know the conversions that the narrow functions have under the same letters.
int _snwprintf(wchar_t* out, size_t capacity, const wchar_t* format, ...)
{
    std::string text(capacity, '\0');
    va_list arguments;
    va_start(arguments, format);
    const int length = std::vsnprintf(text.data(), capacity, Narrow(format).c_str(), arguments);
    va_end(arguments);
    if (length < 0 || static_cast<size_t>(length) > capacity) return -1;
    for (size_t i = 0; i < static_cast<size_t>(length); ++i)
        out[i] = static_cast<wchar_t>(static_cast<unsigned char>(text[i]));
    return length;
}

int wprintf(const wchar_t* format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    const int length = std::vprintf(Narrow(format).c_str(), arguments);
    va_end(arguments);
    return length;
}

} // extern "C"
