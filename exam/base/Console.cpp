#include "base/Console.h"

#include <windows.h>

#include <cstdio>

namespace exam {

namespace {

void Write(std::FILE* stream, const std::wstring& text)
{
    const int length = static_cast<int>(text.size());
    const int bytes =
        WideCharToMultiByte(CP_UTF8, 0, text.data(), length, nullptr, 0, nullptr, nullptr);
    std::string narrow(static_cast<std::size_t>(bytes), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text.data(), length, narrow.data(), bytes, nullptr, nullptr);
    std::fwrite(narrow.data(), 1, narrow.size(), stream);
    std::fflush(stream);
}

} // namespace

void WriteOut(const std::wstring& text)
{
    Write(stdout, text);
}

void WriteError(const std::wstring& text)
{
    Write(stderr, text);
}

} // namespace exam
