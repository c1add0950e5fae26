#include "StatusFixture.h"

#include <qor_utils/StoreFolders.h>
#include <qor_utils/StoreNumbers.h>

CWinApp theApplication(L"status");

StatusTest::StatusTest()
{
    repaints = 0;
    qor_utils::SetStoreFolder(qor_utils::imagesStore, m_images.Path());
    CreateDirectoryW((m_images / L"status").c_str(), nullptr);
    theApplication.SetRegistryKey(m_settings.Path().c_str() + std::wstring(L"Software\\").size());
    IStatusItem::SetStatusCallback([] { ++repaints; });
}

StatusTest::~StatusTest()
{
    IStatusItem::SetStatusCallback(nullptr);
    qor_utils::SetStoreFolder(qor_utils::imagesStore, L"");
}

std::wstring StatusTest::IconFile(const std::wstring& name) const
{
    return m_images / (L"status\\" + name);
}

void StatusTest::WriteIcon(const std::wstring& name, int width, int height,
                           Gdiplus::ARGB colour) const
{
    // The encoder of PNG files.
    constexpr CLSID png = {
        0x557CF406, 0x1A04, 0x11D3, {0x9A, 0x73, 0x00, 0x00, 0xF8, 0x1E, 0xF3, 0x2E}};
    Gdiplus::Bitmap picture(width, height, PixelFormat32bppARGB);
    Gdiplus::Graphics(&picture).Clear(Gdiplus::Color(colour));
    ASSERT_EQ(picture.Save(IconFile(name).c_str(), &png, nullptr), Gdiplus::Ok);
}

void StatusTest::Set(const wchar_t* name, DWORD number) const
{
    m_settings.SetNumber(L"status\\Settings\\Status", name, number);
}

void StatusTest::SetText(const wchar_t* name, const wchar_t* text) const
{
    m_settings.SetText(L"status\\Settings", name, text);
}
