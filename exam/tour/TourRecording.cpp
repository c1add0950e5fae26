// Station 7: the exam is recorded, as raw frames byte for byte and as movies.
#include "base/Console.h"
#include "image/CineFile.h"
#include "record/MovieSettings.h"
#include "tour/Tour.h"

#include <Utils_Statics/GetStr.h>
#include <Utils_Statics/utilsExam.h>

#include <afxwin.h>

#include <filesystem>

namespace exam {

namespace {

namespace fs = std::filesystem;

void Advance(TourContext& context, int frames)
{
    for (int i = 0; i < frames; ++i)
        context.window.Exam().Advance();
}

int RecordedFrames(const TourContext& context)
{
    return context.state.Recording() ? context.state.Recording()->frames : 0;
}

bool IsAnnounced(TourContext& context, int frames, const std::wstring& path)
{
    return !context.state.Recording() &&
           context.state.Status() == GetStr("exam.record.finished", frames, path.c_str());
}

void RawRecordingOfAllFrames(TourContext& context, const std::wstring& folder)
{
    const std::wstring path = folder + L"\\recording-001.cine";
    context.Key('C');
    Advance(context, 2);
    context.Picture(L"recording");
    Advance(context, 2);
    const bool counted = RecordedFrames(context) == 4;
    context.Key('C');
    context.report.Step(counted && IsAnnounced(context, 4, path),
                        L"the file of four raw frames is announced");
    context.report.Step(HoldSameBytes(path, utilsExam::GetImage(L"linear.cine")),
                        L"the raw recording is the original file byte for byte");
    CineFile reopened;
    context.report.Step(reopened.Open(path).empty() && reopened.Problem().empty() &&
                            reopened.Frames() == 4,
                        L"it can be opened again");
    context.Picture(L"recording-finished");
}

void AnotherImageEndsTheRecording(TourContext& context, const std::wstring& folder)
{
    context.Key('C');
    context.report.Step(context.WaitUntil([&] { return RecordedFrames(context) >= 3; }),
                        L"the timer plays and records frames");
    const int frames = RecordedFrames(context);
    context.Key(VK_SPACE);
    context.report.Step(IsAnnounced(context, frames, folder + L"\\recording-002.cine"),
                        L"another image ends a recording");
    context.state.SelectImage(linearRecording);
}

void NothingRecorded(TourContext& context, const std::wstring& folder)
{
    context.Key('C');
    context.Key('C');
    context.report.Step(context.state.Status() == GetStr("exam.record.empty") &&
                            !fs::exists(fs::path(folder + L"\\recording-003.cine")),
                        L"a recording without a frame leaves no file");
}

void MissingCodec(TourContext& context, const std::wstring& movie)
{
    context.SetCodec(L"no such codec");
    context.Key('V');
    context.report.Step(!context.state.Recording() &&
                            context.state.Status() ==
                                GetStr("exam.record.nocodec", movie.c_str(), L"no such codec"),
                        L"a codec that is missing is told, and nothing is recorded");
}

// Records two rounds of the four frames, the second one with the spectral strip.
void Movie(TourContext& context, const wchar_t* codec, const std::wstring& path)
{
    context.SetCodec(codec);
    context.Key('V');
    Advance(context, 4);
    context.state.ShowStrip(true);
    Advance(context, 4);
    context.Picture(L"spectral-strip");
    context.Key('V');
    context.state.ShowStrip(false);
    context.report.Step(IsAnnounced(context, 8, path) && fs::file_size(fs::path(path)) > 0,
                        std::wstring(L"a movie of eight frames is recorded, codec ") + codec);
}

} // namespace

void TourRecording(TourContext& context)
{
    const std::wstring folder = context.folder + L"\\recordings";
    std::error_code error;
    fs::remove_all(folder, error); // files of an earlier tour
    context.state.SelectImage(linearRecording);
    RawRecordingOfAllFrames(context, folder);
    AnotherImageEndsTheRecording(context, folder);
    NothingRecorded(context, folder);
    MissingCodec(context, folder + L"\\movie-001.avi");
    Movie(context, L"Uncompressed", folder + L"\\movie-001.avi");
    if (FindCodec(L"MJPG"))
        Movie(context, L"MJPG", folder + L"\\movie-002.avi");
    else
        WriteOut(L"  - no movie with the codec MJPG: it is not installed\n");
    context.state.SetStatus(L"");
}

} // namespace exam
