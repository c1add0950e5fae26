#include "record/CineCommands.h"

#include "base/Console.h"
#include "base/ScreenLayout.h"
#include "image/CineFile.h"
#include "image/ImageView.h"
#include "record/MovieFile.h"
#include "record/MovieSettings.h"
#include "record/PixelCanvas.h"

#include <Utils_Statics/CCineStoreAVI.h>

#include <algorithm>
#include <cwchar>
#include <filesystem>
#include <iterator>
#include <vector>

namespace exam {

namespace {

template <std::size_t count>
const wchar_t* NameOf(std::int32_t value, const wchar_t* const (&names)[count])
{
    return value >= 0 && value < static_cast<std::int32_t>(count) ? names[value] : L"unknown";
}

// Thousandths of a unit as a decimal number.
std::wstring Thousandths(std::int32_t value)
{
    wchar_t text[32];
    std::swprintf(text, std::size(text), L"%.3f", value / 1000.0);
    return text;
}

void Field(const wchar_t* name, const std::wstring& value)
{
    std::wstring label = name;
    label.resize(24, L' ');
    WriteOut(label + value + L"\n");
}

void Number(const wchar_t* name, std::int64_t value, const wchar_t* unit = L"")
{
    Field(name, std::to_wstring(value) + unit);
}

void PrintDescription(const CineDescription& cine)
{
    static constexpr const wchar_t* types[] = {L"B-mode", L"colour", L"spectral", L"M-mode",
                                               L"ECG"};
    static constexpr const wchar_t* probes[] = {L"curved", L"linear", L"phased"};
    static constexpr const wchar_t* origins[] = {L"recorded", L"simulated"};
    const uDataDesc& stream = cine.stream;

    Field(L"type", std::to_wstring(cine.type) + L" (" + NameOf(cine.type, types) + L")");
    Number(L"count", cine.count, cine.type == uDataEcg ? L" bytes in the last block" : L" frames");
    Number(L"lines", stream.lines, L" per frame");
    Number(L"samples", stream.samples, L" per line");
    Number(L"sample size", stream.bitsPerSample, L" bits");
    Number(L"sampling frequency", stream.samplingFreq, L" Hz");
    Number(L"speed of sound", stream.soundSpeed, L" m/s");
    Field(L"probe",
          std::to_wstring(stream.probeType) + L" (" + NameOf(stream.probeType, probes) + L")");
    Number(L"elements", stream.elements);
    Number(L"pitch", stream.pitch, L" \u00B5m");
    Number(L"radius", stream.radius, L" \u00B5m");
    Field(L"sector angle", Thousandths(stream.sectorAngle) + L"\u00B0");
    Field(L"frame rate", Thousandths(stream.frameRate) + L" frames/s");
    Field(L"steering angle", Thousandths(cine.steerAngle) + L"\u00B0");
    Field(L"virtual apex angle", Thousandths(cine.apexAngle) + L"\u00B0");
    Number(L"line offset", cine.lineOffset, L" lines");
    Number(L"aperture", cine.apertureLines, L" scan lines (0: one per element)");
    const auto origin = static_cast<std::int32_t>(cine.origin);
    Field(L"origin", std::to_wstring(origin) + L" (" + NameOf(origin, origins) + L")");
    Number(L"unused", cine.unused);
}

// Prints the sizes. The result is empty, or one sentence that says what is wrong with the file.
std::wstring Check(const RawCine& cine)
{
    Number(L"payload", cine.PayloadSize(), L" bytes");
    if (const auto frameSize = cine.Description().FrameSize())
        Number(L"frame size", *frameSize, L" bytes");
    std::wstring problem = FindHeaderProblem(cine.Description());
    return problem.empty() ? FindSizeProblem(cine) : problem;
}

// Copies the image on display into a bitmap of opaque 32-bit pixels. It is empty when the platform
// refuses.
void MakeBitmap(const ImageView& view, CBitmap& bitmap)
{
    std::vector<unsigned int> pixels(view.GreyLevels().size());
    std::transform(view.GreyLevels().begin(), view.GreyLevels().end(), pixels.begin(),
                   [](std::uint8_t level) { return PixelCanvas::opaque | level * 0x010101u; });
    bitmap.CreateBitmap(view.Parameters().width, view.Parameters().height, 1, 32, pixels.data());
}

void Progress(int frame, int frames)
{
    WriteOut(L"\rframe " + std::to_wstring(frame) + L" of " + std::to_wstring(frames) +
             (frame == frames ? L"\n" : L""));
}

struct Written
{
    int frames = 0;
    std::wstring problem; // empty when all frames were written
};

Written AddFrames(const CineFile& cine, ImageView& view, CCineStoreAVI& movie)
{
    for (int frame = 0; frame < cine.Frames(); ++frame) {
        const std::wstring name = L"frame " + std::to_wstring(frame + 1);
        if (!view.Show(cine, frame)) return {frame, name + L" cannot be read"};
        CBitmap bitmap;
        MakeBitmap(view, bitmap);
        if (!movie.AddFrame(bitmap, false, false)) return {frame, name + L" cannot be written"};
        Progress(frame + 1, cine.Frames());
    }
    return {cine.Frames(), L""};
}

Written WriteFrames(const CineFile& cine, const std::wstring& path)
{
    const CSize size = ConsoleLayout().image.Size();
    ImageView view;
    view.SetSource(cine, size);
    CCineStoreAVI movie;
    movie.SetRate(cine.FramesPerSecond());
    Written written{0, L"the movie cannot be written"};
    if (movie.InitStorage(path.c_str(), nullptr, size.cx, size.cy, CRect(), 32))
        written = AddFrames(cine, view, movie);
    movie.EndStorage(); // closes the file even when frames are missing
    return written;
}

// Writes the movie and keeps it if it can be played. The result is empty, or one sentence that says
// what is missing.
std::wstring WriteMovie(const CineFile& cine, MovieTarget& target)
{
    const Written written = WriteFrames(cine, target.WritingPath());
    if (written.frames == 0) return written.problem;
    if (std::wstring problem = FindMovieProblem(target.WritingPath(), written.frames);
        !problem.empty())
        return L"the movie was not kept, because it cannot be written whole (" + problem +
               L"); is the disk full?";
    if (!target.PutInPlace()) return L"the movie cannot be given this name";
    return written.problem.empty() ? L"" : written.problem + L"; the movie ends before it";
}

// The files and the codec of a replay.
struct Replay
{
    CineFile cine;
    MovieTarget target;
    std::wstring codec;
};

// Opens and chooses everything. The result is empty, or one sentence that names what cannot be
// used.
std::wstring Prepare(const std::wstring& path, const std::wstring& movie, bool overwrite,
                     Replay& replay)
{
    if (std::wstring problem = replay.cine.Open(path); !problem.empty())
        return path + L": " + problem;
    std::error_code error;
    if (std::filesystem::equivalent(path, movie, error))
        return L"the movie cannot replace the recording it is made of";
    if (std::wstring problem = replay.target.Choose(movie, overwrite); !problem.empty())
        return movie + L" cannot be written: " + problem;
    const std::optional<std::wstring> codec = PrepareMovieSettings();
    if (!codec) return L"the settings of movies cannot be written to the profile";
    replay.codec = *codec;
    if (FindCodec(replay.codec)) return L"";
    return L"the codec '" + replay.codec +
           L"' is not installed; install it, or set RecordCodec to the name of another or to "
           L"Uncompressed";
}

} // namespace

bool PrintCineInfo(const std::wstring& path)
{
    RawCine cine;
    std::wstring problem = cine.Open(path);
    if (problem.empty()) {
        PrintDescription(cine.Description());
        problem = Check(cine);
    }
    if (!problem.empty()) return Fail(path + L": " + problem);
    Field(L"check", L"the size is count x frame size and the header");
    return true;
}

bool ReplayCine(const std::wstring& path, const std::wstring& movie, bool overwrite)
{
    Replay replay;
    if (std::wstring problem = Prepare(path, movie, overwrite, replay); !problem.empty())
        return Fail(problem);
    const CineFile& cine = replay.cine;
    if (std::wstring problem = WriteMovie(cine, replay.target); !problem.empty())
        return Fail(movie + L": " + problem);
    WriteOut(movie + L": " + std::to_wstring(cine.Frames()) + L" frames, codec " + replay.codec +
             L"\n");
    if (cine.Problem().empty()) return true;
    Fail(path + L": " + cine.Problem());
    return cine.Description().count == 0; // the header promised no more frames than there are
}

} // namespace exam
