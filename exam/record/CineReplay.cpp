#include "record/CineReplay.h"

#include "base/Console.h"
#include "base/ScreenLayout.h"
#include "image/ImageView.h"
#include "record/VideoCodec.h"

#include <Utils_Statics/CCineStoreAVI.h>

#include <algorithm>
#include <filesystem>
#include <vector>

namespace exam {

namespace {

namespace fs = std::filesystem;

// Makes a bitmap of 32-bit pixels of the image on display. It is empty when the platform refuses.
void MakeBitmap(const ImageView& view, CBitmap& bitmap)
{
    std::vector<unsigned int> pixels(view.GreyLevels().size());
    std::transform(view.GreyLevels().begin(), view.GreyLevels().end(), pixels.begin(),
                   [](std::uint8_t level) { return level * 0x010101u; });
    bitmap.CreateBitmap(view.Parameters().width, view.Parameters().height, 1, 32, pixels.data());
}

void Progress(int frame, int frames)
{
    WriteOut(L"\rframe " + std::to_wstring(frame) + L" of " + std::to_wstring(frames) +
             (frame == frames ? L"\n" : L""));
}

std::wstring CannotWrite(const std::wstring& movie)
{
    return movie + L" cannot be written";
}

// The movie under way. Its end releases the file, also when not all frames were written.
class Movie
{
public:
    Movie() = default;
    ~Movie() { m_store.EndStorage(); }
    Movie(const Movie&) = delete;
    Movie& operator=(const Movie&) = delete;

    bool Start(const std::wstring& path, CSize size, double rate)
    {
        m_store.SetRate(rate);
        return m_store.InitStorage(path.c_str(), nullptr, size.cx, size.cy, CRect(), 32);
    }

    bool Add(const ImageView& view)
    {
        CBitmap bitmap;
        MakeBitmap(view, bitmap);
        return m_store.AddFrame(bitmap, false, false);
    }

private:
    CCineStoreAVI m_store;
};

// Writes the whole movie. The result is empty, or one sentence that says what went wrong.
std::wstring WriteMovie(const CineFile& cine, const std::wstring& path)
{
    const CSize size = ScreenLayout::Image().Size();
    ImageView view;
    view.SetRecording(cine, size);
    Movie movie;
    if (!movie.Start(path, size, cine.FramesPerSecond())) return CannotWrite(path);
    for (int frame = 0; frame < cine.Frames(); ++frame) {
        if (!view.Show(cine, frame))
            return L"frame " + std::to_wstring(frame + 1) +
                   L" cannot be read; the movie ends before it";
        if (!movie.Add(view))
            return L"frame " + std::to_wstring(frame + 1) + L" cannot be written to " + path +
                   L"; the movie ends before it";
        Progress(frame + 1, cine.Frames());
    }
    return L"";
}

std::wstring Replay(const std::wstring& path, const std::wstring& movie)
{
    CineFile cine;
    if (std::wstring problem = cine.Open(path); !problem.empty()) return path + L": " + problem;
    std::error_code error;
    if (fs::equivalent(path, movie, error))
        return L"the movie cannot replace the recording it is made of";
    const std::wstring codec = MovieCodec();
    if (!IsUsableCodec(codec))
        return L"the codec '" + codec +
               L"' is not installed; install it, or set RecordCodec to the name of another or to "
               L"Uncompressed";
    if (std::wstring problem = WriteMovie(cine, movie); !problem.empty()) return problem;
    WriteOut(movie + L": " + std::to_wstring(cine.Frames()) + L" frames, codec " + codec + L"\n");
    return L"";
}

} // namespace

bool ReplayCine(const std::wstring& path, const std::wstring& movie)
{
    const std::wstring problem = Replay(path, movie);
    if (!problem.empty()) WriteError(L"exam: " + problem + L"\n");
    return problem.empty();
}

} // namespace exam
