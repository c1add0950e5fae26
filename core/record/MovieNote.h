#pragma once

#include <windows.h>

#include <cstdint>
#include <optional>
#include <string>

namespace exam {

/// The facts about a movie that the platform writes into its file at the very end. While the movie
/// is made they stand in a note beside it, so that one that was cut off can be repaired.
struct MovieNote
{
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::int32_t framesPer1000s = 0;
    FOURCC codec = 0; ///< 0: uncompressed
};

/// Writes the note of a movie, reads it, and removes it. A note that cannot be written only makes
/// a repair poorer.
void WriteNote(const std::wstring& movie, const MovieNote& note);
std::optional<MovieNote> ReadNote(const std::wstring& movie);
void RemoveNote(const std::wstring& movie);

} // namespace exam
