#include "image/PictureFile.h"

#include <base/FilePath.h>
#include <base/GdiPlusSession.h>
#include <Utils_Statics/BitmapFunctions.h>

#include <algorithm>
#include <memory>

namespace exam {

namespace {

constexpr int mostShown = 4096; // pixels in a row or a column
constexpr int pngFormat = 3;    // of SaveBitmap

// The size to show a picture in; empty when the file holds none.
SIZE SizeOf(const std::wstring& path)
{
    Gdiplus::Bitmap picture(path.c_str());
    if (picture.GetLastStatus() != Gdiplus::Ok) return {};
    const double larger = std::max(picture.GetWidth(), picture.GetHeight());
    const double scale = std::min(1.0, mostShown / std::max(1.0, larger));
    return {static_cast<LONG>(picture.GetWidth() * scale),
            static_cast<LONG>(picture.GetHeight() * scale)};
}

} // namespace

bool PictureFile::Open(const std::wstring& path)
{
    const base::GdiPlusSession session;
    if (!session) return false;
    m_path = base::FullPath(path.c_str());
    return m_file.Open(path) && Describe(SizeOf(path), 1, 0) && Decode();
}

bool PictureFile::Decode() const
{
    const base::GdiPlusSession session;
    if (!session) return false;
    const SIZE size = {Lines(), Samples()};
    const std::unique_ptr<CBitmap> bitmap(BitmapFromFile(m_path.c_str(), &size));
    if (!bitmap) return false;
    BITMAPINFO info = {};
    info.bmiHeader = {sizeof info.bmiHeader, size.cx, -size.cy, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
    std::vector<std::uint8_t> rows(static_cast<std::size_t>(size.cx) *
                                   static_cast<std::size_t>(size.cy) * 4);
    CDC screen;
    screen.CreateCompatibleDC(nullptr);
    return GetDIBits(screen.GetSafeHdc(), static_cast<HBITMAP>(bitmap->GetSafeHandle()), 0,
                     static_cast<UINT>(size.cy), rows.data(), &info, DIB_RGB_COLORS) == size.cy &&
           ToPlanes(info.bmiHeader, rows.data(), m_planes);
}

bool PictureFile::ReadFrame(int frame, std::vector<std::uint8_t>& bytes) const
{
    char first = 0;
    if (frame != 0 || (m_planes.empty() && (!m_file.Read(0, &first, 1) || !Decode()))) return false;
    bytes = m_planes;
    return true;
}

void PictureFile::Rest() const
{
    m_file.Rest();
    m_planes = {};
}

bool SavePng(HBITMAP bitmap, const std::wstring& path)
{
    const base::GdiPlusSession session;
    return session && SaveBitmap(bitmap, pngFormat, path.c_str());
}

} // namespace exam
