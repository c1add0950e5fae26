#include "Mutation.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace fuzz {

namespace {

// Larger inputs only take time.
constexpr std::size_t mostBytes = 1 << 16;

// Sizes and counts overflow or change their sign at these.
constexpr std::uint32_t edges[] = {0,      1,      0x7F,       0x80,       0xFF,      0x100,
                                   0x7FFF, 0x8000, 0xFFFF,     0x10000,    0xFFFFFF,  0x7FFFFFFF,
                                   0x20,   0x40,   0x80000000, 0xFFFFFFFF, 0xFFFFFFFE};

} // namespace

std::string Mutation::Next()
{
    std::string bytes = AnyKnown();
    for (std::size_t changes = 1 + Below(8); changes > 0; --changes)
        Change(bytes);
    bytes.resize(std::min(bytes.size(), mostBytes));
    return bytes;
}

std::size_t Mutation::Below(std::size_t end)
{
    return end == 0 ? 0 : std::uniform_int_distribution<std::size_t>(0, end - 1)(m_random);
}

void Mutation::Change(std::string& bytes)
{
    if (bytes.empty()) return Insert(bytes);
    switch (Below(7)) {
    case 0: return FlipBit(bytes);
    case 1: return SetByte(bytes);
    case 2: return SetNumber(bytes);
    case 3: return Insert(bytes);
    case 4: return Erase(bytes);
    case 5: return Repeat(bytes);
    default: return Splice(bytes);
    }
}

void Mutation::FlipBit(std::string& bytes)
{
    char& byte = bytes[Below(bytes.size())];
    byte = static_cast<char>(byte ^ (1 << Below(8)));
}

void Mutation::SetByte(std::string& bytes)
{
    bytes[Below(bytes.size())] = static_cast<char>(Below(256));
}

void Mutation::SetNumber(std::string& bytes)
{
    const std::uint32_t number = edges[Below(std::size(edges))];
    const std::size_t at = Below(bytes.size());
    const std::size_t size = std::min(std::size_t{1} << Below(3), bytes.size() - at);
    std::memcpy(bytes.data() + at, &number, size);
}

void Mutation::Insert(std::string& bytes)
{
    std::string piece(1 + Below(16), '\0');
    for (char& byte : piece)
        byte = static_cast<char>(Below(256));
    bytes.insert(Below(bytes.size() + 1), piece);
}

void Mutation::Erase(std::string& bytes)
{
    bytes.erase(Below(bytes.size()), 1 + Below(64));
}

void Mutation::Repeat(std::string& bytes)
{
    const std::string piece = bytes.substr(Below(bytes.size()), 1 + Below(64));
    const std::size_t at = Below(bytes.size());
    for (std::size_t times = 1 + Below(16); times > 0; --times)
        bytes.insert(at, piece);
}

// A known input takes the place of the end.
void Mutation::Splice(std::string& bytes)
{
    const std::string& other = AnyKnown();
    bytes.resize(Below(bytes.size()));
    bytes.append(other, Below(other.size()), std::string::npos);
}

} // namespace fuzz
