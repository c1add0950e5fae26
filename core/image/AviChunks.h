#pragma once

#include "base/FileReader.h"

#include <windows.h>
#include <vfw.h>

#include <cstdint>
#include <optional>

namespace exam {

inline constexpr std::int64_t chunkHead = 8; ///< bytes of a chunk's name and size
inline constexpr std::int64_t listType = 4;  ///< bytes of the name that stands first in a list
inline constexpr std::int64_t mostFrameBytes = 300'000'000; ///< of a frame that is read

/// A chunk of a movie's file, or the contents of a list; its name is then the type of the list.
struct Chunk
{
    FOURCC name = 0;
    std::int64_t begin = 0;
    std::int64_t end = 0;
};

/// True for the name of a chunk that holds a frame.
bool IsFrame(FOURCC name);

/// The position of what follows a chunk; chunks begin at even positions.
inline std::int64_t Behind(const Chunk& chunk)
{
    return chunk.end + chunk.end % 2;
}

/// The chunk at `position`; nothing when it does not end by `end`.
std::optional<Chunk> ReadChunk(const FileReader& file, std::int64_t position, std::int64_t end);

/// The first chunk of that name in a list.
std::optional<Chunk> FindChunk(const FileReader& file, const Chunk& list, FOURCC name);

} // namespace exam
