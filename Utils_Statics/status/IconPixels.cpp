#include "status/IconPixels.h"

#include "status/FileStamp.h"

#include <map>
#include <optional>

namespace utils_statics {

namespace {

constexpr UINT largestEdge = 256;        // pixels; larger images are not kept
constexpr std::size_t largestCount = 64; // files; the row has 13

struct KnownIcon
{
    FileStamp stamp;
    std::shared_ptr<IconPixels> icon;
};

using KnownIcons = std::map<std::wstring, KnownIcon>;

KnownIcons& Known()
{
    static KnownIcons known;
    return known;
}

std::shared_ptr<IconPixels> ReadIconPixels(const std::wstring& path)
{
    Gdiplus::Bitmap image(path.c_str());
    const UINT width = image.GetWidth();
    const UINT height = image.GetHeight();
    if (width == 0 || height == 0 || width > largestEdge || height > largestEdge) return nullptr;
    auto icon = std::make_shared<IconPixels>(
        IconPixels{static_cast<int>(width), static_cast<int>(height),
                   std::vector<Gdiplus::ARGB>(std::size_t{width} * height)});
    const Gdiplus::Rect whole(0, 0, icon->width, icon->height);
    Gdiplus::BitmapData target = {};
    target.Width = width;
    target.Height = height;
    target.Stride = static_cast<INT>(width * sizeof(Gdiplus::ARGB));
    target.PixelFormat = PixelFormat32bppARGB;
    target.Scan0 = icon->pixels.data();
    if (image.LockBits(&whole, Gdiplus::ImageLockModeRead | Gdiplus::ImageLockModeUserInputBuf,
                       PixelFormat32bppARGB, &target) != Gdiplus::Ok)
        return nullptr;
    image.UnlockBits(&target);
    return icon;
}

} // namespace

std::shared_ptr<IconPixels> FindIconPixels(const std::wstring& path)
{
    // Taken before the file is read: what is written meanwhile makes the next call read again.
    const std::optional<FileStamp> stamp = StampOf(path);
    if (!stamp) return nullptr;
    KnownIcons& known = Known();
    const auto found = known.find(path);
    if (found != known.end() && found->second.stamp == *stamp) return found->second.icon;
    if (found != known.end()) known.erase(found);
    auto icon = ReadIconPixels(path);
    if (!icon || !stamp->isSettled) return icon;
    if (known.size() >= largestCount) known.clear();
    known.emplace(path, KnownIcon{*stamp, icon});
    return icon;
}

} // namespace utils_statics
