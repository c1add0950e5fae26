#pragma once

#include "CineCompleted.h"

#include <gtest/gtest.h>
#include <test_support/Files.h>
#include <test_support/TemporaryFolder.h>
#include <Utils_Statics/CCineStore.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <random>
#include <string>

using Bytes = std::string;

constexpr std::size_t headerSize = 76;

inline uDataDesc Description(std::int32_t tag = 99)
{
    return {tag, 128, 512, 8, 40000000, 1540, 1, 128, 300, -60000, 0, 24500};
}

inline bool Start(CCineStore& store, const std::wstring& path, std::int32_t tag = 99)
{
    return store.InitStorage(path.c_str(), uDataMMode, Description(tag), 11, -12, 13, -14, 15,
                             INT32_MIN);
}

inline Bytes Block(std::size_t size, unsigned seed = 1)
{
    std::minstd_rand random(seed);
    Bytes bytes(size, 0);
    std::generate(bytes.begin(), bytes.end(), [&] { return static_cast<char>(random() >> 8); });
    return bytes;
}

inline bool AddFrame(CCineStore& store, Bytes bytes)
{
    return store.AddFrame(bytes.data(), static_cast<int>(bytes.size()));
}

inline bool AddEcg(CCineStore& store, Bytes bytes)
{
    return store.AddECGData(bytes.data(), static_cast<int>(bytes.size()));
}

// A little-endian 32-bit number inside bytes.
inline std::uint32_t WordAt(const Bytes& bytes, std::size_t offset)
{
    std::uint32_t word = 0;
    std::memcpy(&word, bytes.substr(offset).data(), sizeof word);
    return word;
}

// Reads the members that a derived store reuses.
struct OpenStore : CCineStore
{
    using CCineStore::completeCallback;
    using CCineStore::desc;
    using CCineStore::extra;
    using CCineStore::file;
    using CCineStore::frameCount;
    using CCineStore::path;
    using CCineStore::type;
    using CCineStore::userData;
};

class CineStore : public testing::Test
{
protected:
    test_support::TemporaryFolder folder;
    std::wstring fileName = folder / L"cine.raw";
    Completed completed;
    CCineStore store;
};
