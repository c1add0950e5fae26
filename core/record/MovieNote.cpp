#include "record/MovieNote.h"

#include "base/FileReader.h"

#include <utility>

namespace exam {

namespace {

constexpr wchar_t section[] = L"Movie";

constexpr std::pair<const wchar_t*, std::int32_t MovieNote::*> entries[] = {
    {L"Width", &MovieNote::width},
    {L"Height", &MovieNote::height},
    {L"FramesPer1000s", &MovieNote::framesPer1000s},
};
constexpr wchar_t codecEntry[] = L"Codec";

std::wstring NotePath(const std::wstring& movie)
{
    return movie + L".unfinished";
}

} // namespace

void WriteNote(const std::wstring& movie, const MovieNote& note)
{
    const std::wstring path = NotePath(movie);
    for (const auto& [entry, member] : entries)
        WritePrivateProfileStringW(section, entry, std::to_wstring(note.*member).c_str(),
                                   path.c_str());
    WritePrivateProfileStringW(section, codecEntry, std::to_wstring(note.codec).c_str(),
                               path.c_str());
    WritePrivateProfileStringW(nullptr, nullptr, nullptr, path.c_str()); // writes it out now
}

std::optional<MovieNote> ReadNote(const std::wstring& movie)
{
    const std::wstring path = NotePath(movie);
    if (KindOfFile(path) != FileKind::file) return {};
    MovieNote note;
    for (const auto& [entry, member] : entries)
        note.*member =
            static_cast<std::int32_t>(GetPrivateProfileIntW(section, entry, 0, path.c_str()));
    note.codec = GetPrivateProfileIntW(section, codecEntry, 0, path.c_str());
    return note;
}

void RemoveNote(const std::wstring& movie)
{
    DeleteFileW(NotePath(movie).c_str());
}

} // namespace exam
