// Pictures, icons and drawing.
#include "Script.h"

#include <test_support/Canvas.h>
#include <Utils_Statics/Utils_Statics.h>

#include <afxcmn.h>

#include <memory>

namespace faults {

namespace {

using Image = std::unique_ptr<Gdiplus::Bitmap>;
using test_support::Canvas;
using test_support::TemporaryFolder;

constexpr int side = 16;
constexpr float factors[] = {0, 1};
constexpr int gif = 1;
constexpr int png = 3;

HBITMAP HandleOf(CBitmap& bitmap)
{
    return static_cast<HBITMAP>(bitmap.GetSafeHandle());
}

// A device bitmap of 32 bits a pixel, with no two pixels alike.
void Fill(CBitmap& bitmap)
{
    DWORD pixels[side * side];
    for (DWORD i = 0; i < side * side; ++i)
        pixels[i] = 0xFF000000 | (i * 0x10203);
    bitmap.Attach(CreateBitmap(side, side, 1, 32, pixels));
}

long long SumOf(HBITMAP bitmap)
{
    DWORD pixels[side * side * 4] = {};
    GetBitmapBits(bitmap, sizeof pixels, pixels);
    return Sum(pixels, sizeof pixels);
}

long long SumOf(Gdiplus::Bitmap& image)
{
    std::vector<Gdiplus::ARGB> pixels;
    for (int y = 0; y < static_cast<int>(image.GetHeight()); ++y)
        for (int x = 0; x < static_cast<int>(image.GetWidth()); ++x) {
            Gdiplus::Color colour;
            image.GetPixel(x, y, &colour);
            pixels.push_back(colour.GetValue());
        }
    return Sum(pixels.data(), pixels.size() * sizeof pixels[0]);
}

void SeeImage(Outcome& outcome, const Image& image)
{
    outcome.Result(image != nullptr);
    if (image) outcome.Sees(SumOf(*image));
}

void SeeBitmap(Outcome& outcome, const std::unique_ptr<CBitmap>& bitmap)
{
    outcome.Result(bitmap != nullptr);
    if (bitmap) outcome.Sees(SumOf(HandleOf(*bitmap)));
}

// A step that makes an image of a picture of its own.
// A fade that GDI+ refuses is missing or even.
Step OfImage(const char* name, const std::function<Gdiplus::Bitmap*(Gdiplus::Bitmap&)>& make)
{
    return {name,
            [=](Outcome& outcome) {
                Gdiplus::Bitmap source(side, side, PixelFormat32bppARGB);
                source.SetPixel(3, 4, Gdiplus::Color(0xFF804020));
                SeeImage(outcome, Image(make(source)));
            },
            false};
}

std::vector<Step> FilePictures(const TemporaryFolder& folder)
{
    const std::wstring path = folder / L"picture.png";
    const std::wstring saved = folder / L"saved.png";
    return {
        {"SaveBitmap",
         [=](Outcome& outcome) {
             CBitmap bitmap;
             Fill(bitmap);
             DeleteFileW(saved.c_str());
             const bool succeeded = SaveBitmap(HandleOf(bitmap), png, saved.c_str());
             outcome.Result(succeeded);
             if (succeeded) outcome.Sees(Content(saved));
         }},
        {"SaveBitmap, of few colours",
         [=](Outcome& outcome) {
             CBitmap bitmap;
             Fill(bitmap);
             DeleteFileW(saved.c_str());
             const bool succeeded = SaveBitmap(HandleOf(bitmap), gif, saved.c_str());
             outcome.Result(succeeded);
             if (succeeded) outcome.Sees(Content(saved));
         }},
        {"BitmapFromFile",
         [=](Outcome& outcome) {
             const SIZE size = {8, 8};
             SeeBitmap(outcome, std::unique_ptr<CBitmap>(BitmapFromFile(path.c_str(), &size)));
         }},
        {"BitmapFromFile, grey",
         [=](Outcome& outcome) {
             SeeBitmap(outcome,
                       std::unique_ptr<CBitmap>(BitmapFromFile(path.c_str(), nullptr, true)));
         }},
        {"BitmapFromFile, icon",
         [=, &folder](Outcome& outcome) {
             SeeBitmap(outcome,
                       std::unique_ptr<CBitmap>(BitmapFromFile((folder / L"icon.ico").c_str())));
         }},
        {"ResizeImage",
         [=](Outcome& outcome) {
             SIZE size = {8, -1};
             const base::Bitmap bitmap(ResizeImage(path.c_str(), &size));
             outcome.Result(bool(bitmap));
             if (bitmap) outcome.Sees(SumOf(bitmap.get()));
         }},
        // The standard icon stands for an image that cannot be loaded.
        {"LoadImageFromIconStore",
         [](Outcome& outcome) {
             const Image image(LoadImageFromIconStore(L"picture.png"));
             outcome.Result(image && image->GetWidth() == side);
             if (image) outcome.Sees(image->GetWidth());
         }},
        {"LoadImageFromIconStore, none",
         [](Outcome& outcome) {
             const Image image(LoadImageFromIconStore(L"none.png"));
             outcome.Result(image && image->GetLastStatus() == Gdiplus::Ok);
         }},
        {"LoadImageFromResource",
         [](Outcome& outcome) {
             Gdiplus::Bitmap* out = nullptr;
             LoadImageFromResource(&out, GetModuleHandleW(nullptr), L"good", RT_RCDATA);
             SeeImage(outcome, Image(out));
         }},
    };
}

std::vector<Step> ChangedPictures()
{
    return {
        {"GrayScale",
         [](Outcome& outcome) {
             CBitmap bitmap;
             Fill(bitmap);
             outcome.Result(GrayScale(HandleOf(bitmap), 128));
             outcome.Sees(SumOf(HandleOf(bitmap)));
         }},
        {"PreMultiplyRGBChannels",
         [](Outcome& outcome) {
             CBitmap bitmap;
             Fill(bitmap);
             std::vector<unsigned char> bits(side * side * 4, 77);
             outcome.Result(
                 PreMultiplyRGBChannels(HandleOf(bitmap), bits.data(), 128, 0x123456, nullptr));
             outcome.Sees(Sum(bits.data(), bits.size()));
         }},
        // A pixel that cannot be stored stays as it is.
        {"GrayScaleBitmap",
         [](Outcome& outcome) {
             Gdiplus::Bitmap image(side, side, PixelFormat32bppARGB);
             image.SetPixel(3, 4, Gdiplus::Color(0xFF804020));
             outcome.Result(GrayScaleBitmap(&image, -1));
             outcome.Sees(SumOf(image));
         },
         false},
        OfImage("CreateRoundedBitmap",
                [](Gdiplus::Bitmap& source) {
                    return CreateRoundedBitmap(&source, 3, factors, factors, 2);
                }),
        OfImage("CreateBorderedBitmap",
                [](Gdiplus::Bitmap& source) {
                    return CreateBorderedBitmap(&source, factors, factors, 2, 0x203040);
                }),
        {"CreateRoundRect",
         [](Outcome& outcome) {
             Gdiplus::GraphicsPath path;
             outcome.Result(CreateRoundRect(path, 0, 0, 20, 10, 3) == Gdiplus::Ok);
         }},
        {"GetEncoderClsid",
         [](Outcome& outcome) {
             CLSID clsid = {};
             const int index = GetEncoderClsid(L"image/png", &clsid);
             outcome.Result(index >= 0);
             outcome.Sees(index);
         }},
        {"GetCompression",
         [](Outcome& outcome) {
             CLSID clsid = {};
             Gdiplus::EncoderParameters* parameters = nullptr;
             GetCompression(4, &parameters, &clsid, 1);
             outcome.Result(parameters && clsid != CLSID{});
             std::free(parameters);
         }},
        {"CreateGrayscalePalette",
         [](Outcome& outcome) {
             const std::unique_ptr<Gdiplus::ColorPalette> palette(CreateGrayscalePalette());
             outcome.Result(palette != nullptr);
         }},
    };
}

// A step that draws. There is no result of that.
Step Drawing(const char* name, const std::function<void(CDC&)>& draw)
{
    return {name,
            [=](Outcome& outcome) {
                Canvas canvas(64, 64);
                draw(canvas.dc);
                const auto pixels = canvas.Pixels();
                outcome.Sees(Sum(pixels.data(), pixels.size() * sizeof pixels[0]));
            },
            false};
}

std::vector<Step> Drawings()
{
    const CRect rect(4, 4, 60, 60);
    return {
        Drawing("DrawGradient",
                [=](CDC& dc) { utilsExam::DrawGradient(&dc, rect, 0x102030, 0xF0E0D0); }),
        Drawing("DrawDoubleGradient",
                [=](CDC& dc) {
                    utilsExam::DrawDoubleGradient(&dc, rect, 0x102030, 0xF0E0D0, 0, 0xFFFFFF);
                }),
        Drawing("DrawBorder",
                [=](CDC& dc) { utilsExam::DrawBorder(&dc, rect, 15, 0x102030, 0xF0E0D0); }),
        Drawing("ClipLines",
                [](CDC& dc) {
                    ULine out;
                    CImgGeometry::ClipLines(&dc, {0, 0, 60, 50}, {30, 0, 20, 60}, out, true);
                }),
        Drawing("DrawHorizontalUSLine",
                [](CDC& dc) {
                    static constexpr ZelProbe probe = {qor_utils::curvedProbe, 128, 300, 20'000};
                    CImgGeometry::DrawHorizontalUSLine(&dc, 20, 10, 100, {32, 0}, {900, 900},
                                                       40'000'000, 0, 0, &probe, 1540, 0, 64, 64, 0,
                                                       0);
                }),
        {"WrapStr",
         [](Outcome& outcome) {
             Canvas canvas(8, 8);
             CString text = L"a text of some words that are measured";
             outcome.Sees(utilsExam::WrapStr(&canvas.dc, text, 60));
             outcome.Sees(text.GetString());
         },
         false},
        {"AddImage",
         [](Outcome& outcome) {
             CBitmap bitmap;
             Fill(bitmap);
             CImageList list;
             list.Create(8, 8, ILC_COLOR32 | ILC_MASK, 1, 1);
             utilsExam::AddImage(list, bitmap, CSize(8, 8), 0xFF00FF);
             outcome.Sees(list.GetImageCount());
         },
         false},
    };
}

// A picture, the same as icons of the status row, and as an icon file of one entry.
void WritePictures(const TemporaryFolder& folder)
{
    CBitmap bitmap;
    Fill(bitmap);
    SaveBitmap(HandleOf(bitmap), png, (folder / L"picture.png").c_str());
    const std::string picture = test_support::ReadFile(folder / L"picture.png");
    CreateDirectoryW((folder / L"status").c_str(), nullptr);
    for (const wchar_t* const name :
         {L"connection", L"connectionon", L"cineiRecord", L"streamingon", L"wireless1", L"burn"})
        test_support::WriteFile(folder / (L"status\\" + std::wstring(name) + L".png"), picture);
    const auto size = static_cast<DWORD>(picture.size());
    std::string icon{"\0\0\1\0\1\0\x10\x10\0\0\1\0\x20\0", 14};
    icon.append(reinterpret_cast<const char*>(&size), 4);
    icon += std::string("\x16\0\0\0", 4) + picture;
    test_support::WriteFile(folder / L"icon.ico", icon);
}

} // namespace

std::vector<Step> PictureSteps(const TemporaryFolder& folder)
{
    WritePictures(folder);
    std::vector<Step> steps = FilePictures(folder);
    for (const auto& more : {ChangedPictures(), Drawings()})
        steps.insert(steps.end(), more.begin(), more.end());
    return steps;
}

} // namespace faults
