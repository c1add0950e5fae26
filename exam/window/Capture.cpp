#include "window/Capture.h"

#include "image/PictureFile.h"

namespace exam {

base::Bitmap Capture(HWND window, const CRect& part)
{
    const base::WindowContext source(window);
    const base::MemoryContext memory(CreateCompatibleDC(source.get()));
    base::Bitmap bitmap(CreateCompatibleBitmap(source.get(), part.Width(), part.Height()));
    const base::Selection selection(memory.get(), bitmap.get());
    if (selection)
        BitBlt(memory.get(), 0, 0, part.Width(), part.Height(), source.get(), part.left, part.top,
               SRCCOPY);
    return bitmap;
}

bool CaptureToPng(HWND window, const std::wstring& path)
{
    CRect client;
    return GetClientRect(window, &client) && SavePng(Capture(window, client).get(), path);
}

} // namespace exam
