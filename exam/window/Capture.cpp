#include "window/Capture.h"

#include "base/GdiPlusSession.h"

#include <base/GdiHandles.h>

#include <memory>

namespace exam {

namespace {

// CLSID of the PNG encoder of GDI+.
constexpr CLSID pngEncoder = {
    0x557cf406, 0x1a04, 0x11d3, {0x9a, 0x73, 0x00, 0x00, 0xf8, 0x1e, 0xf3, 0x2e}};

// Saves a part of a device context's content.
bool SavePart(HDC source, const CRect& part, const std::wstring& path)
{
    const base::MemoryContext memory(CreateCompatibleDC(source));
    const base::Bitmap bitmap(CreateCompatibleBitmap(source, part.Width(), part.Height()));
    {
        const base::Selection selection(memory.get(), bitmap.get());
        if (!selection) return false;
        BitBlt(memory.get(), 0, 0, part.Width(), part.Height(), source, part.left, part.top,
               SRCCOPY);
    }
    const GdiPlusSession session;
    if (!session) return false;
    const std::unique_ptr<Gdiplus::Bitmap> image(
        Gdiplus::Bitmap::FromHBITMAP(bitmap.get(), nullptr));
    return image && image->Save(path.c_str(), &pngEncoder, nullptr) == Gdiplus::Ok;
}

} // namespace

bool CaptureToPng(HWND window, const std::wstring& path)
{
    CRect client;
    if (!GetClientRect(window, &client)) return false;
    return SavePart(base::WindowContext(window).get(), client, path);
}

bool CaptureScreenToPng(const CRect& part, const std::wstring& path)
{
    return SavePart(base::WindowContext(nullptr).get(), part, path);
}

} // namespace exam
