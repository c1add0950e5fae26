#pragma once

#include <atlstr.h>

#include <windows.h>

// The application's settings for recording movies, section "Settings\Capture" of its profile.
// Without an application object every setting has its default.
namespace utils_statics {

// "RecordCodec": the codec's short name, or exactly "Uncompressed"; "XVID" by default.
CString RecordCodec();

// "RecordQuality", a percentage (100 by default), converted to the codecs' hundredths of a percent.
DWORD RecordQuality();

} // namespace utils_statics
