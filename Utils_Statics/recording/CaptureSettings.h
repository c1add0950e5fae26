#pragma once

#include <atlstr.h>

#include <windows.h>

/// The application's settings for recording movies, section "Settings\Capture" of its profile.
/// Without an application object every setting has its default.
namespace capture_settings {

/// "RecordCodec": the codec's short name, or exactly "Uncompressed"; "XVID" by default.
CString recordCodec();

/// "RecordQuality", a percentage (100 by default), in the hundredths of a percent that codecs count
/// in.
DWORD recordQuality();

} // namespace capture_settings
