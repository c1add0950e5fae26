#pragma once

#include "image/FrameSource.h"

#include <memory>
#include <string>

namespace exam {

/// A file that was opened to be shown.
struct OpenedFrames
{
    std::unique_ptr<FrameSource> source; ///< null when it cannot be shown
    std::wstring problem;                ///< one sentence that names the file and what can be done
};

/// Opens a file by its content: a raw cine, a movie or a picture.
OpenedFrames OpenFrames(const std::wstring& path);

/// The endings of what can be shown, as patterns of file dialogs.
inline constexpr wchar_t showablePatterns[] =
    L"*.cine;*.avi;*.png;*.bmp;*.jpg;*.jpeg;*.gif;*.tif;*.tiff";

/// True for a file whose name has one of these endings.
bool IsShowable(const std::wstring& path);

} // namespace exam
