#include <Utils_Statics/CImgGeometry.h>

#include <base/WrapArithmetic.h>

#include <qor_imgproc/PixelConverter.h>
#include <qor_utils/PixelCoordinates.h>

#include <algorithm>
#include <array>
#include <climits>
#include <cmath>
#include <cstring>

namespace {

// The imaged region of one frame, column by column.
//
// The plain way tests pixel after pixel from the bottom of a column; most of the time goes into
// pixels that are far outside. Here each test also says how many pixels above are certainly
// outside too, and those are stepped over. Every decision is still made by the exact conversion,
// so the mask is the same to the byte.
class Region
{
public:
    struct Run
    {
        int top = INT_MAX;
        int bottom = -1;         // less than top: the column has none
        bool pastRegion = false; // everything in the column is at or past the last line
    };

    Region(const PixelConverter& converter, int lineEnd, int sampleEnd)
        : m_converter(converter), m_lineEnd(lineEnd), m_sampleEnd(sampleEnd)
    {
    }

    Run Column(int x, int height) const
    {
        Run run;
        run.pastRegion = !FindBottom(x, height, run.bottom);
        if (!run.pastRegion && run.bottom >= 0) run.top = FindTop(x, run.bottom);
        return run;
    }

private:
    // The lowest inside pixel of a column, or -1. False when no line below the last was seen on the
    // way up.
    bool FindBottom(int x, int height, int& bottom) const
    {
        bool seen = false;
        int y = height - 1;
        while (y >= 0) {
            const PixelConverter::Outside test =
                m_converter.TestUpwards(x, y, m_lineEnd, m_sampleEnd);
            seen = seen || test.pixel.line < m_lineEnd;
            if (test.inside) break;
            y -= 1 + (seen ? test.pixelsAbove : test.pixelsPastLines);
        }
        bottom = std::max(y, -1);
        return seen;
    }

    int FindTop(int x, int bottom) const
    {
        int outside = -1;
        int inside = bottom;
        while (outside < inside - 1) {
            const int middle = (outside + inside) / 2;
            if (Inside(m_converter.At(x, middle)))
                inside = middle;
            else
                outside = middle;
        }
        return inside;
    }

    bool Inside(const ScanPixel& p) const
    {
        return p.line > 0 && p.line < m_lineEnd && p.sample > 0 && p.sample < m_sampleEnd;
    }

    const PixelConverter& m_converter;
    int m_lineEnd;
    int m_sampleEnd;
};

// Some neighbouring columns of the mask, filled row by row: writing down single columns would
// touch a new cache line for every byte.
class Strip
{
public:
    static constexpr int stripWidth = 128;

    void Add(const Region::Run& run)
    {
        const auto i = static_cast<std::size_t>(m_count++);
        m_top[i] = run.top;
        m_bottom[i] = run.bottom;
    }
    bool Full() const { return m_count == stripWidth; }

    void Fill(unsigned char* firstColumn, int width, unsigned char value)
    {
        const int first = *std::min_element(m_top.begin(), m_top.begin() + m_count);
        const int last = *std::max_element(m_bottom.begin(), m_bottom.begin() + m_count);
        const int wholeFirst = *std::max_element(m_top.begin(), m_top.begin() + m_count);
        const int wholeLast = *std::min_element(m_bottom.begin(), m_bottom.begin() + m_count);
        for (int y = first; y <= last; ++y) {
            unsigned char* row =
                firstColumn + static_cast<std::size_t>(y) * static_cast<std::size_t>(width);
            if (y >= wholeFirst && y <= wholeLast)
                std::memset(row, value, static_cast<std::size_t>(m_count));
            else
                FillRow(row, y, value);
        }
        m_count = 0;
    }

private:
    void FillRow(unsigned char* row, int y, unsigned char value) const
    {
        for (int i = 0; i < m_count; ++i) {
            const auto column = static_cast<std::size_t>(i);
            row[i] =
                y >= m_top[column] && y <= m_bottom[column] ? value : static_cast<unsigned char>(0);
        }
    }

    std::array<int, stripWidth> m_top{};
    std::array<int, stripWidth> m_bottom{};
    int m_count = 0;
};

} // namespace

bool CImgGeometry::CreateImageMask(unsigned char* mask, int width, int height, int samplingFreq,
                                   int steerAngle, int lines, CRect imageRect, int scanB,
                                   const ZelProbe* probe, int soundSpeed, const UPoint& origin,
                                   const UPoint& micronsPerPixel, unsigned char value)
{
    if (width < 1 || height < 1) return true;
    if (!mask) return false;
    const double steer = steerAngle * qor_utils::RadiansPerMillidegree;
    URect rect;
    qor_utils::ConvertRect({imageRect.left, imageRect.top, imageRect.right, imageRect.bottom},
                           lines, probe ? probe->elements : 0, rect);
    const PixelConverter converter(rect, probe, soundSpeed, scanB, lines, samplingFreq, origin,
                                   micronsPerPixel, std::sin(steer), std::cos(steer));
    const Region region(converter, base::wrap::Subtract(rect.right, rect.left),
                        base::wrap::Subtract(rect.bottom, rect.top));

    std::memset(mask, 0, static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    Strip strip;
    for (int x = 0, first = 0; x < width; ++x) {
        const Region::Run run = region.Column(x, height);
        strip.Add(run);
        if (!run.pastRegion && !strip.Full() && x + 1 < width) continue;
        strip.Fill(mask + first, width, value);
        if (run.pastRegion) break; // what follows lies past the imaged region too
        first = x + 1;
    }
    return true;
}
