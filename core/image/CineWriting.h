#pragma once

#include "image/FrameSource.h"

#include <Utils_Statics/CCineStore.h>

#include <string>

namespace exam {

/// Begins a raw cine with this description. False when the file cannot be written.
bool BeginCine(CCineStore& store, const std::wstring& path, const CineDescription& cine);

/// Writes one frame as a raw cine. False when it cannot be read or written.
bool WriteFrame(const FrameSource& source, int frame, const std::wstring& path);

} // namespace exam
