#include "window/Capture.h"

#include <base/GdiHandles.h>
#include <base/GdiPlusSession.h>
#include <Utils_Statics/BitmapFunctions.h>

namespace exam {

namespace {

constexpr int pngFormat = 3; // a format of GetCompression

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
    const base::GdiPlusSession session;
    return session && SaveBitmap(bitmap.get(), pngFormat, path.c_str());
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
