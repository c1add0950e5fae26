#include "record/CineInfo.h"

#include "base/Console.h"
#include "image/CineFile.h"
#include "image/RawCine.h"

#include <cwchar>
#include <iterator>

namespace exam {

namespace {

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

void PrintDescription(const CineDescription& cine)
{
    static constexpr const wchar_t* types[] = {L"B-mode", L"colour", L"spectral", L"M-mode",
                                               L"ECG"};
    static constexpr const wchar_t* probes[] = {L"curved", L"linear", L"phased"};
    const uDataDesc& stream = cine.stream;

    Field(L"type", std::to_wstring(cine.type) + L" (" + NameOf(cine.type, types) + L")");
    Number(L"count", cine.count, cine.type == uDataEcg ? L" bytes in the last block" : L" frames");
    Number(L"lines", stream.lines, L" per frame");
    Number(L"samples", stream.samples, L" per line");
    Number(L"sample size", stream.bitsPerSample, L" bits");
    Number(L"sampling frequency", stream.samplingFreq, L" Hz");
    Number(L"speed of sound", stream.soundSpeed, L" m/s");
    Field(L"probe",
          std::to_wstring(stream.probeType) + L" (" + NameOf(stream.probeType, probes) + L")");
    Number(L"elements", stream.elements);
    Number(L"pitch", stream.pitch, L" \u00B5m");
    Number(L"radius", stream.radius, L" \u00B5m");
    Field(L"sector angle", Thousandths(stream.sectorAngle) + L"\u00B0");
    Field(L"frame rate", Thousandths(stream.frameRate) + L" frames/s");
    Field(L"steering angle", Thousandths(cine.steerAngle) + L"\u00B0");
    Field(L"virtual apex angle", Thousandths(cine.apexAngle) + L"\u00B0");
    Number(L"line offset", cine.lineOffset, L" lines");
    Number(L"aperture", cine.apertureLines, L" scan lines (0: one per element)");
    Field(L"unused", std::to_wstring(cine.unused[0]) + L", " + std::to_wstring(cine.unused[1]));
}

// Prints the sizes. The result is empty, or one sentence that says what is wrong with the file.
std::wstring Check(const RawCine& cine)
{
    Number(L"payload", cine.PayloadSize(), L" bytes");
    if (const auto frameSize = cine.Description().FrameSize())
        Number(L"frame size", *frameSize, L" bytes");
    std::wstring problem = FindHeaderProblem(cine.Description());
    return problem.empty() ? FindSizeProblem(cine) : problem;
}

} // namespace

bool PrintCineInfo(const std::wstring& path)
{
    RawCine cine;
    std::wstring problem = cine.Open(path);
    if (problem.empty()) {
        PrintDescription(cine.Description());
        problem = Check(cine);
    }
    if (problem.empty()) {
        Field(L"check", L"the size is count x frame size and the header");
        return true;
    }
    WriteError(L"exam: " + path + L": " + problem + L"\n");
    return false;
}

} // namespace exam
