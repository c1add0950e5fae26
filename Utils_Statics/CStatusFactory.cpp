#include <Utils_Statics/CStatusFactory.h>

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
    } catch (const std::bad_alloc&) { // it is not in the row then
    }
    CWmiService::getInstance()->Update();
}

void CStatusFactory::destroyInstance()
{
    // Events would still come in while the items go.
    CWmiService::StopEvents();
    for (IStatusItem* const item : m_statusItems)
        delete item;
    m_statusItems.clear(); // keeps its storage
    CWmiService::destroyInstance();
}
