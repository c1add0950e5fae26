#pragma once

#include <string>

namespace exam {

/// Prints the header of a raw cine file, one field a line. It checks that the frames can be shown
/// and are as many as the header counts. False, with a sentence on standard error, when that does
/// not hold.
bool PrintCineInfo(const std::wstring& path);

/// Replays a raw cine file into a movie of its scan-converted frames, and shows the progress on
/// standard output. An existing movie is only replaced if `overwrite`. False, with a sentence on
/// standard error, when the movie lacks frames that the recording promises.
bool ReplayCine(const std::wstring& path, const std::wstring& movie, bool overwrite);

} // namespace exam
