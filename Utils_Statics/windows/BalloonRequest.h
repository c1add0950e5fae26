#pragma once

#include <Utils_Statics/CToolTipProvider.h>

#include <atlstr.h>

namespace utils_statics {

// A balloon to be shown, on its way from the thread that raised the notice to the main thread.
struct BalloonRequest
{
    CString text;
    CString title;
    POINT at; // screen pixels
    CToolTipProvider::IconType icon;
    unsigned int timeMs;
};

} // namespace utils_statics
