#include "Utils_Statics/CStatusFactory.h"

#include <Utils_Statics/CWmiService.h>
#include <Utils_Statics/IStatusItem.h>

#include <new>

constinit CWmiService* CStatusFactory::m_wmi = nullptr;

std::vector<IStatusItem*>& CStatusFactory::getItems() noexcept
{
    return m_statusItems;
}

void CStatusFactory::addItem(IStatusItem* item)
{
    try {
        m_statusItems.push_back(item);
    } catch (const std::bad_alloc&) { // the item is then not in the row
    }
    CWmiService::getInstance()->Update();
}

void CStatusFactory::destroyInstance()
{
    // Otherwise events would still come in while the items are destroyed.
    CWmiService::StopEvents();
    for (IStatusItem* const item : m_statusItems)
        delete item;
    m_statusItems.clear(); // keeps its storage
    CWmiService::destroyInstance();
}
