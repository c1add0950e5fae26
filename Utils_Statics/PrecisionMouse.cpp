#include "Utils_Statics/PrecisionMouse.h"

#include <new>

void PrecisionMouse::Register(IPrecisionControl* control)
try {
    if (control) m_controllers.insert(control);
} catch (const std::bad_alloc&) { // the control is then not registered
}

void PrecisionMouse::Unregister(IPrecisionControl* control)
{
    m_controllers.erase(control);
}

void PrecisionMouse::UpdateHandler(IPrecisionHandler* handler)
{
    auto next = m_controllers.begin();
    while (next != m_controllers.end()) {
        IPrecisionControl* const control = *next;
        control->SetHandler(handler);
        // The next control is looked up, because this one may have changed the set or left it.
        next = m_controllers.upper_bound(control);
    }
}

void PrecisionMouse::ClearPosition()
{
    UpdateHandler(nullptr);
}
