#pragma once

#include <Utils_Statics/cSigSlotBase.h>

/// Calls a method of one object when a signal it is connected to is emitted. Unbound at first; a slot without object or
/// method is connected to nothing and calls nothing. The object must live as long as the slot is bound to it; usually
/// the slot is a member of it.
template <class Receiver, class Result, class P1, class P2, class P3, class P4, class P5>
class cSlot final : public cSigSlotBase<Result, P1, P2, P3, P4, P5>
{
    using Base = cSigSlotBase<Result, P1, P2, P3, P4, P5>;

public:
    using typename Base::ResultType;

    using Method0 = Result (Receiver::*)();
    using Method1 = Result (Receiver::*)(P1);
    using Method2 = Result (Receiver::*)(P1, P2);
    using Method3 = Result (Receiver::*)(P1, P2, P3);
    using Method4 = Result (Receiver::*)(P1, P2, P3, P4);
    using Method5 = Result (Receiver::*)(P1, P2, P3, P4, P5);

    cSlot() noexcept : Base(Base::kindSlot, "Uninitialized-Slot") {}

    /// Copies everything but the binding: a slot calls the object it was bound to, never another one's. No signal
    /// learns of the copy: it is called by a signal only if it was connected to it itself. Deliberate.
    cSlot(const cSlot& other) : cSlot() { this->CopyFields(other); }
    cSlot& operator=(const cSlot& other)
    {
        if (this != &other) this->CopyFields(other);
        return *this;
    }

    ~cSlot()
    {
        this->DisconnectAll();
        if (m_destroyed) *m_destroyed = true;
    }

    /// Binds to a method that takes the first 0 to 5 arguments.
    void Bind(Receiver* object, Method0 method) noexcept { Bind(object, &Methods::take0, method, 0); }
    void Bind(Receiver* object, Method1 method) noexcept { Bind(object, &Methods::take1, method, 1); }
    void Bind(Receiver* object, Method2 method) noexcept { Bind(object, &Methods::take2, method, 2); }
    void Bind(Receiver* object, Method3 method) noexcept { Bind(object, &Methods::take3, method, 3); }
    void Bind(Receiver* object, Method4 method) noexcept { Bind(object, &Methods::take4, method, 4); }
    void Bind(Receiver* object, Method5 method) noexcept { Bind(object, &Methods::take5, method, 5); }

    bool IsValid() const noexcept override { return m_object && m_hasMethod; }

    ResultType Call5(P1 p1, P2 p2, P3 p3, P4 p4, P5 p5) override { return Invoke(&Methods::take5, p1, p2, p3, p4, p5); }
    ResultType Call4(P1 p1, P2 p2, P3 p3, P4 p4) override { return Invoke(&Methods::take4, p1, p2, p3, p4); }
    ResultType Call3(P1 p1, P2 p2, P3 p3) override { return Invoke(&Methods::take3, p1, p2, p3); }
    ResultType Call2(P1 p1, P2 p2) override { return Invoke(&Methods::take2, p1, p2); }
    ResultType Call1(P1 p1) override { return Invoke(&Methods::take1, p1); }
    ResultType Call0() override { return Invoke(&Methods::take0); }

private:
    // The one that m_argumentCount tells.
    union Methods {
        Method0 take0 = nullptr;
        Method1 take1;
        Method2 take2;
        Method3 take3;
        Method4 take4;
        Method5 take5;
    };

    template <class Method>
    void Bind(Receiver* object, Method Methods::*place, Method method, std::uint32_t argumentCount) noexcept
    {
        m_object = object;
        m_methods.*place = method;
        m_hasMethod = method != nullptr;
        m_argumentCount = argumentCount;
        if (IsValid()) this->SetName("NoName-Slot");
    }

    template <class Method, class... Arguments>
    ResultType Invoke(Method Methods::*place, Arguments... arguments)
    {
        if (this->IsBusy()) return this->ResultWhenBusy();
        if (this->IsThrottled()) return this->ResultWhenThrottled();
        if (!IsValid() || m_argumentCount != sizeof...(Arguments)) return {};

        this->SetBusy(true);
        InvocationWatch watch(*this);
        const ResultType result = CallMethod(m_methods.*place, arguments...);
        // The method may have destroyed this slot. What it throws leaves the slot busy for good, deliberately.
        if (!watch.destroyed) this->SetBusy(false);
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

    // Learns of the slot's destruction while its method runs.
    struct InvocationWatch
    {
        explicit InvocationWatch(cSlot& watched) noexcept : slot(watched) { slot.m_destroyed = &destroyed; }
        ~InvocationWatch()
        {
            if (!destroyed) slot.m_destroyed = nullptr;
        }
        cSlot& slot;
        bool destroyed = false;
    };

    Receiver* m_object = nullptr;
    Methods m_methods;
    bool m_hasMethod = false;
    std::uint32_t m_argumentCount = 0;
    bool* m_destroyed = nullptr; // set by the destructor while the method runs
};
