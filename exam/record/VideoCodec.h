#pragma once

#include <string>

namespace exam {

// The codec that movies are written with: the setting "RecordCodec", which is set to "MJPG" when
// there is none yet, so that the library does not fall back to its own default.
std::wstring MovieCodec();

// Whether movies can be written with a codec: it is "Uncompressed", or installed under this short
// name.
bool IsUsableCodec(const std::wstring& name);

} // namespace exam
