#include "base/Painting.h"
#include "base/Palette.h"
#include "base/ScreenLayout.h"
#include "record/MovieFile.h"
#include "record/MovieNote.h"
#include "record/PixelCanvas.h"
#include "record/Recording.h"

#include <Utils_Statics/CCineStoreAVI.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <vector>

namespace exam {

namespace {

constexpr int sweepHeight = 5;  // rows of plane 3, fixed by the composition
constexpr int sweepLength = 24; // pixels
constexpr int sweepStep = 8;    // pixels a frame
constexpr unsigned int sweepColour = 0x00FFBE50;

// The place of the time in the image, or in the strip while that is shown. It stays clear of the
// strip's traces.
CRect TimeArea()
{
    return {0, 112, 160, 136};
}

// The place of the spectral strip. While there is none, the composition has to be given one too.
CRect StripOf(const ScreenLayout& screen)
{
    if (!screen.strip.IsRectEmpty()) return screen.strip;
    CRect strip = screen.imageArea;
    strip.top = strip.CenterPoint().y;
    return strip;
}

// The rects of the composition. The last two are regions of the panel and count rows from its lower
// edge, because the composition takes them after it has turned the plane upside down.
std::vector<CRect> MovieLayout(const ScreenLayout& screen)
{
    const CRect& panel = screen.panel;
    const int half = panel.Height() / 2;
    return {screen.imageArea,
            StripOf(screen),
            panel,
            TimeArea(),
            CRect(0, half, panel.Width(), panel.Height()),
            CRect(0, 0, panel.Width(), half)};
}

// Makes a mask that lets the whole plane through. Tools are drawn outside the imaged region too.
void MakeOpenMask(CBitmap& mask, CSize size)
{
    const auto rowBytes = static_cast<std::size_t>((size.cx + 15) / 16 * 2);
    const std::vector<BYTE> bits(rowBytes * static_cast<std::size_t>(size.cy));
    mask.CreateBitmap(size.cx, size.cy, 1, 1, bits.data());
}

// Records the screen as a movie. The screen at the start is the background. Each frame places these
// on it:
// - Plane 0 is the image with its scale, its tools and those windows over it that are recorded.
// - Plane 1 is the spectral strip, while it is shown.
// - Plane 2 holds two regions: the upper and the lower half of the facts beside the image.
// - Plane 3 is a mark that moves along the lower edge of the strip.
// - Plane 4 is the movie's own time, in the upper left corner of the image or of the strip.
// The recording mark, the status text and the keys are not in the movie.
class MovieRecording : public Recording
{
public:
    MovieRecording(const ExamState& state, const Painter& paint, FOURCC codec);

    bool Start(const std::wstring& path) override;
    bool AddFrame() override;
    CCineStore& Store() override { return m_store; }
    bool IsWhole(const std::wstring& path, int frames) const override
    {
        return FindMovieProblem(path, frames).empty();
    }

private:
    using Plane = std::vector<unsigned int>;

    void DrawTime();
    void DrawSweep();

    const ExamState& m_state;
    const ScreenLayout m_layout; // the recording ends when the screen gets another one
    const Painter& m_paint;
    FOURCC m_codec;
    double m_rate; // frames per second
    int m_frames = 0;
    PixelCanvas m_screen;
    PixelCanvas m_time;
    CBitmap m_imageMask;
    CBitmap m_stripMask;
    Plane m_image;
    Plane m_strip;
    Plane m_panel;
    Plane m_sweep;
    Plane m_clock;
    CCineStoreAVI m_store;
};

MovieRecording::MovieRecording(const ExamState& state, const Painter& paint, FOURCC codec)
    : m_state(state), m_layout(state.Layout()), m_paint(paint), m_codec(codec),
      m_rate(state.Source().FramesPerSecond()), m_screen(m_layout.movie.Size()),
      m_time(TimeArea().Size())
{
    MakeOpenMask(m_imageMask, m_layout.imageArea.Size());
    MakeOpenMask(m_stripMask, StripOf(m_layout).Size());
}

bool MovieRecording::Start(const std::wstring& path)
{
    const std::filesystem::path file(path);
    const auto folder = CodePagePath(file.parent_path().wstring());
    if (!folder || !m_screen || !m_time) return false;
    m_paint(m_screen.Context());
    Plane pixels;
    m_screen.Cut(m_layout.movie, pixels);
    const CSize size = m_layout.movie.Size();
    CBitmap background;
    if (!background.CreateBitmap(size.cx, size.cy, 1, 32, pixels.data())) return false;
    m_store.SetRate(m_rate);
    if (m_store.InitStorage((std::filesystem::path(*folder) / file.filename()).c_str(), &background,
                            size.cx, size.cy, MovieLayout(m_layout), 32)) {
        WriteNote(path, {size.cx, size.cy, static_cast<std::int32_t>(std::lround(m_rate * 1000)),
                         m_codec});
        return true;
    }
    m_store.EndStorage(); // releases what was opened
    return false;
}

bool MovieRecording::AddFrame()
{
    m_paint(m_screen.Context());
    DrawTime();
    DrawSweep();
    m_screen.Cut(m_layout.imageArea, m_image);
    m_screen.Cut(StripOf(m_layout), m_strip);
    m_screen.Cut(m_layout.panel, m_panel);
    const bool strip = m_state.IsStripShown();
    ++m_frames;
    return m_store.AddFrame(m_image.data(), strip ? m_strip.data() : nullptr, m_panel.data(),
                            strip ? m_sweep.data() : nullptr, m_clock.data(), m_imageMask,
                            m_stripMask, false, false, false, false);
}

// The time is light on black, because the composition adds this plane to the image.
void MovieRecording::DrawTime()
{
    m_time.Clear();
    CRect box(CPoint(0, 0), TimeArea().Size());
    CString text;
    text.Format(L"%.2f s", m_frames / m_rate);
    box.left = 16;
    CDC& dc = m_time.Context();
    const ScopedFont font(dc, ScopedFont::textSize, FW_NORMAL);
    dc.SetBkMode(TRANSPARENT);
    dc.SetTextColor(palette::scale);
    dc.DrawText(text, &box, DT_LEFT | DT_VCENTER | DT_SINGLELINE);
    m_time.Cut(CRect(CPoint(0, 0), TimeArea().Size()), m_clock);
}

void MovieRecording::DrawSweep()
{
    const int width = StripOf(m_layout).Width();
    const int from = m_frames * sweepStep % (width - sweepLength);
    m_sweep.assign(static_cast<std::size_t>(width) * sweepHeight, 0);
    for (int row = 0; row < sweepHeight; ++row)
        std::fill_n(m_sweep.begin() + row * width + from, sweepLength, sweepColour);
}

} // namespace

std::unique_ptr<Recording> MakeMovieRecording(const ExamState& state, const Painter& paint,
                                              FOURCC codec)
{
    return std::make_unique<MovieRecording>(state, paint, codec);
}

} // namespace exam
