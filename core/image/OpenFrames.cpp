#include "image/OpenFrames.h"

#include "base/FileReader.h"
#include "image/CineFile.h"
#include "image/CineProblem.h"
#include "image/MovieFrames.h"
#include "image/PictureFile.h"

#include <Utils_Statics/GetStr.h>

#include <shlwapi.h>

#include <algorithm>
#include <string_view>

namespace exam {

namespace {

std::wstring Sentence(const char* key, const std::wstring& path)
{
    return GetStr(key, path.c_str()).GetString();
}

std::string BeginOf(const FileReader& file)
{
    std::string begin(static_cast<std::size_t>(std::min<std::int64_t>(file.Size(), 12)), '\0');
    if (!file.Read(0, begin.data(), begin.size())) begin.clear();
    return begin;
}

bool IsMovie(const std::string& begin)
{
    return begin.starts_with("RIFF") && begin.ends_with("AVI ");
}

bool IsPicture(const std::string& begin)
{
    using namespace std::string_view_literals;
    return std::ranges::any_of(std::initializer_list<std::string_view>{"\x89PNG"sv, "BM"sv,
                                                                       "\xFF\xD8\xFF"sv, "GIF8"sv,
                                                                       "II*\0"sv, "MM\0*"sv},
                               [&](std::string_view mark) { return begin.starts_with(mark); });
}

template <class Kind>
OpenedFrames Open(const std::wstring& path, const char* problemKey)
{
    auto source = std::make_unique<Kind>();
    if (source->Open(path)) return {std::move(source), {}};
    return {nullptr, Sentence(problemKey, path)};
}

} // namespace

bool IsShowable(const std::wstring& path)
{
    return PathMatchSpecW(path.c_str(), showablePatterns) != FALSE;
}

OpenedFrames OpenFrames(const std::wstring& path)
{
    if (const std::wstring problem = FindFileProblem(path); !problem.empty())
        return {nullptr, Sentence("exam.open.missing", path)};
    std::string begin;
    {
        FileReader file;
        if (!file.Open(path)) return {nullptr, Sentence("exam.open.locked", path)};
        begin = BeginOf(file);
    }
    if (IsMovie(begin)) return Open<MovieFrames>(path, "exam.open.movie");
    if (IsPicture(begin)) return Open<PictureFile>(path, "exam.open.picture");
    auto cine = std::make_unique<CineFile>();
    const std::wstring problem = cine->Open(path);
    if (problem.empty()) return {std::move(cine), {}};
    if (!PathMatchSpecW(path.c_str(), L"*.cine"))
        return {nullptr, Sentence("exam.open.unknown", path)};
    return {nullptr,
            GetStr("exam.open.cine", path.c_str(), InUsersLanguage(problem).c_str()).GetString()};
}

} // namespace exam
