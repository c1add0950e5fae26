#include "Utils_Statics/IProAgent.h"

namespace {
constexpr INT_PTR blockSize = 10;
}

constinit IProAgent* IProAgent::m_agent = nullptr;

IProAgent::IProAgent() : CStringList(blockSize) {}

IProAgent::~IProAgent()
{
    m_agent = nullptr;
}

IProAgent* IProAgent::GetAgent() noexcept
{
    return m_agent;
}
