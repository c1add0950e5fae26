#include "overlay/Notices.h"

#include <Utils_Statics/BalloonMessageService.h>
#include <Utils_Statics/GetStr.h>

namespace exam {

namespace {

constexpr unsigned int shownFor = 5000; // milliseconds

const char* TitleKey(NoticeKind kind)
{
    switch (kind) {
    case NoticeKind::finished: return "exam.notice.finished";
    case NoticeKind::warning: return "exam.notice.warning";
    default: return "exam.notice.error";
    }
}

BalloonMessageService::MsgType TypeOf(NoticeKind kind)
{
    switch (kind) {
    case NoticeKind::finished: return BalloonMessageService::information;
    case NoticeKind::warning: return BalloonMessageService::warning;
    default: return BalloonMessageService::error;
    }
}

} // namespace

void RaiseNotice(NoticeKind kind, const CString& sentence)
{
    const CString title = GetStr(TitleKey(kind));
    BalloonMessageService("exam/Notices", __LINE__, true,
                          TypeOf(kind))(shownFor, title.GetString(), L"%s", sentence.GetString());
}

} // namespace exam
