#pragma once

#include <optional>
#include <string>

namespace exam {

/// Brings the settings that the library reads when a movie begins (section "Settings\Capture") into
/// the form that it takes, writes back what changed, and answers the codec's name.
/// A missing "RecordCodec" becomes "MJPG", so that the library does not fall back to its own
/// default; a name in another case becomes the codec's own; that of a codec which is not installed
/// stays. A "RecordQuality" that is no number becomes 100, one out of range the nearer of 0 and
/// 100, and the log says so. Nothing when the profile cannot be written.
std::optional<std::wstring> PrepareMovieSettings();

} // namespace exam
