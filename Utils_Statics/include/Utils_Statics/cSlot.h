#pragma once

#include <Utils_Statics/cSigSlotBase.h>

#include <memory>
#include <new>

/// Calls a method of one object when a signal that it is connected to is emitted. A new slot is
/// unbound. A slot without object or method, or bound when memory is short, is connected to nothing
/// and calls nothing. The object must live as long as the slot is bound to it; usually the slot is
/// a member of the object.
template <class Receiver, class Result, class P1, class P2, class P3, class P4, class P5>
class cSlot final : public cSigSlotBase<Result, P1, P2, P3, P4, P5>
{
    using Base = cSigSlotBase<Result, P1, P2, P3, P4, P5>;

public:
    using typename Base::ResultType;

    /// A method of the receiver that takes the first 0 to 5 arguments.
    using Method0 = Result (Receiver::*)();
    using Method1 = Result (Receiver::*)(P1);
    using Method2 = Result (Receiver::*)(P1, P2);
    using Method3 = Result (Receiver::*)(P1, P2, P3);
    using Method4 = Result (Receiver::*)(P1, P2, P3, P4);
    using Method5 = Result (Receiver::*)(P1, P2, P3, P4, P5);

    cSlot() noexcept : Base(Base::kindSlot, "Uninitialized-Slot") {}

    /// Copies everything but the binding, so that a slot calls only the object it was bound to.
    /// Deliberately, no signal learns of the copy: a signal calls only slots that were connected to
    /// it.
    cSlot(const cSlot& other) noexcept : cSlot() { this->CopyFields(other); }
    cSlot& operator=(const cSlot& other) noexcept
    {
        if (this != &other) this->CopyFields(other);
        return *this;
    }

    ~cSlot() { this->DisconnectAll(); }

    /// Binds to a method that is known at compile time; the slots of a signal's usual method are
    /// called faster.
    template <auto method>
    void Bind(Receiver* object) noexcept
    {
        Bind(object, method);
        if (IsValid()) this->SetMethodTag(&methodTag<method>);
    }

    /// Binds to a method that takes the first 0 to 5 arguments.
    void Bind(Receiver* object, Method0 method) noexcept { BindMethod<0>(object, method); }
    void Bind(Receiver* object, Method1 method) noexcept { BindMethod<1>(object, method); }
    void Bind(Receiver* object, Method2 method) noexcept { BindMethod<2>(object, method); }
    void Bind(Receiver* object, Method3 method) noexcept { BindMethod<3>(object, method); }
    void Bind(Receiver* object, Method4 method) noexcept { BindMethod<4>(object, method); }
    void Bind(Receiver* object, Method5 method) noexcept { BindMethod<5>(object, method); }

    bool IsValid() const noexcept override { return m_argumentCount != notBound; }

    ResultType Call5(P1 p1, P2 p2, P3 p3, P4 p4, P5 p5) override
    {
        return Invoke(p1, p2, p3, p4, p5);
    }
    ResultType Call4(P1 p1, P2 p2, P3 p3, P4 p4) override { return Invoke(p1, p2, p3, p4); }
    ResultType Call3(P1 p1, P2 p2, P3 p3) override { return Invoke(p1, p2, p3); }
    ResultType Call2(P1 p1, P2 p2) override { return Invoke(p1, p2); }
    ResultType Call1(P1 p1) override { return Invoke(p1); }
    ResultType Call0() override { return Invoke(); }

private:
    template <class, class, class, class, class, class, auto>
    friend class cSignal;

    // m_argumentCount tells which method is set.
    union Methods {
        Method0 take0 = nullptr;
        Method1 take1;
        Method2 take2;
        Method3 take3;
        Method4 take4;
        Method5 take5;
    };

    template <std::size_t argumentCount>
    static constexpr auto Place() noexcept
    {
        if constexpr (argumentCount == 0)
            return &Methods::take0;
        else if constexpr (argumentCount == 1)
            return &Methods::take1;
        else if constexpr (argumentCount == 2)
            return &Methods::take2;
        else if constexpr (argumentCount == 3)
            return &Methods::take3;
        else if constexpr (argumentCount == 4)
            return &Methods::take4;
        else
            return &Methods::take5;
    }

    template <std::size_t argumentCount, class Method>
    void BindMethod(Receiver* object, Method method) noexcept
    {
        m_object = object;
        m_methods.*Place<argumentCount>() = method;
        if (!m_life) m_life = MakeLife();
        m_argumentCount = object && method && m_life ? argumentCount : notBound;
        this->SetMethodTag(nullptr);
        if (IsValid()) this->SetName("NoName-Slot");
    }

    // Null when memory is short.
    static std::shared_ptr<char> MakeLife() noexcept
    try {
        return std::make_shared<char>();
    } catch (const std::bad_alloc&) {
        return nullptr;
    }

    template <class... Arguments>
    ResultType Invoke(Arguments... arguments)
    {
        const std::weak_ptr<char> life = m_life;
        const bool wasBound = m_life != nullptr; // otherwise no method can have destroyed the slot
        return Guarded([&] { return !wasBound || !life.expired(); },
                       [&] {
                           if (m_argumentCount != sizeof...(Arguments)) return ResultType{};
                           return CallMethod(m_methods.*Place<sizeof...(Arguments)>(),
                                             arguments...);
                       });
    }

    // A call from a signal to a slot that has the method's tag. The signal knows from its peers
    // whether this slot is still alive.
    template <auto method, class IsAlive, class... Arguments>
    ResultType InvokeUsual(IsAlive isAlive, Arguments... arguments)
    {
        return Guarded(isAlive, [&] { return CallMethod(method, arguments...); });
    }

    // `isAlive` is asked after the method has run, because the method may destroy this slot.
    template <class IsAlive, class Call>
    ResultType Guarded(IsAlive isAlive, Call call)
    {
        if (this->IsBusy()) [[unlikely]]
            return this->ResultWhenBusy();
        if (this->IsThrottled()) [[unlikely]]
            return this->ResultWhenThrottled();

        this->SetBusy(true);
        const ResultType result = call();
        if (isAlive()) [[likely]]
            this->SetBusy(false); // not reached when the method throws: busy for good, deliberately
        return result;
    }

    template <class Method, class... Arguments>
    ResultType CallMethod(Method method, Arguments... arguments)
    {
        if constexpr (std::is_void_v<Result>) {
            (m_object->*method)(arguments...);
            return {};
        } else
            return (m_object->*method)(arguments...);
    }

    static constexpr std::size_t notBound = static_cast<std::size_t>(-1);

    template <auto method>
    static constexpr char methodTag = 0; // its address stands for this type of slot and the method

    Receiver* m_object = nullptr;
    Methods m_methods;
    std::size_t m_argumentCount = notBound;
    std::shared_ptr<char> m_life; // set when the slot is bound, ends with the slot
};
