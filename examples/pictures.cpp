// Pictures: a picture is saved, loaded in another size, and turned to grey for a disabled button.
// The application runs GDI+ meanwhile.
#include <Utils_Statics/BitmapFunctions.h>

#include <cstdio>
#include <memory>
#include <vector>

namespace {

constexpr int png = 3;
constexpr int side = 64;

// An orange square on a black ground.
bool SaveButton(const wchar_t* path)
{
    std::vector<DWORD> pixels(side * side, 0xFF000000);
    for (int y = 16; y < 48; ++y)
        for (int x = 16; x < 48; ++x)
            pixels[y * side + x] = 0xFFC08040;
    CBitmap picture;
    picture.CreateBitmap(side, side, 1, 32, pixels.data());
    return SaveBitmap(picture, png, path);
}

void ShowDisabled(const wchar_t* path)
{
    const SIZE icon = {32, 32};
    const std::unique_ptr<CBitmap> button(BitmapFromFile(path, &icon));
    if (!button) return;
    GrayScale(*button, 128);
    DWORD pixels[32 * 32] = {};
    GetBitmapBits(*button, sizeof pixels, pixels);
    std::printf("the square becomes %06lx\n", pixels[16 * 32 + 16] & 0xFFFFFF);
    std::printf("the key colour, that of the top right pixel, becomes %06lx\n",
                pixels[31] & 0xFFFFFF);
}

} // namespace

int main()
{
    ULONG_PTR session = 0;
    const Gdiplus::GdiplusStartupInput input;
    if (Gdiplus::GdiplusStartup(&session, &input, nullptr) != Gdiplus::Ok) return 1;
    std::printf("saved: %d\n", SaveButton(L"button.png"));
    ShowDisabled(L"button.png");
    Gdiplus::GdiplusShutdown(session); // when no object of GDI+ is left
}
