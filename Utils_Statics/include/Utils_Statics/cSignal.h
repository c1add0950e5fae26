#pragma once

#include <Utils_Statics/cSigSlotBase.h>
#include <Utils_Statics/cSlot.h>

/// Calls every connected slot, in the order they were connected, and combines their results.
///
/// The slots are walked by index, and their number is read again at every step. A slot that a
/// called method connects is called in the same emission. When a slot at or before the current
/// place is removed, the one that follows the current slot is passed over. An emission from inside
/// an emission is dropped, not queued.
///
/// UsualMethod is the method that most slots are bound to (by cSlot::Bind<method>), or null. It
/// only changes the speed: such slots are called without going through their virtual table.
template <class Result, class P1, class P2, class P3, class P4, class P5,
          auto UsualMethod = nullptr>
class cSignal final : public cSigSlotBase<Result, P1, P2, P3, P4, P5>
{
    using Base = cSigSlotBase<Result, P1, P2, P3, P4, P5>;

public:
    using typename Base::ResultType;

    /// Combines one slot's result with the running one; false ends the emission.
    using Combiner = bool (*)(ResultType* running, ResultType result);

    /// A signal without slots; `name` outlives it.
    explicit cSignal(const char* name = "NoName-Signal") noexcept : Base(Base::kindSignal, name) {}
    ~cSignal() { this->DisconnectAll(); }

    cSignal(const cSignal&) = delete;
    cSignal& operator=(const cSignal&) = delete;

    /// Appends each to the other's peers, unless it is there already. Does nothing for another
    /// signal, for a slot that is not bound, and when memory is short.
    void Connect(Base& slot) noexcept
    {
        if (this->IsOtherKind(slot) && slot.IsValid()) Base::Link(*this, slot);
    }

    /// Null restores the default, which always goes on and leaves the running result as it is.
    void SetCombiner(Combiner combiner) noexcept { m_combiner = combiner; }
    /// Sets the running result that an emission starts with; 0 by default.
    void SetInitialResult(ResultType result) noexcept { m_initialResult = result; }

    bool IsValid() const noexcept override { return true; }

    ResultType Call5(P1 p1, P2 p2, P3 p3, P4 p4, P5 p5) override
    {
        return Emit(p1, p2, p3, p4, p5);
    }
    ResultType Call4(P1 p1, P2 p2, P3 p3, P4 p4) override { return Emit(p1, p2, p3, p4); }
    ResultType Call3(P1 p1, P2 p2, P3 p3) override { return Emit(p1, p2, p3); }
    ResultType Call2(P1 p1, P2 p2) override { return Emit(p1, p2); }
    ResultType Call1(P1 p1) override { return Emit(p1); }
    ResultType Call0() override { return Emit(); }

private:
    template <class... Arguments>
    ResultType Emit(Arguments... arguments)
    {
        if (this->IsBusy()) return this->ResultWhenBusy();
        if (this->IsThrottled()) return this->ResultWhenThrottled();

        this->SetBusy(true);
        ResultType running = m_initialResult;
        for (std::uint32_t i = 0; this->HasPeer(i); ++i)
            if (!Combine(&running, CallSlot(i, arguments...))) break;
        // Deliberately not reached when a method throws: the signal then stays silent.
        this->SetBusy(false);
        return running;
    }

    template <class... Arguments>
    ResultType CallSlot(std::uint32_t index, Arguments... arguments)
    {
        Base& slot = this->GetPeer(index);
        if constexpr (hasUsualMethod<sizeof...(Arguments)>) {
            using Slot = typename MethodTraits<decltype(UsualMethod)>::Slot;
            if (Base::MethodTag(slot) == &Slot::template methodTag<UsualMethod>) [[likely]]
                return static_cast<Slot&>(slot).template InvokeUsual<UsualMethod>(
                    [&] { return this->IsStillPeer(slot, index); }, arguments...);
        }
        return CallVirtually(slot, arguments...);
    }

    static ResultType CallVirtually(Base& slot, P1 p1, P2 p2, P3 p3, P4 p4, P5 p5)
    {
        return slot.Call5(p1, p2, p3, p4, p5);
    }
    static ResultType CallVirtually(Base& slot, P1 p1, P2 p2, P3 p3, P4 p4)
    {
        return slot.Call4(p1, p2, p3, p4);
    }
    static ResultType CallVirtually(Base& slot, P1 p1, P2 p2, P3 p3)
    {
        return slot.Call3(p1, p2, p3);
    }
    static ResultType CallVirtually(Base& slot, P1 p1, P2 p2) { return slot.Call2(p1, p2); }
    static ResultType CallVirtually(Base& slot, P1 p1) { return slot.Call1(p1); }
    static ResultType CallVirtually(Base& slot) { return slot.Call0(); }

    bool Combine(ResultType* running, ResultType result) const
    {
        if (!m_combiner) [[likely]]
            return true;
        return m_combiner(running, result);
    }

    template <class Method>
    struct MethodTraits
    {
        static constexpr std::size_t argumentCount = 6; // not a method
    };
    template <class Receiver, class... Arguments>
    struct MethodTraits<Result (Receiver::*)(Arguments...)>
    {
        static constexpr std::size_t argumentCount = sizeof...(Arguments);
        using Slot = cSlot<Receiver, Result, P1, P2, P3, P4, P5>;
    };

    template <std::size_t argumentCount>
    static constexpr bool hasUsualMethod =
        MethodTraits<decltype(UsualMethod)>::argumentCount == argumentCount;

    ResultType m_initialResult = {};
    Combiner m_combiner = nullptr; // null: the default, which always goes on
};
