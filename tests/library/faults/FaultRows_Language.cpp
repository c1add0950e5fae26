// Functions of the language's run-time library that can fail.
#include "FaultRows.h"

#include <windows.h>
#include <direct.h>
#include <io.h>
#include <process.h>

#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <cwchar>

// The functions' types are enough; the attributes that say more are of no use here.
#pragma GCC diagnostic ignored "-Wignored-attributes"

#define ROW(name, value, when)                                                                     \
    MakeRow<decltype(&name), #name, static_cast<std::intptr_t>(value), When::when>()
#define FAILS(name, value) ROW(name, value, instead)
#define FAILS_AFTER(name, value) ROW(name, value, after)

namespace {

// A stream whose call failed says so afterwards.
template <class Stream>
std::size_t MarkError(Stream* stream)
{
    stream->_flag |= _IOERR;
    errno = EACCES;
    return 0;
}

std::size_t (*s_read)(void*, std::size_t, std::size_t, std::FILE*) = nullptr;
std::size_t (*s_write)(const void*, std::size_t, std::size_t, std::FILE*) = nullptr;

std::size_t Read(void* block, std::size_t size, std::size_t count, std::FILE* stream)
{
    if (!faults::IsDue({"fread", __builtin_return_address(0)}))
        return s_read(block, size, count, stream);
    return MarkError(stream);
}

std::size_t Write(const void* block, std::size_t size, std::size_t count, std::FILE* stream)
{
    if (!faults::IsDue({"fwrite", __builtin_return_address(0)}))
        return s_write(block, size, count, stream);
    return MarkError(stream);
}

template <auto* original>
void SetOriginal(void* function)
{
    *original = reinterpret_cast<std::remove_pointer_t<decltype(original)>>(function);
}

} // namespace

namespace faults {

std::vector<Row> LanguageRows()
{
    return {
        FAILS(_beginthreadex, 0),
        FAILS(_chsize, -1),
        FAILS(_filelength, -1),
        FAILS(_filelengthi64, -1),
        FAILS(_fileno, -1),
        FAILS(_gmtime64, 0),
        FAILS(_localtime64, 0),
        FAILS(_mktime64, -1),
        FAILS(_wcsdup, 0),
        FAILS(_wfopen, 0),
        FAILS(_wfsopen, 0),
        FAILS(_wmkdir, -1),
        FAILS(_wremove, -1),
        FAILS(_wrename, -1),
        FAILS(calloc, 0),
        FAILS_AFTER(fclose, EOF),
        FAILS(fflush, EOF),
        FAILS(fgetpos, -1),
        FAILS(fopen, 0),
        FAILS(fputc, EOF),
        FAILS(fputwc, WEOF),
        FAILS(fseek, -1),
        FAILS(fsetpos, -1),
        FAILS(ftell, -1),
        FAILS(getenv, 0),
        FAILS(gmtime, 0),
        FAILS(localtime, 0),
        FAILS(malloc, 0),
        FAILS(realloc, 0),
        FAILS(setlocale, 0),
        FAILS(setvbuf, -1),
        FAILS(strftime, 0),
        FAILS(time, -1),
        FAILS(vfprintf, -1),
        FAILS(wcsftime, 0),
        FAILS(_vscwprintf, -1),
        {"fread", reinterpret_cast<void*>(&Read), SetOriginal<&s_read>},
        {"fwrite", reinterpret_cast<void*>(&Write), SetOriginal<&s_write>},
    };
}

} // namespace faults
