#include "image/ImageView.h"

#include "image/GreyBitmap.h"

#include <algorithm>
#include <cmath>

namespace exam {

void ImageView::SetSource(const FrameSource& source, CSize size, int depth)
{
    CineDescription description = source.Description();
    m_isPicture = source.IsPicture();
    if (depth > 0 && !m_isPicture) description.stream.samples = std::min(depth, source.Samples());
    m_size = size;
    m_fitted = FitImage(description, size, m_orientation);
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
}

double ImageView::LeastZoom() const
{
    return std::min(1.0, m_fitted.micronsPerPixel.x / std::max(1.0, m_fitted.SampleMicrons()));
}

// The pixel at which ZoomImage puts a place into the middle.
PixelPoint ImageView::Centre() const
{
    const CPoint upright(m_parameters.width / 2, m_parameters.height / 2);
    return m_parameters.Turn().Displayed({1.0 * upright.x, 1.0 * upright.y});
}

FramePoint ImageView::Middle() const
{
    return m_parameters.InFrame(Centre());
}

void ImageView::ZoomAt(double factor, CPoint pixel)
{
    const FramePoint at = m_parameters.InFrame({1.0 * pixel.x, 1.0 * pixel.y});
    m_zoom = std::clamp(m_zoom * factor, LeastZoom(), mostZoom);
    const double microns = std::max(1L, std::lround(m_fitted.micronsPerPixel.x / m_zoom));
    const double scale = microns / m_parameters.micronsPerPixel.x;
    const FramePoint middle = Middle();
    m_middle = {at.x + (middle.x - at.x) * scale, at.y + (middle.y - at.y) * scale};
    Look();
}

void ImageView::Pan(CSize pixels)
{
    const PixelPoint centre = Centre();
    m_middle = m_parameters.InFrame({centre.x - pixels.cx, centre.y - pixels.cy});
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
    ZoomAt(one / m_zoom, {m_size.cx / 2, m_size.cy / 2});
}

bool ImageView::Show(const FrameSource& source, int frame)
{
    if (!source.ReadFrame(frame, m_frame)) return false;
    if (!m_map) return true;
    CutLines(source.Samples());
    ChangeLevels();
    if (m_isPicture)
        ConvertColours();
    else
        Convert(m_frame.data());
    return true;
}

void ImageView::Convert(const std::uint8_t* frame)
{
    if (m_parameters.orientation == Orientation()) {
        m_map->Convert(frame, m_grey.data());
        return;
    }
    m_upright.resize(m_grey.size());
    m_map->Convert(frame, m_upright.data());
    m_parameters.Turn().TurnPixels(m_upright.data(), m_grey.data());
}

// The green is converted last and stays as the grey levels.
void ImageView::ConvertColours()
{
    const std::size_t plane = m_frame.size() / pictureColours;
    m_pixels.resize(m_grey.size() * sizeof(RGBQUAD));
    for (const std::size_t colour : {0U, 2U, 1U}) {
        Convert(m_frame.data() + colour * plane);
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

// The levels change before the conversion, so that the image stays black beside the frame.
void ImageView::ChangeLevels()
{
    if (m_gain == 0 && m_window == GreyWindow()) return;
    const auto table = GreyTable(m_window, m_gain);
    for (std::uint8_t& echo : m_frame)
        echo = table[echo];
}

void ImageView::Paint(CDC& dc, CPoint at) const
{
    if (m_isPicture && !m_pixels.empty())
        PaintColours(dc, at, m_size, m_pixels.data());
    else
        PaintGrey(dc, at, m_size, m_grey.data());
}

int ImageView::Grey(CPoint pixel) const
{
    return Contains(pixel) ? m_grey[IndexOf(pixel)] : 0;
}

void ImageView::FillOutside(CDC& dc, CPoint at, COLORREF colour) const
{
    const std::vector<std::uint8_t> mask = m_parameters.Mask(); // not 0: inside
    const int width = m_size.cx;
    for (int y = 0; y < m_size.cy; ++y)
        for (int x = 0; x < width; ++x) {
            const int begin = x;
            while (x < width && mask[IndexOf({x, y})] == 0)
                ++x;
            if (x > begin) dc.FillSolidRect(at.x + begin, at.y + y, x - begin, 1, colour);
        }
}

bool ImageView::Contains(CPoint pixel) const
{
    return pixel.x >= 0 && pixel.y >= 0 && pixel.x < m_size.cx && pixel.y < m_size.cy;
}

std::size_t ImageView::IndexOf(CPoint pixel) const
{
    return static_cast<std::size_t>(pixel.y) * static_cast<std::size_t>(m_size.cx) +
           static_cast<std::size_t>(pixel.x);
}

} // namespace exam
