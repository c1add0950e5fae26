#pragma once

#include <cstddef>
#include <map>
#include <string>

namespace test_support {

// Watches, as long as it lives, in which order the library and the product's libraries take their
// locks. Two threads that take two locks in two orders can wait for each other for ever. They
// rarely do, but the two orders show each time.
class LockOrder
{
public:
    LockOrder();
    ~LockOrder();
    LockOrder(const LockOrder&) = delete;
    LockOrder& operator=(const LockOrder&) = delete;

    // A thread tells of each lock that it is about to wait for it at a place of the code, that it
    // has it without waiting, and that it releases it.
    static void WaitsFor(const void* lock, const void* place);
    static void Has(const void* lock);
    static void Releases(const void* lock);

    // The number of pairs of locks, one of which was taken while the other one was held.
    static std::size_t Pairs();
    // Describes the circles among these pairs; empty when there is none. Each is written to stderr
    // as soon as it shows.
    static std::string Circles();

private:
    std::map<void**, void*> m_originals; // by the slots of the imports
};

} // namespace test_support
