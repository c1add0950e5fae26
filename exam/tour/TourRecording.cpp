// Station 7: the exam is recorded, as raw frames byte for byte and as movies.
#include "base/Console.h"
#include "record/VideoCodec.h"
#include "tour/Tour.h"

#include <Utils_Statics/GetStr.h>
#include <Utils_Statics/utilsExam.h>

#include <afxwin.h>

#include <filesystem>
#include <fstream>
#include <iterator>

namespace exam {

namespace {

namespace fs = std::filesystem;

std::string ReadWhole(const std::wstring& path)
{
    std::ifstream file(fs::path(path), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

void Key(TourContext& context, UINT key)
{
    context.window.SendMessage(WM_KEYDOWN, key, 0);
}

void Advance(TourContext& context, int frames)
{
    for (int i = 0; i < frames; ++i)
        context.window.AdvanceRecording();
}

void SetCodec(const wchar_t* name)
{
    AfxGetApp()->WriteProfileString(L"Settings\\Capture", L"RecordCodec", name);
}

bool IsAnnounced(TourContext& context, int frames, const std::wstring& path)
{
    return !context.window.IsRecording() &&
           context.window.Status() == GetStr("exam.record.finished", frames, path.c_str());
}

void RawRecordingOfAllFrames(TourContext& context, const std::wstring& folder)
{
    const std::wstring path = folder + L"\\recording-001.cine";
    Key(context, 'C');
    Advance(context, 2);
    context.Picture(L"recording");
    Advance(context, 2);
    const bool counted = context.window.RecordedFrames() == 4;
    Key(context, 'C');
    context.report.Step(counted && IsAnnounced(context, 4, path),
                        L"the file of four raw frames is announced");
    const std::string original = ReadWhole(utilsExam::GetImage(L"linear.cine"));
    context.report.Step(!original.empty() && ReadWhole(path) == original,
                        L"the raw recording is the original file byte for byte");
    CineFile reopened;
    context.report.Step(reopened.Open(path).empty() && reopened.SizeProblem().empty() &&
                            reopened.Frames() == 4,
                        L"it can be opened again");
    context.Picture(L"recording-finished");
}

void AnotherImageEndsTheRecording(TourContext& context, const std::wstring& folder)
{
    Key(context, 'C');
    context.report.Step(context.WaitUntil([&] { return context.window.RecordedFrames() >= 3; }),
                        L"the timer plays and records frames");
    const int frames = context.window.RecordedFrames();
    Key(context, VK_SPACE);
    context.report.Step(IsAnnounced(context, frames, folder + L"\\recording-002.cine"),
                        L"another image ends a recording");
    context.ShowRecording(linearRecording);
}

void MissingCodec(TourContext& context)
{
    SetCodec(L"no such codec");
    Key(context, 'V');
    context.report.Step(!context.window.IsRecording() &&
                            context.window.Status() ==
                                GetStr("exam.record.nocodec", L"no such codec"),
                        L"a codec that is missing is told, and nothing is recorded");
}

// Records two rounds of the four frames, the second one with the spectral strip.
void Movie(TourContext& context, const wchar_t* codec, const std::wstring& path)
{
    SetCodec(codec);
    Key(context, 'V');
    Advance(context, 4);
    context.window.ShowStrip(true);
    Advance(context, 4);
    Key(context, 'V');
    context.window.ShowStrip(false);
    context.report.Step(IsAnnounced(context, 8, path) && fs::file_size(fs::path(path)) > 0,
                        std::wstring(L"a movie of eight frames is recorded, codec ") + codec);
}

} // namespace

void TourRecording(TourContext& context)
{
    const std::wstring folder = context.folder + L"\\recordings";
    std::error_code error;
    fs::remove_all(folder, error); // files of an earlier tour
    context.ShowRecording(linearRecording);
    RawRecordingOfAllFrames(context, folder);
    AnotherImageEndsTheRecording(context, folder);
    MissingCodec(context);
    Movie(context, L"Uncompressed", folder + L"\\movie-001.avi");
    if (FindCodec(L"MJPG"))
        Movie(context, L"MJPG", folder + L"\\movie-002.avi");
    else
        WriteOut(L"  - no movie with the codec MJPG: it is not installed\n");
    context.window.SetStatus(L"");
}

} // namespace exam
