#include "GuardedRegion.h"

#include "Failure.h"

#include <cstring>

namespace guardheap {

namespace {

constexpr int slackPattern = 0xB7;
constexpr int freshPattern = 0xCD;
constexpr std::uint32_t searchSteps = 4096;

// What a block occupies up to the end of its last page.
std::size_t footprint(std::size_t size)
{
    const std::size_t least = size == 0 ? 1 : size;
    return (least + GuardedRegion::alignment - 1) & ~(GuardedRegion::alignment - 1);
}

bool holdsPattern(const std::byte* first, const std::byte* last)
{
    for (; first != last; ++first)
        if (*first != std::byte{slackPattern}) return false;
    return true;
}

// Whether the process is ending: its other threads are gone, and may have gone while they held a
// lock.
bool isEnding()
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

// Holds the lock. While the process ends it may be impossible to get; held() is false then.
class GuardedRegion::Guard
{
public:
    explicit Guard(GuardedRegion& region)
        : m_lock(region.m_lock), m_held(TryAcquireSRWLockExclusive(&m_lock) != 0)
    {
        if (m_held || isEnding()) return;
        AcquireSRWLockExclusive(&m_lock);
        m_held = true;
    }
    ~Guard()
    {
        if (m_held) ReleaseSRWLockExclusive(&m_lock);
    }
    Guard(const Guard&) = delete;
    Guard& operator=(const Guard&) = delete;
    bool held() const { return m_held; }

private:
    SRWLOCK& m_lock;
    bool m_held;
};

bool GuardedRegion::reserve()
{
    m_runs = static_cast<Run*>(
        VirtualAlloc(nullptr, pages * sizeof(Run), MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE));
    if (!m_runs) return false;
    m_runs[0] = {pages, State::Free, 0};
    m_base = static_cast<std::byte*>(
        VirtualAlloc(nullptr, std::size_t{pages} * pageSize, MEM_RESERVE, PAGE_NOACCESS));
    return m_base != nullptr;
}

bool GuardedRegion::contains(const void* pointer) const
{
    const auto offset =
        reinterpret_cast<std::uintptr_t>(pointer) - reinterpret_cast<std::uintptr_t>(m_base);
    return m_base && offset < std::size_t{pages} * pageSize;
}

std::uint32_t GuardedRegion::pageOf(const void* pointer) const
{
    return static_cast<std::uint32_t>(
        static_cast<std::size_t>(static_cast<const std::byte*>(pointer) - m_base) / pageSize);
}

std::byte* GuardedRegion::start(std::uint32_t page) const
{
    return address(page + m_runs[page].length - 1) - footprint(m_runs[page].size);
}

void* GuardedRegion::allocate(std::size_t size, bool zeros)
{
    if (!m_base || size > largestBlock) return nullptr;
    const auto length = static_cast<std::uint32_t>((footprint(size) + pageSize - 1) / pageSize) + 1;
    std::uint32_t page = none;
    {
        const Guard guard(*this);
        if (guard.held()) page = claim(length, size);
    }
    if (page == none) return nullptr;
    const DWORD lastError = GetLastError();
    if (!VirtualAlloc(address(page), (length - 1) * pageSize, MEM_COMMIT, PAGE_READWRITE)) {
        SetLastError(lastError);
        abandon(page);
        return nullptr;
    }
    fill(page, zeros);
    return start(page);
}

// The next run of free pages that is long enough, in the order of addresses: reuse is as late as it
// can be.
std::uint32_t GuardedRegion::claim(std::uint32_t length, std::size_t size)
{
    if (m_live >= liveBlocks) return none;
    std::uint32_t page = m_next;
    for (std::uint32_t step = 0; step < searchSteps; ++step) {
        if (m_runs[page].state == State::Free && widen(page) >= length) {
            split(page, length);
            m_runs[page] = {length, State::Used, size};
            m_next = (page + length) % pages;
            ++m_live;
            return page;
        }
        page = (page + m_runs[page].length) % pages;
    }
    m_next = page;
    return none;
}

// Joins a free run with the free ones behind it; its length then.
std::uint32_t GuardedRegion::widen(std::uint32_t page)
{
    Run& run = m_runs[page];
    for (std::uint32_t behind = page + run.length;
         behind < pages && m_runs[behind].state == State::Free; behind = page + run.length) {
        run.length += m_runs[behind].length;
        m_runs[behind].length = 0;
    }
    return run.length;
}

void GuardedRegion::split(std::uint32_t page, std::uint32_t length)
{
    const std::uint32_t rest = m_runs[page].length - length;
    if (rest != 0) m_runs[page + length] = {rest, State::Free, 0};
}

void GuardedRegion::abandon(std::uint32_t page)
{
    const Guard guard(*this);
    m_runs[page].state = State::Free;
    --m_live;
}

void GuardedRegion::fill(std::uint32_t page, bool zeros) const
{
    std::byte* const block = start(page);
    const std::size_t size = m_runs[page].size;
    std::memset(address(page), slackPattern, static_cast<std::size_t>(block - address(page)));
    if (!zeros) std::memset(block, freshPattern, size); // pages come filled with zeros
    std::memset(block + size, slackPattern, footprint(size) - size);
}

void GuardedRegion::release(void* block)
{
    std::uint32_t page = 0;
    {
        const Guard guard(*this);
        if (!guard.held()) return;
        page = usedRun(block);
        m_runs[page].state = State::Quarantined;
    }
    checkSlack(page);
    VirtualFree(address(page), (m_runs[page].length - 1) * pageSize, MEM_DECOMMIT);
    const Guard guard(*this);
    if (guard.held()) quarantine(page);
}

std::size_t GuardedRegion::sizeOf(const void* block)
{
    const Guard guard(*this);
    return m_runs[usedRun(block)].size;
}

// The run of a block in use that starts exactly there; there is no way on from any other pointer.
std::uint32_t GuardedRegion::usedRun(const void* block) const
{
    const std::uint32_t page = pageOf(block); // a block starts in the first page of its run
    const Run& run = m_runs[page];
    if (run.length != 0 && run.state == State::Used && start(page) == block) return page;

    const Block found = blockAt(block);
    if (found.start == block && found.state == State::Quarantined)
        stopForBlock("is freed a second time", block, found.start, found.size);
    stopForBlock("is not the start of a block in use", block, found.start, found.size);
}

void GuardedRegion::checkSlack(std::uint32_t page) const
{
    const std::byte* const block = start(page);
    const std::size_t size = m_runs[page].size;
    if (!holdsPattern(address(page), block))
        stopForBlock("was written to before its beginning", block, block, size);
    if (!holdsPattern(block + size, block + footprint(size)))
        stopForBlock("was written to past its end", block, block, size);
}

// Keeps a freed run out of use for a while, and gives those back that waited longest.
void GuardedRegion::quarantine(std::uint32_t page)
{
    --m_live;
    while (m_quarantined == quarantineBlocks ||
           (m_quarantined > 0 && m_quarantinedPages + m_runs[page].length > quarantinePages)) {
        Run& oldest = m_runs[m_quarantine[m_oldest]];
        oldest.state = State::Free;
        m_quarantinedPages -= oldest.length;
        m_oldest = (m_oldest + 1) % quarantineBlocks;
        --m_quarantined;
    }
    m_quarantine[(m_oldest + m_quarantined) % quarantineBlocks] = page;
    m_quarantinedPages += m_runs[page].length;
    ++m_quarantined;
}

GuardedRegion::Block GuardedRegion::blockAt(const void* pointer) const
{
    const std::uint32_t wanted = pageOf(pointer);
    std::uint32_t page = 0;
    while (m_runs[page].length != 0 && page + m_runs[page].length <= wanted)
        page += m_runs[page].length;
    const Run& run = m_runs[page];
    if (run.state == State::Free) return {State::Free, nullptr, 0};
    return {run.state, start(page), run.size};
}

} // namespace guardheap
