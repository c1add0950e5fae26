#pragma once

// Read before every source of the native build: what the portable sources take for granted of the
// platform's compiler and of its C library.

#include <stddef.h>

// All sources are one program here, so a library exports and imports nothing.
#define __declspec(what)

#ifdef __cplusplus
extern "C" {
int _wcsicmp(const wchar_t* a, const wchar_t* b);
int _snwprintf(wchar_t* out, size_t capacity, const wchar_t* format, ...);
}
#endif
