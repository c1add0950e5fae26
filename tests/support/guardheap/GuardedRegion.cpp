#include "GuardedRegion.h"

#include "Failure.h"

#include <cstring>

namespace guardheap {

namespace {

constexpr int slackPattern = 0xB7;
constexpr int freshPattern = 0xCD;
constexpr std::uint32_t searchSteps = 4096;

// The bytes that a block occupies up to the end of its last page.
std::size_t Footprint(std::size_t size)
{
    const std::size_t least = size == 0 ? 1 : size;
    return (least + GuardedRegion::alignment - 1) & ~(GuardedRegion::alignment - 1);
}

bool HoldsPattern(const std::byte* first, const std::byte* last)
{
    for (; first != last; ++first)
        if (*first != std::byte{slackPattern}) return false;
    return true;
}

// True while the process is ending. Its other threads are gone then, perhaps while they held a
// lock.
bool IsEnding()
{
    using Query = BOOLEAN(WINAPI*)();
    static constinit Query query = nullptr;
    if (!query) {
        const auto found =
            GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "RtlDllShutdownInProgress");
        query = reinterpret_cast<Query>(reinterpret_cast<void*>(found));
    }
    return query && query();
}

} // namespace

// Holds the lock. The lock may be impossible to get while the process ends; Held() is false then.
class GuardedRegion::Guard
{
public:
    explicit Guard(GuardedRegion& region) : m_lock(region.m_lock), m_held(m_lock.try_lock())
    {
        if (m_held || IsEnding()) return;
        m_lock.lock();
        m_held = true;
    }
    ~Guard()
    {
        if (m_held) m_lock.unlock();
    }
    Guard(const Guard&) = delete;
    Guard& operator=(const Guard&) = delete;
    bool Held() const { return m_held; }

private:
    base::SlimLock& m_lock;
    bool m_held;
};

bool GuardedRegion::Reserve()
{
    m_runs = static_cast<Run*>(
        VirtualAlloc(nullptr, pages * sizeof(Run), MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE));
    if (!m_runs) return false;
    m_runs[0] = {pages, State::free, 0};
    m_base = static_cast<std::byte*>(
        VirtualAlloc(nullptr, std::size_t{pages} * pageSize, MEM_RESERVE, PAGE_NOACCESS));
    return m_base != nullptr;
}

bool GuardedRegion::Contains(const void* pointer) const
{
    const auto offset =
        reinterpret_cast<std::uintptr_t>(pointer) - reinterpret_cast<std::uintptr_t>(m_base);
    return m_base && offset < std::size_t{pages} * pageSize;
}

std::uint32_t GuardedRegion::PageOf(const void* pointer) const
{
    return static_cast<std::uint32_t>(
        static_cast<std::size_t>(static_cast<const std::byte*>(pointer) - m_base) / pageSize);
}

std::byte* GuardedRegion::Start(std::uint32_t page) const
{
    return Address(page + m_runs[page].length - 1) - Footprint(m_runs[page].size);
}

void* GuardedRegion::Allocate(std::size_t size, bool zeros)
{
    if (!m_base || size > largestBlock) return nullptr;
    const auto length = static_cast<std::uint32_t>((Footprint(size) + pageSize - 1) / pageSize) + 1;
    std::uint32_t page = none;
    {
        const Guard guard(*this);
        if (guard.Held()) page = Claim(length, size);
    }
    if (page == none) return nullptr;
    const DWORD lastError = GetLastError();
    if (!VirtualAlloc(Address(page), (length - 1) * pageSize, MEM_COMMIT, PAGE_READWRITE)) {
        SetLastError(lastError);
        Abandon(page);
        return nullptr;
    }
    Fill(page, zeros);
    return Start(page);
}

// Takes the next run of free pages that is long enough, in the order of addresses, so that pages
// are reused as late as possible.
std::uint32_t GuardedRegion::Claim(std::uint32_t length, std::size_t size)
{
    if (m_live >= liveBlocks) return none;
    std::uint32_t page = m_next;
    for (std::uint32_t step = 0; step < searchSteps; ++step) {
        if (m_runs[page].state == State::free && Widen(page) >= length) {
            Split(page, length);
            m_runs[page] = {length, State::used, size};
            m_next = (page + length) % pages;
            ++m_live;
            return page;
        }
        page = (page + m_runs[page].length) % pages;
    }
    m_next = page;
    return none;
}

