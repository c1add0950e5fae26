#pragma once

#include <string>
#include <vector>

// The marks of a recording. They stand in a file beside it, whose name is that of the recording
// with ".marks" behind it: one frame a line, counted from 1.
namespace exam {

/// The file with the marks of a recording, which may be missing.
std::wstring MarksPath(const std::wstring& recording);

/// The marked frames of a recording, counted from 0, each once and in their order. None when there
/// is no such file; lines that name no frame are left out.
std::vector<int> ReadMarks(const std::wstring& recording);

/// Marks a frame. False when the file cannot be written.
bool AddMark(const std::wstring& recording, int frame);

/// Removes the file with the marks of a recording, if there is one.
void RemoveMarks(const std::wstring& recording);

} // namespace exam
