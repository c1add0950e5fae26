#pragma once

#include <base/GdiPlusSession.h>
#include <gtest/gtest.h>
#include <test_support/TemporaryFolder.h>
#include <test_support/TemporaryRegistryKey.h>
#include <Utils_Statics/IStatusItem.h>

#include <afxwin.h>

#include <atomic>
#include <memory>
#include <string>

// The program's application object; its name is "status".
extern CWinApp theApplication;

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
    StatusTest();
    ~StatusTest() override;

    // A file in the image folder's "status\".
    std::wstring IconFile(const std::wstring& name) const;
    // Makes the icon a picture of one colour.
    void WriteIcon(const std::wstring& name, int width, int height, Gdiplus::ARGB colour) const;
    // Sets a number in "Settings\Status", or a text in "Settings".
    void Set(const wchar_t* name, DWORD number) const;
    void SetText(const wchar_t* name, const wchar_t* text) const;

    // The width that the drawing of an item returns.
    static int Draw(const IStatusItem* item, Row& row)
    {
        return item->drawIcon(row.Whole(), row.Graphics());
    }

    inline static std::atomic<int> repaints = 0;

private:
    base::GdiPlusSession m_session;
    test_support::TemporaryFolder m_images;
    test_support::TemporaryRegistryKey m_settings;
};
