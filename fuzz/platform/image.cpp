// The target loads an image file of any format, and scales it.
#include <base/GdiHandles.h>
#include <base/GdiPlusSession.h>
#include <fuzz/Input.h>
#include <fuzz/InputFile.h>
#include <Utils_Statics/BitmapFunctions.h>

#include <afxwin.h>

#include <memory>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const base::GdiPlusSession session;
    const fuzz::Input input(data, size);
    const std::wstring path = fuzz::InputFile(input.Rest());
    SIZE wanted = {20, 10};
    const std::unique_ptr<CBitmap> whole(BitmapFromFile(path.c_str()));
    const std::unique_ptr<CBitmap> scaled(BitmapFromFile(path.c_str(), &wanted, true));
    const base::Bitmap resized(ResizeImage(path.c_str(), &wanted));
    return 0;
}
