#pragma once

// The types of the platform by their names and sizes, and nothing that it does. The portable
// sources take them for data of their own.

#include <cstddef>
#include <cstdint>
#include <cwchar>

#define WINAPI
#define CALLBACK

using BOOL = int;
using BYTE = std::uint8_t;
using WORD = std::uint16_t;
using DWORD = std::uint32_t;
using UINT = std::uint32_t;
using INT = std::int32_t;
using LONG = std::int32_t;
using ULONG = std::uint32_t;
using LONGLONG = std::int64_t;
using ULONGLONG = std::uint64_t;
using INT_PTR = std::intptr_t;
using UINT_PTR = std::uintptr_t;
using WPARAM = std::uintptr_t;
using LPARAM = std::intptr_t;
using LRESULT = std::intptr_t;
using COLORREF = std::uint32_t;
using LPCWSTR = const wchar_t*;
using LPCSTR = const char*;
using HANDLE = void*;
using HBITMAP = struct HBITMAP__*;

constexpr DWORD MAXDWORD = 0xFFFFFFFF;
constexpr UINT CP_ACP = 0;
constexpr UINT CP_UTF8 = 65001;
constexpr DWORD MB_ERR_INVALID_CHARS = 8;

constexpr WORD LOWORD(std::uintptr_t value)
{
    return static_cast<WORD>(value);
}
constexpr WORD HIWORD(std::uintptr_t value)
{
    return static_cast<WORD>(value >> 16);
}

struct tagPOINT
{
    LONG x;
    LONG y;
};
using POINT = tagPOINT;

struct tagSIZE
{
    LONG cx;
    LONG cy;
};
using SIZE = tagSIZE;

struct tagRECT
{
    LONG left;
    LONG top;
    LONG right;
    LONG bottom;
};
using RECT = tagRECT;
using LPRECT = RECT*;
using LPCRECT = const RECT*;

// Named by members of the framework's types that the portable sources leave alone.
BOOL IntersectRect(LPRECT out, LPCRECT a, LPCRECT b);
BOOL UnionRect(LPRECT out, LPCRECT a, LPCRECT b);

struct VS_FIXEDFILEINFO
{
    DWORD dwSignature;
    DWORD dwStrucVersion;
    DWORD dwFileVersionMS;
    DWORD dwFileVersionLS;
    DWORD dwProductVersionMS;
    DWORD dwProductVersionLS;
    DWORD dwFileFlagsMask;
    DWORD dwFileFlags;
    DWORD dwFileOS;
    DWORD dwFileType;
    DWORD dwFileSubtype;
    DWORD dwFileDateMS;
    DWORD dwFileDateLS;
};
