#include "record/MovieSettings.h"

#include "base/ProfileText.h"

#include <base/VideoCodec.h>
#include <qor_utils/zelLogger.h>

#include <afxwin.h>

#include <algorithm>
#include <cwchar>

namespace exam {

namespace {

constexpr wchar_t firstChoice[] = L"MJPG";
constexpr wchar_t uncompressed[] = L"Uncompressed";

constexpr long lowestQuality = 0; // percent
constexpr long highestQuality = 100;

std::optional<std::wstring> PrepareCodec(CWinApp& app)
{
    const CString stored = app.GetProfileString(movieSection, codecEntry, L"");
    const std::wstring wanted = stored.IsEmpty() ? firstChoice : stored.GetString();
    const std::wstring name = FindCodec(wanted).value_or(wanted);
    if (name == stored.GetString()) return name;
    if (!app.WriteProfileString(movieSection, codecEntry, name.c_str())) return {};
    return name;
}

// True for a codec that compresses the pictures of movies. Some only show those of others.
bool IsCompressor(DWORD handler)
{
    const BITMAPINFOHEADER picture = {sizeof picture, 640, 480, 1, 32, BI_RGB,
                                      640 * 480 * 4,  0,   0,   0, 0};
    const base::VideoCodec codec(ICOpen(ICTYPE_VIDEO, handler, ICMODE_COMPRESS));
    return codec && ICCompressQuery(codec.get(), &picture, nullptr) == ICERR_OK;
}

// The number in a text; nothing when the text holds more or less than a number.
std::optional<long> Number(const wchar_t* text)
{
    wchar_t* end = nullptr;
    const long number = std::wcstol(text, &end, 10);
    if (end == text || *end != L'\0') return {};
    return number;
}

bool PrepareQuality(CWinApp& app)
{
    const CString stored = ProfileText(movieSection, qualityEntry);
    if (stored.IsEmpty()) return true;
    const std::optional<long> number = Number(stored);
    // A text that is no number becomes the highest quality, which the library takes without a
    // setting.
    const long quality = std::clamp(number.value_or(highestQuality), lowestQuality, highestQuality);
    // The library reads no text of the registry.
    const UINT read = app.GetProfileInt(movieSection, qualityEntry, -1);
    if (number == quality && read == static_cast<UINT>(quality)) return true;
    if (number != quality)
        zelLogger::zelLogHelper("exam/MovieSettings", __LINE__, qor_utils::warningLevel)(
            L"RecordQuality is '%s'; movies are recorded with %ld percent.", stored.GetString(),
            quality);
    return app.WriteProfileInt(movieSection, qualityEntry, static_cast<int>(quality)) != FALSE;
}

} // namespace

std::vector<std::wstring> InstalledCodecs()
{
    std::vector<std::wstring> names = {uncompressed};
    ICINFO info;
    base::FindVideoCodec(info, [&](const wchar_t* codec) {
        if (std::ranges::find(names, codec) == names.end() && IsCompressor(info.fccHandler))
            names.emplace_back(codec);
        return false;
    });
    return names;
}

std::optional<std::wstring> FindCodec(const std::wstring& name)
{
    const auto isNamed = [&](const wchar_t* codec) { return _wcsicmp(codec, name.c_str()) == 0; };
    if (isNamed(uncompressed)) return uncompressed;
    ICINFO info;
    if (!base::FindVideoCodec(info, isNamed)) return {};
    return info.szName;
}

FOURCC CodeOfCodec(const std::wstring& name)
{
    ICINFO info;
    const auto isNamed = [&](const wchar_t* codec) { return codec == name; };
    return base::FindVideoCodec(info, isNamed) ? info.fccHandler : 0;
}

std::optional<std::wstring> PrepareMovieSettings()
{
    CWinApp& app = *AfxGetApp();
    if (!PrepareQuality(app)) return {};
    return PrepareCodec(app);
}

} // namespace exam
