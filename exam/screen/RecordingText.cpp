#include "screen/RecordingText.h"

#include "study/StudyTexts.h"

#include <Utils_Statics/GetStr.h>

namespace exam {

namespace {

constexpr double megabyte = 1e6;
constexpr double gigabyte = 1e9;

CString TimeText(std::int64_t seconds)
{
    const auto hours = static_cast<int>(seconds / 3600);
    const auto minutes = static_cast<int>(seconds / 60 % 60);
    const auto rest = static_cast<int>(seconds % 60);
    CString text;
    if (hours > 0)
        text.Format(L"%d:%02d:%02d", hours, minutes, rest);
    else
        text.Format(L"%d:%02d", minutes, rest);
    return text;
}

std::wstring SizeText(std::int64_t bytes)
{
    const auto size = static_cast<double>(bytes);
    return size < gigabyte ? NumberText(size / megabyte, 0) + L" MB"
                           : NumberText(size / gigabyte, 1) + L" GB";
}

} // namespace

CString RecordingTimeText(const RunningRecording& recording)
{
    return GetStr("exam.record.mark", TimeText(recording.seconds).GetString());
}

CString RecordingRoomText(const RunningRecording& recording)
{
    CString text = GetStr("exam.record.frames", recording.frames);
    if (recording.secondsLeft)
        text +=
            L", " + GetStr("exam.record.timeleft", TimeText(*recording.secondsLeft).GetString());
    if (recording.bytesLeft)
        text += L", " + GetStr("exam.record.free", SizeText(*recording.bytesLeft).c_str());
    return text;
}

} // namespace exam
