#pragma once

#include <optional>
#include <string>

namespace exam {

/// The short name of the codec that movies are written with, from the setting "RecordCodec". A
/// missing setting becomes "MJPG", so that the library does not fall back to its own default.
/// Nothing when the setting is missing and cannot be written.
std::optional<std::wstring> MovieCodec();

/// Whether movies can be written with the codec `name`: it is "Uncompressed", or the short name of
/// an installed one.
bool IsUsableCodec(const std::wstring& name);

} // namespace exam
