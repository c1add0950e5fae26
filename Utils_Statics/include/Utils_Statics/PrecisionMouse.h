#pragma once

#include <Utils_Statics/export.h>
#include <Utils_Statics/IPrecisionControl.h>
#include <Utils_Statics/IPrecisionHandler.h>

#include <set>

/// Tells the controls that offer fine pointer control which handler wants it. User-interface thread
/// only. Controls are kept by pointer from Register to Unregister and not owned; unregister a
/// control before destroying it.
class PrecisionMouse
{
public:
    /// Does nothing for null or a control that is already registered.
    UTILS_STATICS_API static void Register(IPrecisionControl* control);

    /// Removes the control, which is told nothing any more. Does nothing for a control that is not
    /// registered.
    UTILS_STATICS_API static void Unregister(IPrecisionControl* control);

    /// Calls SetHandler(handler) on every registered control, in ascending pointer order. A control
    /// may register and unregister controls meanwhile, itself included; a control is told if it is
    /// registered when its turn comes. When a control calls UpdateHandler meanwhile, all are told
    /// of the newer handler, and then the remaining ones of the older handler.
    UTILS_STATICS_API static void UpdateHandler(IPrecisionHandler* handler);

    /// Tells every control that nobody wants fine control.
    UTILS_STATICS_API static void ClearPosition();

private:
    static std::set<IPrecisionControl*> m_controllers; // defined among the static objects
};
