#include "CineStoreAviFixture.h"

namespace {

CWinApp application(L"cine_store_avi_test");

std::wstring Key()
{
    return L"CineStoreAviTest" + std::to_wstring(GetCurrentProcessId());
}

class Settings : public testing::Environment
{
public:
    void SetUp() override { application.SetRegistryKey(Key().c_str()); }
    void TearDown() override { RegDeleteTreeW(HKEY_CURRENT_USER, (L"Software\\" + Key()).c_str()); }
};

[[maybe_unused]] const auto* const settings = testing::AddGlobalTestEnvironment(new Settings);

constexpr wchar_t section[] = L"Settings\\Capture";

} // namespace

namespace capture_settings {

void Set(const wchar_t* entry, const wchar_t* value)
{
    application.WriteProfileString(section, entry, value);
}

void Set(const wchar_t* entry, int value)
{
    application.WriteProfileInt(section, entry, value);
}

void Clear()
{
    application.WriteProfileString(section, nullptr, nullptr);
}

} // namespace capture_settings

const std::vector<CRect> layout{CRect(2, 3, 32, 33), CRect(34, 1, 62, 31), CRect(0, 34, 64, 46),
                                CRect(7, 2, 21, 6),  CRect(4, 1, 30, 11),  CRect(40, 2, 60, 12)};
