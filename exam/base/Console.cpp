#include "base/Console.h"

#include <base/Encoding.h>

#include <cstdio>

namespace exam {

namespace {

void Write(std::FILE* stream, const std::wstring& text)
{
    const std::string bytes = base::Utf8FromWide(text);
    std::fwrite(bytes.data(), 1, bytes.size(), stream);
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
