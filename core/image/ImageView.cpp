#include "image/ImageView.h"

#include "image/GreyBitmap.h"

#include <algorithm>
#include <climits>
#include <cmath>

namespace exam {

namespace {

// Decibels between the darkest and the brightest grey level.
constexpr int dynamicRange = 60;

// The smallest rectangle that holds the pixels that are set.
CRect BoundingRect(const std::vector<std::uint8_t>& mask, int width)
{
    CRect box(INT_MAX, INT_MAX, 0, 0);
    for (std::size_t i = 0; i < mask.size(); ++i) {
        if (mask[i] == 0) continue;
        const int x = static_cast<int>(i) % width;
        const int y = static_cast<int>(i) / width;
        box.SetRect(std::min<int>(box.left, x), std::min<int>(box.top, y),
                    std::max<int>(box.right, x + 1), std::max<int>(box.bottom, y + 1));
    }
    return box.right > 0 ? box : CRect();
}

} // namespace

void ImageView::SetSource(const FrameSource& source, CSize size, int depth)
{
    CineDescription description = source.Description();
    m_isPicture = source.IsPicture();
    if (depth > 0 && !m_isPicture) description.stream.samples = std::min(depth, source.Samples());
    m_fitted = FitImage(description, size);
    m_zoom = std::max(m_zoom, LeastZoom());
    m_pixels.clear();
    m_grey.assign(static_cast<std::size_t>(size.cx) * static_cast<std::size_t>(size.cy), 0);
    Look();
}

// Makes everything that depends on the part of the frame that is shown.
void ImageView::Look()
{
    m_parameters = m_zoom == 1 ? m_fitted : ZoomImage(m_fitted, m_zoom, m_middle);
    m_middle = Middle();
    m_map.emplace(m_parameters.ToScanGeometry());
    m_mask.reset();
}

// The mask is made when it is asked for, because zooming and panning need none.
const std::vector<std::uint8_t>& ImageView::Mask() const
{
    if (!m_mask) m_mask = m_parameters.Mask();
    return *m_mask;
}

CRect ImageView::ImagedRect() const
{
    return BoundingRect(Mask(), m_parameters.width);
}

double ImageView::LeastZoom() const
{
    return std::min(1.0, m_fitted.micronsPerPixel.x / std::max(1.0, m_fitted.SampleMicrons()));
}

FramePoint ImageView::Middle() const
{
    return m_parameters.InFrame({m_parameters.width / 2.0, m_parameters.height / 2.0});
}

void ImageView::ZoomAt(double factor, CPoint pixel)
{
    const FramePoint at = m_parameters.InFrame({1.0 * pixel.x, 1.0 * pixel.y});
    m_zoom = std::clamp(m_zoom * factor, LeastZoom(), mostZoom);
    const double microns = std::max(1L, std::lround(m_fitted.micronsPerPixel.x / m_zoom));
    const CPoint way(m_parameters.width / 2 - pixel.x, m_parameters.height / 2 - pixel.y);
    m_middle = {at.x + way.x * microns, at.y + way.y * microns};
    Look();
}

void ImageView::Pan(CSize pixels)
{
    m_middle.x -= 1.0 * pixels.cx * m_parameters.micronsPerPixel.x;
    m_middle.y -= 1.0 * pixels.cy * m_parameters.micronsPerPixel.y;
    Look();
}

void ImageView::ShowWhole()
{
    m_zoom = 1;
    Look();
}

void ImageView::ShowSamples()
{
    const double one = m_fitted.micronsPerPixel.x / std::max(1.0, m_fitted.SampleMicrons());
    ZoomAt(one / m_zoom, {m_parameters.width / 2, m_parameters.height / 2});
}

bool ImageView::Show(const FrameSource& source, int frame)
{
    if (!source.ReadFrame(frame, m_frame)) return false;
    if (!m_map) return true;
    CutLines(source.Samples());
    ApplyGain();
    if (m_isPicture)
        ConvertColours();
    else
        m_map->Convert(m_frame.data(), m_grey.data());
    return true;
}

// The green is converted last and stays as the grey levels.
void ImageView::ConvertColours()
{
    const std::size_t plane = m_frame.size() / pictureColours;
    m_pixels.resize(m_grey.size() * sizeof(RGBQUAD));
    for (const std::size_t colour : {0U, 2U, 1U}) {
        m_map->Convert(m_frame.data() + colour * plane, m_grey.data());
        for (std::size_t i = 0; i < m_grey.size(); ++i)
            m_pixels[i * sizeof(RGBQUAD) + colour] = m_grey[i];
    }
}

// Shortens each line of `samples` samples to the shown ones.
void ImageView::CutLines(int samples)
{
    if (m_parameters.samples == samples) return;
    auto to = m_frame.begin();
    for (auto line = m_frame.cbegin(); line != m_frame.cend(); line += samples)
        to = std::copy(line, line + m_parameters.samples, to);
}

// Echoes are levels of decibels, so gain is added to them.
void ImageView::ApplyGain()
{
    if (m_gain == 0) return;
    const int levels = m_gain * UINT8_MAX / dynamicRange;
    for (std::uint8_t& echo : m_frame)
        echo = static_cast<std::uint8_t>(std::clamp<int>(echo + levels, 0, UINT8_MAX));
}

void ImageView::Paint(CDC& dc, CPoint at) const
{
    const CSize size(m_parameters.width, m_parameters.height);
    if (m_isPicture && !m_pixels.empty())
        PaintColours(dc, at, size, m_pixels.data());
    else
        PaintGrey(dc, at, size, m_grey.data());
}

int ImageView::Grey(CPoint pixel) const
{
    return Contains(pixel) ? m_grey[IndexOf(pixel)] : 0;
}

void ImageView::FillOutside(CDC& dc, CPoint at, COLORREF colour) const
{
    const int width = m_parameters.width;
    for (int y = 0; y < m_parameters.height; ++y)
        for (int x = 0; x < width; ++x) {
            const int begin = x;
            while (x < width && Mask()[IndexOf({x, y})] == 0)
                ++x;
            if (x > begin) dc.FillSolidRect(at.x + begin, at.y + y, x - begin, 1, colour);
        }
}

bool ImageView::Contains(CPoint pixel) const
{
    return pixel.x >= 0 && pixel.y >= 0 && pixel.x < m_parameters.width &&
           pixel.y < m_parameters.height;
}

std::size_t ImageView::IndexOf(CPoint pixel) const
{
    return static_cast<std::size_t>(pixel.y) * static_cast<std::size_t>(m_parameters.width) +
           static_cast<std::size_t>(pixel.x);
}

} // namespace exam
