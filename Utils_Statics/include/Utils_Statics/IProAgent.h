#pragma once

#include <Utils_Statics/export.h>

#include <afxcoll.h>

/// Base of the application's single agent object, which is a list of texts, reachable from
/// anywhere. The derived agent stores itself into m_agent; the library calls nothing of it.
/// User-interface thread only.
class UTILS_STATICS_API IProAgent : public CStringList
{
public:
    /// The agent; null when there is none. It stays the application's.
    static IProAgent* GetAgent() noexcept;

protected:
    IProAgent();

    /// Leaves the application without an agent, whichever object m_agent named.
    ~IProAgent() override;

    /// The agent's work, the application's to define.
    virtual void Execute() = 0;

    static IProAgent* m_agent;
};
