#include "overlay/ButtonPicture.h"

#include "base/Palette.h"

#include <Utils_Statics/BitmapFunctions.h>

#include <iterator>
#include <string>

namespace exam {

namespace {

constexpr float cornerRadius = 7; // pixels
constexpr int ownAlpha = -1;

// The places run from the edge to the middle. A picture begins with a soft edge; a frame lies about
// a seventh of the way in.
constexpr float edgeFactors[] = {0, 1, 1};
constexpr float edgePlaces[] = {0, 0.12F, 1};
constexpr float frameFactors[] = {0, 0.2F, 1, 1};
constexpr float framePlaces[] = {0, 0.15F, 0.3F, 1};

} // namespace

ButtonPicture::ButtonPicture(const wchar_t* name)
{
    const Image loaded(LoadImageFromIconStore((std::wstring(L"buttons\\") + name).c_str()));
    m_normal.reset(CreateRoundedBitmap(loaded.get(), cornerRadius, edgeFactors, edgePlaces,
                                       static_cast<int>(std::size(edgeFactors))));
    if (!m_normal) return;
    m_disabled.reset(m_normal->Clone(0, 0, static_cast<int>(m_normal->GetWidth()),
                                     static_cast<int>(m_normal->GetHeight()),
                                     PixelFormat32bppARGB));
    GrayScaleBitmap(m_disabled.get(), ownAlpha);
    m_framed.reset(CreateBorderedBitmap(m_normal.get(), frameFactors, framePlaces,
                                        static_cast<int>(std::size(frameFactors)),
                                        palette::accent));
}

const ButtonPicture::Image& ButtonPicture::In(ButtonForm form) const
{
    switch (form) {
    case ButtonForm::disabled: return m_disabled;
    case ButtonForm::framed: return m_framed;
    default: return m_normal;
    }
}

void ButtonPicture::Draw(CDC& dc, const CRect& area, ButtonForm form) const
{
    const Image& image = In(form);
    if (!image) return;
    Gdiplus::Graphics graphics(dc.GetSafeHdc());
    graphics.DrawImage(image.get(), area.left, area.top, area.Width(), area.Height());
}

} // namespace exam
