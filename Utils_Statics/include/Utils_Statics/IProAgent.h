#pragma once

#include <Utils_Statics/export.h>

#include <afxcoll.h>

/// Base of the application's single agent object, a list of texts that is reachable from anywhere.
/// The derived agent stores itself in m_agent; the library calls none of its operations.
/// User-interface thread only.
class UTILS_STATICS_API IProAgent : public CStringList
{
public:
    /// The agent, which the application owns; null when there is none.
    static IProAgent* GetAgent() noexcept;

protected:
    IProAgent();

    /// Clears m_agent, whichever object it names.
    ~IProAgent() override;

    /// Does the agent's work, which the application defines.
    virtual void Execute() = 0;

    /// The agent of the process, which the derived class sets; null when there is none.
    static IProAgent* m_agent;
};
