#pragma once

#include <sys/timeb.h>
#include <Utils_Statics/cPointerArray.h>

#include <cstdint>
#include <type_traits>

/// The common part of signals and slots. A signal calls its slots in the order they were connected;
/// either side may be destroyed first. A slot's method takes the first ones of the arguments P1 to
/// P5; the places that a signature does not need are cPreProcessor::unusable pointers.
///
/// Every object belongs to one thread, in the application the user-interface thread; nothing here
/// takes a lock.
template <class Result, class P1, class P2, class P3, class P4, class P5>
class cSigSlotBase
{
public:
    /// The result of an invocation: a 32-bit value, 0 when the signature has no result.
    using ResultType = std::conditional_t<std::is_void_v<Result>, std::int32_t, Result>;
    static_assert(sizeof(ResultType) == 4, "results are 32-bit values");

    cSigSlotBase(const cSigSlotBase&) = delete;

    /// False for a slot without object or method, which is never connected.
    virtual bool IsValid() const noexcept = 0;

    /// Each number of arguments has its own operation. These throw nothing but the exceptions of
    /// the called methods. After one the busy flag deliberately stays set, so that the object is
    /// never invoked again.
    virtual ResultType Call5(P1 p1, P2 p2, P3 p3, P4 p4, P5 p5) = 0;
    virtual ResultType Call4(P1 p1, P2 p2, P3 p3, P4 p4) = 0;
    virtual ResultType Call3(P1 p1, P2 p2, P3 p3) = 0;
    virtual ResultType Call2(P1 p1, P2 p2) = 0;
    virtual ResultType Call1(P1 p1) = 0;
    virtual ResultType Call0() = 0;

    /// The name is for diagnostics only; the text outlives this object.
    const char* GetName() const noexcept { return m_name; }
    void SetName(const char* name) noexcept { m_name = name; }

    /// Sets the least time between two invocations in milliseconds; 0 means no limit. An attempt
    /// that comes sooner after the previous one, suppressed or not, is suppressed and gives
    /// `result`.
    void SetMinimumInterval(std::uint32_t milliseconds, ResultType result = {}) noexcept
    {
        m_minimumInterval = milliseconds;
        m_resultWhenThrottled = result;
    }
    /// The least time between two invocations in milliseconds.
    std::uint32_t GetMinimumInterval() const noexcept { return m_minimumInterval; }

    /// Sets the result of an invocation while another one of this object is under way; 0 by
    /// default.
    void SetResultWhenBusy(ResultType result) noexcept { m_resultWhenBusy = result; }
    /// True during an invocation, and for good after one that threw.
    bool IsBusy() const noexcept { return m_busy != 0; }

    /// The number of slots of a signal, or of signals of a slot.
    std::uint32_t GetPeerCount() const noexcept { return m_peers.Size(); }

    /// Throws std::out_of_range for an index outside of the array.
    cSigSlotBase& GetPeer(std::uint32_t index) const { return *m_peers.At(index); }

protected:
    /// The two kinds of objects that can be connected.
    enum Kind : std::uint32_t
    {
        kindSlot = 0,  ///< a cSlot
        kindSignal = 1 ///< a cSignal
    };

    /// An object without peers; `name` outlives it.
    cSigSlotBase(Kind kind, const char* name) noexcept : m_kind(kind), m_name(name) {}
    ~cSigSlotBase() = default;

    /// True for an object of the other kind; those of one kind are never connected to each other.
    bool IsOtherKind(const cSigSlotBase& other) const noexcept { return m_kind != other.m_kind; }

    /// Appends each to the other's peers, unless it is there already. When there is no memory for
    /// both, neither comes to know the other.
    static void Link(cSigSlotBase& signal, cSigSlotBase& slot) noexcept
    {
        if (slot.AddPeer(signal) && !signal.AddPeer(slot)) slot.m_peers.Remove(&signal);
    }

    /// Takes over every field but the kind. The peers' own lists deliberately stay as they are, so
    /// that only signals that knew this object before call it.
    void CopyFields(const cSigSlotBase& other) noexcept
    {
        m_name = other.m_name;
        m_peers = other.m_peers;
        m_minimumInterval = other.m_minimumInterval;
        m_resultWhenThrottled = other.m_resultWhenThrottled;
        m_lastAttempt = other.m_lastAttempt;
        m_busy = other.m_busy;
        m_resultWhenBusy = other.m_resultWhenBusy;
    }

    /// Removes this object from the list of every peer that knows it, and frees its own list. What
    /// follows it in a peer's list moves one place forward. So an emission under way that has
    /// reached or passed this object deliberately passes over the next one.
    void DisconnectAll() noexcept
    {
        for (std::uint32_t i = 0; i < m_peers.Size(); ++i)
            m_peers.At(i)->m_peers.Remove(this);
        m_peers.Free();
    }

    /// True when this attempt comes too early. Every attempt deliberately restarts the interval, so
    /// a steady stream of early attempts stays suppressed.
    bool IsThrottled()
    {
        if (m_minimumInterval == 0) [[likely]]
            return false;
        const double now = Now();
        const double last = m_lastAttempt;
        m_lastAttempt = now;
        return now < last + m_minimumInterval;
    }

    /// True when `index` is the place of a peer.
    bool HasPeer(std::uint32_t index) const noexcept { return index < m_peers.Size(); }

    /// True when `peer`, which was at `index`, is still among the peers, hence not destroyed.
    bool IsStillPeer(const cSigSlotBase& peer, std::uint32_t index) const noexcept
    {
        return m_peers.Contains(&peer, index);
    }

    /// Sets the address that stands for a slot's type and the method it is bound to; null by
    /// default.
    void SetMethodTag(const char* tag) noexcept { m_methodTag = tag; }
    /// The tag that SetMethodTag stored last.
    static const char* MethodTag(const cSigSlotBase& object) noexcept { return object.m_methodTag; }

    /// The results of suppressed invocations, and the flag of one that is under way.
    ResultType ResultWhenThrottled() const noexcept { return m_resultWhenThrottled; }
    ResultType ResultWhenBusy() const noexcept { return m_resultWhenBusy; }
    void SetBusy(bool busy) noexcept { m_busy = busy; }

private:
    bool AddPeer(cSigSlotBase& peer) noexcept
    {
        return m_peers.Contains(&peer) || m_peers.Append(&peer);
    }

    // Milliseconds since 1970-01-01 00:00 UTC.
    static double Now() noexcept
    {
        struct __timeb64 time;
        _ftime64(&time);
        return static_cast<double>(time.time) * 1000.0 + time.millitm;
    }

    Kind m_kind;
    const char* m_name;
    // A signal's slots in the order they were connected, or a slot's signals.
    cPointerArray<cSigSlotBase> m_peers;
    std::uint32_t m_minimumInterval = 0;
    ResultType m_resultWhenThrottled = {};
    double m_lastAttempt = 0; // milliseconds since 1970
    unsigned char m_busy = 0;
    ResultType m_resultWhenBusy = {};
    const char* m_methodTag = nullptr;
};
