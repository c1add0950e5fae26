#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace test_support {

// The index of a virtual member in the virtual table. In this compiler's binary interface a pointer
// to the member holds the offset in bytes, plus one.
template <class Member>
std::size_t VirtualPlace(Member member)
{
    std::uintptr_t words[2];
    static_assert(sizeof words == sizeof member);
    std::memcpy(words, &member, sizeof words);
    EXPECT_EQ(words[0] % sizeof(void*), 1u) << "the member is not virtual";
    return words[0] / sizeof(void*);
}

} // namespace test_support
