#include "record/CineInfo.h"

#include "base/Console.h"

#include <Utils_Statics/CineHeader.h>
#include <qor_utils/ZelProbe.h>

#include <cstring>
#include <cwchar>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>

namespace exam {

namespace {

namespace fs = std::filesystem;

struct OpenedCine
{
    CineHeader header;
    std::int64_t fileSize = 0;

    std::int64_t Payload() const { return fileSize - static_cast<std::int64_t>(sizeof header); }
};

std::wstring Read(const std::wstring& path, OpenedCine& cine)
{
    std::error_code error;
    if (!fs::is_regular_file(path, error)) return L"there is no such file";
    cine.fileSize = static_cast<std::int64_t>(fs::file_size(path, error));
    std::ifstream file(fs::path(path), std::ios::binary);
    if (error || !file) return L"the file cannot be read";
    if (cine.Payload() < 0) return L"the file is shorter than the 76 bytes of a header";
    return file.read(reinterpret_cast<char*>(&cine.header), sizeof cine.header)
               ? L""
               : L"the file cannot be read";
}

template <std::size_t count>
const wchar_t* NameOf(std::int32_t value, const wchar_t* const (&names)[count])
{
    return value >= 0 && value < static_cast<std::int32_t>(count) ? names[value] : L"unknown";
}

// Thousandths of a unit as a decimal number.
std::wstring Thousandths(std::int32_t value)
{
    wchar_t text[32];
    std::swprintf(text, std::size(text), L"%.3f", value / 1000.0);
    return text;
}

void Field(const wchar_t* name, const std::wstring& value)
{
    std::wstring label = name;
    label.resize(24, L' ');
    WriteOut(label + value + L"\n");
}

void Number(const wchar_t* name, std::int64_t value, const wchar_t* unit = L"")
{
    Field(name, std::to_wstring(value) + unit);
}

void PrintHeader(const CineHeader& header)
{
    static constexpr const wchar_t* types[] = {L"B-mode", L"colour", L"spectral", L"M-mode",
                                               L"ECG"};
    static constexpr const wchar_t* probes[] = {L"curved", L"linear", L"phased"};
    std::int32_t desc[CineHeader::descWords];
    std::memcpy(desc, header.desc, sizeof desc);
    const std::int32_t type = header.type;

    Field(L"type", std::to_wstring(type) + L" (" + NameOf(type, types) + L")");
    Number(L"count", header.frameCount,
           type == uDataEcg ? L" bytes in the last block" : L" frames");
    Number(L"lines", desc[0], L" per frame");
    Number(L"samples", desc[1], L" per line");
    Number(L"sample size", desc[2], L" bits");
    Number(L"sampling frequency", desc[3], L" Hz");
    Number(L"speed of sound", desc[4], L" m/s");
    Field(L"probe", std::to_wstring(desc[5]) + L" (" + NameOf(desc[5], probes) + L")");
    Number(L"elements", desc[6]);
    Number(L"pitch", desc[7], L" \u00B5m");
    Number(L"radius", desc[8], L" \u00B5m");
    Field(L"sector angle", Thousandths(desc[9]) + L"\u00B0");
    Field(L"frame rate", Thousandths(desc[10]) + L" frames/s");
    Field(L"steering angle", Thousandths(header.extra[0]) + L"\u00B0");
    Field(L"virtual apex angle", Thousandths(header.extra[1]) + L"\u00B0");
    Number(L"line offset", header.extra[2], L" lines");
    Number(L"aperture", header.extra[3], L" scan lines (0: one per element)");
    Field(L"unused", std::to_wstring(header.extra[4]) + L", " + std::to_wstring(header.extra[5]));
}

// Bytes of a frame; nothing when the header's numbers make none. Only B-mode frames have their size
// in the header.
std::optional<std::int64_t> FrameSize(const CineHeader& header)
{
    const auto lines = static_cast<std::int32_t>(header.desc[0]);
    const auto samples = static_cast<std::int32_t>(header.desc[1]);
    const auto bits = static_cast<std::int32_t>(header.desc[2]);
    if (header.type != uDataBMode || lines < 1 || samples < 1 || bits < 8 || bits > 64 ||
        bits % 8 != 0)
        return {};
    std::int64_t size = 0;
    if (__builtin_mul_overflow(std::int64_t{lines} * samples, std::int64_t{bits} / 8, &size))
        return {};
    return size;
}

std::wstring Bytes(std::int64_t count)
{
    return std::to_wstring(count) + L" bytes";
}

// What does not hold of the file's size, in one sentence; empty when all holds. Prints the sizes it
// goes by.
std::wstring CheckSize(const OpenedCine& cine)
{
    Number(L"payload", cine.Payload(), L" bytes");
    const auto frameSize = FrameSize(cine.header);
    if (!frameSize)
        return L"the size cannot be checked, because the header does not give the size of a frame";
    Number(L"frame size", *frameSize, L" bytes");

    const std::int32_t count = cine.header.frameCount;
    const std::int64_t whole = cine.Payload() / *frameSize;
    if (count < 0) return L"the header gives a negative count";
    if (count == 0 && cine.Payload() > 0)
        return L"the recording was not finished: its count is 0, and it holds " +
               std::to_wstring(whole) + L" whole frames";
    if (whole == count && cine.Payload() % *frameSize == 0) return L"";
    return L"the header counts " + std::to_wstring(count) + L" frames of " + Bytes(*frameSize) +
           L", but there are " + Bytes(cine.Payload()) + L" behind it (" + std::to_wstring(whole) +
           L" whole frames)";
}

} // namespace

bool PrintCineInfo(const std::wstring& path)
{
    OpenedCine cine;
    std::wstring problem = Read(path, cine);
    if (problem.empty()) {
        PrintHeader(cine.header);
        problem = CheckSize(cine);
    }
    if (problem.empty()) {
        Field(L"check", L"the size is count x frame size and the header");
        return true;
    }
    WriteError(L"exam: " + path + L": " + problem + L"\n");
    return false;
}

} // namespace exam
