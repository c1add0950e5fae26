#include "window/Capture.h"

#include "base/GdiPlusSession.h"

#include <base/GdiHandles.h>

#include <memory>

namespace exam {

namespace {

// CLSID of the PNG encoder of GDI+.
constexpr CLSID pngEncoder = {
    0x557cf406, 0x1a04, 0x11d3, {0x9a, 0x73, 0x00, 0x00, 0xf8, 0x1e, 0xf3, 0x2e}};

} // namespace

bool CaptureToPng(HWND window, const std::wstring& path)
{
    RECT client{};
    if (!GetClientRect(window, &client)) return false;
    const base::WindowContext source(window);
    const base::MemoryContext memory(CreateCompatibleDC(source.get()));
    const base::Bitmap bitmap(CreateCompatibleBitmap(source.get(), client.right, client.bottom));
    {
        const base::Selection selection(memory.get(), bitmap.get());
        if (!selection) return false;
        BitBlt(memory.get(), 0, 0, client.right, client.bottom, source.get(), 0, 0, SRCCOPY);
    }
    const GdiPlusSession session;
    if (!session) return false;
    const std::unique_ptr<Gdiplus::Bitmap> image(
        Gdiplus::Bitmap::FromHBITMAP(bitmap.get(), nullptr));
    return image && image->Save(path.c_str(), &pngEncoder, nullptr) == Gdiplus::Ok;
}

} // namespace exam
