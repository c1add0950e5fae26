#pragma once

#include <Utils_Statics/IPrecisionControl.h>
#include <Utils_Statics/IPrecisionHandler.h>
#include <Utils_Statics/export.h>

#include <set>

/// Tells the controls that offer fine pointer control which handler wants it. For the
/// user-interface thread only. Controls are kept by pointer from Register to Unregister and never
/// owned; unregister one before destroying it.
class PrecisionMouse
{
public:
    /// Null, or a control that is already registered, changes nothing.
    UTILS_STATICS_API static void Register(IPrecisionControl* control);

    /// The control is told nothing any more. One that is not registered changes nothing.
    UTILS_STATICS_API static void Unregister(IPrecisionControl* control);

    /// Calls SetHandler(handler) on every registered control, in ascending pointer order. A control
    /// may register and unregister controls meanwhile, itself included: those that are registered
    /// when their turn comes are told. When a control calls UpdateHandler meanwhile, all are told
    /// of the newer handler, and then the rest of the older one.
    UTILS_STATICS_API static void UpdateHandler(IPrecisionHandler* handler);

    /// Tells every control that nobody wants fine control.
    UTILS_STATICS_API static void ClearPosition();

private:
    static std::set<IPrecisionControl*> m_controllers; // defined among the static objects
};
