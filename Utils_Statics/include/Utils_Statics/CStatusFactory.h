#pragma once

#include <Utils_Statics/export.h>

#include <vector>

class CWmiService;
class IStatusItem;

/// The registry of the application's status items. Static members only, no instance is ever made;
/// for the user-interface thread.
class CStatusFactory
{
public:
    /// The registry itself, in the order of registration.
    UTILS_STATICS_API static std::vector<IStatusItem*>& getItems() noexcept;

    /// Registers an item as the last one and then polls the network's state; the first call of the
    /// process connects the network monitoring (CWmiService). The registry owns the item from now
    /// on. Neither null nor an item that is registered already is refused: it would be drawn, and
    /// destroyed, twice.
    UTILS_STATICS_API static void addItem(IStatusItem* item);

    /// Destroys the items in the order of registration, then ends the network monitoring. To be
    /// called once, when the application shuts down: the items' static setters must not be used any
    /// more. Waits for a network event that is being handled; no later one reaches an item.
    UTILS_STATICS_API static void destroyInstance();

private:
    CStatusFactory() = default;
    ~CStatusFactory() = default;

    static std::vector<IStatusItem*> m_statusItems; // defined among the static objects
    static CWmiService* m_wmi;                      // unused: the service has its own instance
};
