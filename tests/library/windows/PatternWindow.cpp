#include "PatternWindow.h"

#include <base/GdiHandles.h>
#include <test_support/Messages.h>

namespace {

BITMAPINFO TopDown(int width, int height)
{
    BITMAPINFO info = {};
    info.bmiHeader = {sizeof info.bmiHeader, width, -height, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
    return info;
}

} // namespace

int Differences(const Picture& a, const Picture& b)
{
    if (a.width != b.width || a.height != b.height) return -1;
    int count = 0;
    for (std::size_t i = 0; i < a.pixels.size(); ++i)
        if (a.pixels[i] != b.pixels[i]) ++count;
    return count;
}

BEGIN_MESSAGE_MAP(PatternWindow, CWnd)
    ON_WM_PAINT()
END_MESSAGE_MAP()

PatternWindow::PatternWindow()
{
    CWnd::CreateEx(WS_EX_TOPMOST | WS_EX_NOACTIVATE, nullptr, L"pattern", WS_POPUP | WS_VISIBLE,
                   CRect(CPoint(60, 40), CSize(width, height)), nullptr, 0);
    PaintAll();
}

PatternWindow::~PatternWindow() = default;

std::uint32_t PatternWindow::PatternAt(int x, int y)
{
    return static_cast<std::uint32_t>(x) << 16 | static_cast<std::uint32_t>(y) << 8 |
           static_cast<std::uint32_t>(x * 7 + y * 13) % 251;
}

Picture PatternWindow::Pattern()
{
    Picture picture{width, height, std::vector<std::uint32_t>(width * height)};
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            picture.At(x, y) = PatternAt(x, y);
    return picture;
}

void PatternWindow::OnPaint()
{
    CPaintDC dc(this);
    const Picture picture = Pattern();
    const BITMAPINFO info = TopDown(width, height);
    SetDIBitsToDevice(dc, 0, 0, width, height, 0, 0, 0, height, picture.pixels.data(), &info,
                      DIB_RGB_COLORS);
}

void PatternWindow::PaintAll()
{
    RedrawWindow(nullptr, RDW_INVALIDATE | RDW_ALLCHILDREN | RDW_UPDATENOW);
    test_support::Pump();
}

Picture PatternWindow::Screen()
{
    CPoint origin;
    ClientToScreen(&origin);
    const base::WindowContext screen(nullptr);
    const base::MemoryContext memory(CreateCompatibleDC(screen.get()));
    const BITMAPINFO info = TopDown(width, height);
    void* bits = nullptr;
    const base::Bitmap bitmap(
        CreateDIBSection(memory.get(), &info, DIB_RGB_COLORS, &bits, nullptr, 0));
    const base::Selection selected(memory.get(), bitmap.get());
    BitBlt(memory.get(), 0, 0, width, height, screen.get(), origin.x, origin.y, SRCCOPY);
    GdiFlush();
    const auto* const pixels = static_cast<const std::uint32_t*>(bits);
    Picture picture{width, height, {pixels, pixels + width * height}};
    for (std::uint32_t& pixel : picture.pixels)
        pixel &= 0xFFFFFF;
    return picture;
}
