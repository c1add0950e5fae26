#include "PlainLoop.h"

void CallAll(const Consumers& consumers, StateChangeType type, unsigned int param1, long param2)
{
    for (const auto& consumer : consumers)
        consumer->OnStateChange(type, param1, param2);
}
