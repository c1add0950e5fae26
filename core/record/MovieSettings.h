#pragma once

#include <windows.h>
#include <vfw.h>

#include <optional>
#include <string>
#include <vector>

namespace exam {

/// The places of movies' settings in the profile, from which the library reads them.
inline constexpr wchar_t movieSection[] = L"Settings\\Capture";
inline constexpr wchar_t codecEntry[] = L"RecordCodec";
inline constexpr wchar_t qualityEntry[] = L"RecordQuality";

/// "Uncompressed", and the short names of the installed codecs that record.
std::vector<std::wstring> InstalledCodecs();

/// The name of an installed codec in the form that the library needs: "Uncompressed", which stands
/// for movies without compression, or the codec's own short name. The case of `name` does not
/// matter. Nothing when there is no such codec.
std::optional<std::wstring> FindCodec(const std::wstring& name);

/// The code by which movies name an installed codec; 0 for "Uncompressed" and for no codec.
FOURCC CodeOfCodec(const std::wstring& name);

/// Corrects the settings that the library reads when a movie begins (section "Settings\Capture"),
/// writes the changes back, and returns the codec's name.
/// A missing "RecordCodec" becomes "MJPG", so that the library does not fall back to its own
/// default. A name in another case becomes the codec's own name. The name of a codec that is not
/// installed stays. A "RecordQuality" that is no number becomes 100, and one out of range becomes
/// the nearer of 0 and 100; both are logged. The result is nothing when the profile cannot be
/// written.
std::optional<std::wstring> PrepareMovieSettings();

} // namespace exam
