#include "diagnostics/VersionBlock.h"

#include "diagnostics/VersionNodes.h"

#include <cstdio>
#include <cstring>
#include <cwchar>

namespace utils_statics {

namespace {

// The platform reads a little behind the last node to find the end of the nodes.
constexpr std::size_t bytesBehind = 16;

} // namespace

VersionReader::VersionReader(const wchar_t* path) noexcept
    : m_path(path), m_layout(LayoutOfVersionResource(path))
{
    DWORD unused = 0;
    if (m_layout) m_size = GetFileVersionInfoSizeW(path, &unused);
}

std::size_t VersionReader::Size() const noexcept
{
    return m_size ? m_size + bytesBehind : 0;
}

bool VersionReader::Read(unsigned char* block) const noexcept
{
    return GetFileVersionInfoW(m_path, 0, m_size, block) &&
           MendVersionNodes(block, m_size, *m_layout);
}

std::wstring_view VersionText(const unsigned char* block, const wchar_t* key,
                              std::span<wchar_t> query) noexcept
{
    void* found = nullptr;
    UINT size = 0;
    WORD first[2] = {}; // language and code page
    if (!VerQueryValueW(block, L"\\VarFileInfo\\Translation", &found, &size) || !found ||
        size < sizeof first)
        return {};
    std::memcpy(first, found, sizeof first); // it need not be aligned

    const int length = _snwprintf(query.data(), query.size(), L"\\StringFileInfo\\%04x%04x\\%ls",
                                  first[0], first[1], key);
    if (length <= 0 || length >= static_cast<int>(query.size()) ||
        !VerQueryValueW(block, query.data(), &found, &size) || !found)
        return {};
    const auto* const text = static_cast<const wchar_t*>(found);
    return {text, wcsnlen(text, size)};
}

} // namespace utils_statics
