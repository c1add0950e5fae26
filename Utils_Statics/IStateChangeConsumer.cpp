#include "Utils_Statics/IStateChangeConsumer.h"

IStateChangeConsumer::IStateChangeConsumer()
{
    m_slot.Bind<&IStateChangeConsumer::OnStateChange>(this); // goes through the virtual table
    m_onStateChangeSignal.Connect(m_slot);
}

IStateChangeConsumer::IStateChangeConsumer(const IStateChangeConsumer& other) : m_slot(other.m_slot)
{
    m_slot.Bind<&IStateChangeConsumer::OnStateChange>(this);
}

IStateChangeConsumer& IStateChangeConsumer::operator=(IStateChangeConsumer& other) = default;

IStateChangeConsumer::~IStateChangeConsumer() = default;

void IStateChangeConsumer::StateChangeSignal(StateChangeType type, unsigned int param1, long param2)
{
    m_onStateChangeSignal.Call3(type, param1, param2);
}
