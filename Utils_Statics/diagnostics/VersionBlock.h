#pragma once

#include "diagnostics/VersionFile.h"

#include <windows.h>

#include <cstddef>
#include <optional>
#include <span>
#include <string_view>

namespace utils_statics {

// Reads the version resource of a file, as the platform returns it, into memory of the caller, and
// makes it safe to query. The platform's own queries follow the lengths in the nodes wherever they
// lead, and a file may contain any.
class VersionReader
{
public:
    // `path` is searched for as the platform searches for the files that it loads. It has to stay.
    explicit VersionReader(const wchar_t* path) noexcept;

    // The bytes that Read stores, and what the platform reads behind them. 0 when the file has no
    // version resource or cannot be read safely.
    std::size_t Size() const noexcept;

    // Reads into `block`, which has Size bytes, all of them 0. Afterwards every node lies within
    // its parent, and its key and value lie within it. A node that is too long is cut. A list ends
    // where a node is too short, and a node whose key does not end is not found. The length of a
    // text is then the one up to its null.
    //
    // False when the platform fails. False, with all cleared, when the root has no room for the
    // fixed version information.
    bool Read(unsigned char* block) const noexcept;

private:
    const wchar_t* m_path;
    std::optional<VersionLayout> m_layout;
    DWORD m_size = 0; // the platform's
};

// The characters of a query for a text, besides those of its key and with its null.
constexpr std::size_t versionQuerySize = 32;

// The text of `key` in the first language of a block that was read; it lies in the block. Without
// a pointer when there is none or when the query for it does not fit into `query`.
std::wstring_view VersionText(const unsigned char* block, const wchar_t* key,
                              std::span<wchar_t> query) noexcept;

} // namespace utils_statics
