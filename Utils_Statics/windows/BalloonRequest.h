#pragma once

#include <Utils_Statics/CToolTipProvider.h>

#include <atlstr.h>

namespace utils_statics {

// A request to show a balloon, sent to the main thread by the thread that raised the notice.
struct BalloonRequest
{
    CString text;
    CString title;
    POINT at; // screen pixels
    CToolTipProvider::IconType icon;
    unsigned int timeMs;
};

} // namespace utils_statics
