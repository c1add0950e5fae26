#pragma once

#include <Utils_Statics/export.h>

#include <vector>

class CWmiService;
class IStatusItem;

/// The registry of the application's status items. It has static members only; no instance is ever
/// made. User-interface thread only.
class CStatusFactory
{
public:
    /// The registry itself, in the order of registration.
    UTILS_STATICS_API static std::vector<IStatusItem*>& getItems() noexcept;

    /// Registers an item as the last one and then polls the network's state. The first call of the
    /// process connects the network monitoring (CWmiService). The registry owns the item from then
    /// on. Nothing is refused: pass neither null nor an item twice, which would be drawn, and
    /// destroyed, twice.
    UTILS_STATICS_API static void addItem(IStatusItem* item);

    /// Destroys the items in the order of registration, then ends the network monitoring. Call it
    /// once, when the application shuts down; the items' static setters must not be used
    /// afterwards. Waits for a network event that is being handled; no later one reaches an item.
    UTILS_STATICS_API static void destroyInstance();

private:
    CStatusFactory() = default;
    ~CStatusFactory() = default;

    static std::vector<IStatusItem*> m_statusItems; // defined among the static objects
    static CWmiService* m_wmi;                      // unused: the service has its own instance
};
