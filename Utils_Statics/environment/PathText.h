#pragma once

#include <windows.h>

#include <string>

// Path texts and the bounds of path buffers.
namespace utils_statics {

// `text`, or an empty text for null.
inline const wchar_t* OrEmpty(const wchar_t* text)
{
    return text ? text : L"";
}

// Replaces every `from` with `to`.
void ReplaceAll(std::wstring& text, wchar_t from, wchar_t to);

// Removes every occurrence of `part`, in one pass from the left.
void RemoveAll(std::wstring& text, const std::wstring& part);

// Turns each pair of backslashes into one, in one pass from the left without overlap: three become
// two. The two leading backslashes of a network path become one as well; network paths are not
// supported here.
void CollapseBackslashes(std::wstring& path);

// `path` (null is empty) with backslashes only, collapsed `passes` times.
std::wstring NormalisedPath(const wchar_t* path, int passes);

void StripTrailingSeparators(std::wstring& path);

// Ensures that a text that is not empty ends in a backslash.
void EnsureTrailingBackslash(std::wstring& path);

// A path for a function of the platform that edits in place; at most MAX_PATH - 1 characters.
class PathBuffer
{
public:
    // A longer path leaves the buffer empty.
    explicit PathBuffer(const std::wstring& path);

    wchar_t* data() { return m_text; }
    std::wstring Text() const { return m_text; }

private:
    wchar_t m_text[MAX_PATH] = {};
};

// `path`, of any length, without its last component.
std::wstring WithoutLastComponent(std::wstring path);

// `path`, of any length, without one backslash at its end. The root of a drive keeps its own.
std::wstring WithoutTrailingBackslash(std::wstring path);

// True when there is a file or folder of this name.
bool PathExists(const std::wstring& path);

// The process's current directory; empty when it does not fit a path buffer.
std::wstring CurrentDirectory();

} // namespace utils_statics