// Joins a free run with the free runs behind it. The result is its new length.
std::uint32_t GuardedRegion::Widen(std::uint32_t page)
{
    Run& run = m_runs[page];
    for (std::uint32_t behind = page + run.length;
         behind < pages && m_runs[behind].state == State::free; behind = page + run.length) {
        run.length += m_runs[behind].length;
        m_runs[behind].length = 0;
    }
    return run.length;
}

void GuardedRegion::Split(std::uint32_t page, std::uint32_t length)
{
    const std::uint32_t rest = m_runs[page].length - length;
    if (rest != 0) m_runs[page + length] = {rest, State::free, 0};
}

void GuardedRegion::Abandon(std::uint32_t page)
{
    const Guard guard(*this);
    m_runs[page].state = State::free;
    --m_live;
}

void GuardedRegion::Fill(std::uint32_t page, bool zeros) const
{
    std::byte* const block = Start(page);
    const std::size_t size = m_runs[page].size;
    std::memset(Address(page), slackPattern, static_cast<std::size_t>(block - Address(page)));
    if (!zeros) std::memset(block, freshPattern, size); // new pages are filled with zeros
    std::memset(block + size, slackPattern, Footprint(size) - size);
}

void GuardedRegion::Release(void* block)
{
    std::uint32_t page = 0;
    {
        const Guard guard(*this);
        if (!guard.Held()) return;
        page = UsedRun(block);
        m_runs[page].state = State::quarantined;
    }
    CheckSlack(page);
    VirtualFree(Address(page), (m_runs[page].length - 1) * pageSize, MEM_DECOMMIT);
    const Guard guard(*this);
    if (guard.Held()) Quarantine(page);
}

std::size_t GuardedRegion::SizeOf(const void* block)
{
    const Guard guard(*this);
    return m_runs[UsedRun(block)].size;
}

// The run of a block in use that starts exactly there. Any other pointer is an error that ends the
// process.
std::uint32_t GuardedRegion::UsedRun(const void* block) const
{
    const std::uint32_t page = PageOf(block); // a block starts in the first page of its run
    const Run& run = m_runs[page];
    if (run.length != 0 && run.state == State::used && Start(page) == block) return page;

    const Block found = BlockAt(block);
    if (found.start == block && found.state == State::quarantined)
        StopForBlock("is freed a second time", block, found.start, found.size);
    StopForBlock("is not the start of a block in use", block, found.start, found.size);
}

void GuardedRegion::CheckSlack(std::uint32_t page) const
{
    const std::byte* const block = Start(page);
    const std::size_t size = m_runs[page].size;
    if (!HoldsPattern(Address(page), block))
        StopForBlock("was written to before its beginning", block, block, size);
    if (!HoldsPattern(block + size, block + Footprint(size)))
        StopForBlock("was written to past its end", block, block, size);
}

// Keeps a freed run out of use for a while, and releases the runs that waited longest.
void GuardedRegion::Quarantine(std::uint32_t page)
{
    --m_live;
    while (m_quarantined == quarantineBlocks ||
           (m_quarantined > 0 && m_quarantinedPages + m_runs[page].length > quarantinePages)) {
        Run& oldest = m_runs[m_quarantine[m_oldest]];
        oldest.state = State::free;
        m_quarantinedPages -= oldest.length;
        m_oldest = (m_oldest + 1) % quarantineBlocks;
        --m_quarantined;
    }
    m_quarantine[(m_oldest + m_quarantined) % quarantineBlocks] = page;
    m_quarantinedPages += m_runs[page].length;
    ++m_quarantined;
}

GuardedRegion::Block GuardedRegion::BlockAt(const void* pointer) const
{
    const std::uint32_t wanted = PageOf(pointer);
    std::uint32_t page = 0;
    while (m_runs[page].length != 0 && page + m_runs[page].length <= wanted)
        page += m_runs[page].length;
    const Run& run = m_runs[page];
    if (run.state == State::free) return {State::free, nullptr, 0};
    return {run.state, Start(page), run.size};
}

} // namespace guardheap
