#pragma once

#include <base/SlimLock.h>

#include <cstddef>
#include <cstdint>

namespace guardheap {

constexpr std::size_t pageSize = 4096;

// The part of the address space where blocks have guard pages.
//
// A block occupies whole pages. Its end touches the end of the last page, as far as the alignment
// of malloc allows, and one more page that is never accessible follows. The unused part of its
// pages is filled with a pattern, which is checked when the block is freed. A freed block's pages
// become inaccessible. They stay so until quarantineBlocks other blocks or quarantinePages pages
// were freed after it.
//
// The limits keep a 32-bit process alive: they bound the address space, and the number of separate
// mappings that the host allows.
class GuardedRegion
{
public:
    static constexpr std::size_t alignment = 2 * sizeof(void*); // alignment of malloc
    static constexpr std::uint32_t pages = 384u * 1024 * 1024 / pageSize;
    static constexpr std::uint32_t liveBlocks = 16384;
    static constexpr std::size_t largestBlock = 16u * 1024 * 1024;
    static constexpr std::uint32_t quarantineBlocks = 8192;
    static constexpr std::uint32_t quarantinePages = pages / 4;

    enum class State : std::uint32_t
    {
        free,
        used,
        quarantined
    };

    // A block in its present state, or as it was before it was freed.
    struct Block
    {
        State state;
        const std::byte* start;
        std::size_t size;
    };

    // Reserves the address space; false when there is not enough. Not thread-safe.
    bool Reserve();

    bool Contains(const void* address) const;

    // Allocates a block filled with a pattern, or with zeros; null when a limit is reached.
    void* Allocate(std::size_t size, bool zeros);

    // Frees a block. Any fault in the block ends the process.
    void Release(void* block);

    // The size that was requested for a block in use. A pointer that is not the start of a block
    // ends the process.
    std::size_t SizeOf(const void* block);

    // The block whose pages, guard page included, hold an address of the region. Takes no lock,
    // because the fault handler calls it.
    Block BlockAt(const void* address) const;

private:
    // A run of pages, described by the record at its first page. Inside a run the length is 0.
    struct Run
    {
        std::uint32_t length;
        State state;
        std::size_t size;
    };

    class Guard;

    std::byte* Address(std::uint32_t page) const { return m_base + std::size_t{page} * pageSize; }
    std::byte* Start(std::uint32_t page) const;
    std::uint32_t PageOf(const void* pointer) const;
    std::uint32_t UsedRun(const void* block) const;
    std::uint32_t Claim(std::uint32_t length, std::size_t size);
    std::uint32_t Widen(std::uint32_t page);
    void Split(std::uint32_t page, std::uint32_t length);
    void Quarantine(std::uint32_t page);
    void Abandon(std::uint32_t page);
    void Fill(std::uint32_t page, bool zeros) const;
    void CheckSlack(std::uint32_t page) const;

    static constexpr std::uint32_t none = ~0u;

    std::byte* m_base = nullptr;
    Run* m_runs = nullptr;
    std::uint32_t m_next = 0; // place where the search for free pages goes on
    std::uint32_t m_live = 0;
    std::uint32_t m_quarantine[quarantineBlocks] = {}; // ring of first pages
    std::uint32_t m_oldest = 0;
    std::uint32_t m_quarantined = 0;
    std::uint32_t m_quarantinedPages = 0;
    base::SlimLock m_lock;
};

// The process has one region.
extern GuardedRegion s_region;

} // namespace guardheap
