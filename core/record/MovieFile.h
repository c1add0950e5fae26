#pragma once

#include <optional>
#include <string>

namespace exam {

/// True when the system's code page has all characters of a text.
bool IsInCodePage(const std::wstring& text);

/// A spelling of an existing path in characters of the system's code page, by which movies are
/// written. Nothing when the path has none, not even a short name.
std::optional<std::wstring> CodePagePath(const std::wstring& path);

/// The file that a movie becomes. The movie is written under another name in the same folder and
/// gets its own name when it is done. So a failure leaves neither a stub nor a damaged older movie.
class MovieTarget
{
public:
    MovieTarget() = default;
    /// Deletes the written file, unless it was put in place.
    ~MovieTarget();
    MovieTarget(const MovieTarget&) = delete;
    MovieTarget& operator=(const MovieTarget&) = delete;

    /// Chooses the file. The result is empty, or one sentence that says why no movie can be written
    /// there. An existing file is only replaced if `overwrite`.
    std::wstring Choose(const std::wstring& path, bool overwrite);

    /// The path that the movie is written to.
    const std::wstring& WritingPath() const { return m_writingPath; }

    /// Gives the written movie its name. False when the platform refuses.
    bool PutInPlace();

private:
    std::wstring m_path;
    std::wstring m_writingPath;
    bool m_overwrite = false;
};

/// Checks a closed movie: the sizes of its parts, its index, and that there are at least `frames`
/// frames. The result is empty, or one sentence about "it", the movie, that says what is not whole.
std::wstring FindMovieProblem(const std::wstring& path, int frames);

} // namespace exam
