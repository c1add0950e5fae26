// Pictures: a picture is saved, loaded in another size, and turned to grey for a disabled button.
// The application runs GDI+ meanwhile.
#include <Utils_Statics/BitmapFunctions.h>

#include <cstdio>
#include <memory>
#include <vector>

int main()
{
    ULONG_PTR session = 0;
    const Gdiplus::GdiplusStartupInput input;
    if (Gdiplus::GdiplusStartup(&session, &input, nullptr) != Gdiplus::Ok) return 1;

    std::vector<DWORD> pixels(64 * 64, 0xFFC08040); // orange
    CBitmap picture;
    picture.CreateBitmap(64, 64, 1, 32, pixels.data());
    constexpr int png = 3;
    std::printf("saved: %d\n", SaveBitmap(picture, png, L"button.png"));

    const SIZE icon = {24, 24};
    {
        const std::unique_ptr<CBitmap> small(BitmapFromFile(L"button.png", &icon));
        if (!small) return 1;
        BITMAP description = {};
        small->GetBitmap(&description);
        std::printf("loaded at %ld x %ld\n", description.bmWidth, description.bmHeight);

        GrayScale(*small, 255);
        DWORD grey[24 * 24] = {};
        GetBitmapBits(*small, sizeof grey, grey);
        std::printf("its key colour stays marked: %06lx\n", grey[0] & 0xFFFFFF);
    }
    Gdiplus::GdiplusShutdown(session); // when no object of GDI+ is left
}
