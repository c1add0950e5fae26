#include <Utils_Statics/PrecisionMouse.h>

namespace {

// Counts the broadcasts, so that one can tell that a newer one overtook it.
constinit unsigned int s_broadcast = 0;

} // namespace

void PrecisionMouse::Register(IPrecisionControl* control)
{
    if (control) m_controllers.insert(control);
}

void PrecisionMouse::Unregister(IPrecisionControl* control)
{
    m_controllers.erase(control);
}

void PrecisionMouse::UpdateHandler(IPrecisionHandler* handler)
{
    const unsigned int broadcast = ++s_broadcast;
    auto next = m_controllers.begin();
    while (next != m_controllers.end() && broadcast == s_broadcast) {
        IPrecisionControl* const control = *next;
        control->SetHandler(handler);
        next = m_controllers.upper_bound(
            control); // it may have changed the set, or not be in it any more
    }
}

void PrecisionMouse::ClearPosition()
{
    UpdateHandler(nullptr);
}
