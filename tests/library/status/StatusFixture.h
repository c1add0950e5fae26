#pragma once

#include <base/GdiPlusSession.h>
#include <gtest/gtest.h>
#include <qor_utils/StoreNumbers.h>
#include <test_support/StoreFolder.h>
#include <test_support/TemporaryFolder.h>
#include <test_support/TemporaryRegistryKey.h>
#include <Utils_Statics/IStatusItem.h>

#include <afxwin.h>

#include <atomic>
#include <memory>
#include <string>

// The program's application object.
inline CWinApp theApplication(L"status");

inline constexpr Gdiplus::ARGB background = 0xFF204060;

// A row to draw into, and its pixels.
class Row
{
public:
    explicit Row(int width = 200, int height = 60)
        : m_bitmap(width, height, PixelFormat32bppARGB), m_graphics(&m_bitmap), m_width(width),
          m_height(height)
    {
        Clear();
    }

    void Clear() { m_graphics.Clear(Gdiplus::Color(background)); }
    Gdiplus::Graphics& Graphics() { return m_graphics; }
    CRect Whole() const { return CRect(0, 0, m_width, m_height); }
    Gdiplus::ARGB At(int x, int y)
    {
        Gdiplus::Color colour;
        m_bitmap.GetPixel(x, y, &colour);
        return colour.GetValue();
    }
    // The smallest rectangle that holds everything drawn, or everything of one kind; empty when
    // there is nothing.
    CRect Drawn()
    {
        return Where([](Gdiplus::ARGB pixel) { return pixel != background; });
    }
    template <class Condition>
    CRect Where(const Condition& condition)
    {
        return WhereIn(Whole(), condition);
    }
    // The rectangle of the pixels in a part of the row for which the condition holds.
    template <class Condition>
    CRect WhereIn(const CRect& part, const Condition& condition)
    {
        CRect found(m_width, m_height, 0, 0);
        for (int y = part.top; y < part.bottom; ++y)
            for (int x = part.left; x < part.right; ++x)
                if (condition(At(x, y)))
                    found = CRect(std::min<int>(found.left, x), std::min<int>(found.top, y),
                                  std::max<int>(found.right, x + 1),
                                  std::max<int>(found.bottom, y + 1));
        return found.right == 0 ? CRect() : found;
    }

private:
    Gdiplus::Bitmap m_bitmap;
    Gdiplus::Graphics m_graphics;
    int m_width, m_height;
};

inline void PrintTo(const CRect& rect, std::ostream* out)
{
    *out << '(' << rect.left << ", " << rect.top << ", " << rect.right << ", " << rect.bottom
         << ')';
}

// Images in a folder of their own, settings below a key of their own, and a count of the requested
// repaints.
class StatusTest : public testing::Test
{
protected:
    StatusTest()
    {
        repaints = 0;
        CreateDirectoryW((m_images / L"status").c_str(), nullptr);
        theApplication.SetRegistryKey(m_settings.Path().c_str() +
                                      std::wstring(L"Software\\").size());
        IStatusItem::SetStatusCallback([] { ++repaints; });
    }
    ~StatusTest() override { IStatusItem::SetStatusCallback(nullptr); }

    // A file in the image folder's "status\".
    std::wstring IconFile(const std::wstring& name) const
    {
        return m_images / (L"status\\" + name);
    }
    // Makes the icon a picture of one colour.
    void WriteIcon(const std::wstring& name, int width, int height, Gdiplus::ARGB colour) const
    {
        // The encoder of PNG files.
        constexpr CLSID png = {
            0x557CF406, 0x1A04, 0x11D3, {0x9A, 0x73, 0x00, 0x00, 0xF8, 0x1E, 0xF3, 0x2E}};
        Gdiplus::Bitmap picture(width, height, PixelFormat32bppARGB);
        Gdiplus::Graphics(&picture).Clear(Gdiplus::Color(colour));
        ASSERT_EQ(picture.Save(IconFile(name).c_str(), &png, nullptr), Gdiplus::Ok);
    }
    // Sets a number in "Settings\Status", or a text in "Settings".
    void Set(const wchar_t* name, DWORD number) const
    {
        m_settings.SetNumber(L"status\\Settings\\Status", name, number);
    }
    void SetText(const wchar_t* name, const wchar_t* text) const
    {
        m_settings.SetText(L"status\\Settings", name, text);
    }

    // The width that the drawing of an item returns.
    static int Draw(const IStatusItem* item, Row& row)
    {
        return item->drawIcon(row.Whole(), row.Graphics());
    }

    inline static std::atomic<int> repaints = 0;

private:
    base::GdiPlusSession m_session;
    test_support::TemporaryFolder m_images;
    test_support::StoreFolder m_store{qor_utils::imagesStore, m_images.Path()};
    test_support::TemporaryRegistryKey m_settings;
};
