#pragma once

#include <qor_utils/StoreFolders.h>

#include <string>

namespace test_support {

// Sets the folder of a store while it lives; the application's own tree counts afterwards.
class StoreFolder
{
public:
    StoreFolder(int store, const std::wstring& folder) : m_store(store)
    {
        qor_utils::SetStoreFolder(store, folder);
    }
    ~StoreFolder() { qor_utils::SetStoreFolder(m_store, L""); }
    StoreFolder(const StoreFolder&) = delete;
    StoreFolder& operator=(const StoreFolder&) = delete;

private:
    int m_store;
};

} // namespace test_support
