#include "image/AviChunks.h"

namespace exam {

bool IsFrame(FOURCC name)
{
    return name == mmioFOURCC('0', '0', 'd', 'b') || name == mmioFOURCC('0', '0', 'd', 'c');
}

std::optional<Chunk> ReadChunk(const FileReader& file, std::int64_t position, std::int64_t end)
{
    std::uint32_t head[2] = {};
    if (position + chunkHead > end || !file.Read(position, head, sizeof head)) return {};
    Chunk chunk{head[0], position + chunkHead, position + chunkHead + head[1]};
    if (chunk.end > end) return {};
    if (chunk.name != FOURCC_RIFF && chunk.name != FOURCC_LIST) return chunk;
    if (!file.Read(chunk.begin, &chunk.name, sizeof chunk.name)) return {};
    chunk.begin += listType;
    return chunk;
}

std::optional<Chunk> FindChunk(const FileReader& file, const Chunk& list, FOURCC name)
{
    std::int64_t position = list.begin;
    while (const auto chunk = ReadChunk(file, position, list.end)) {
        if (chunk->name == name) return chunk;
        position = Behind(*chunk);
    }
    return {};
}

} // namespace exam
