// This compares word splitting, text formatting and layout file look-up with the plainest form in
// the standard library.
#include "RatioReporter.h"

#include <benchmark/benchmark.h>
#include <test_support/Files.h>
#include <test_support/TemporaryFolder.h>
#include <Utils_Statics/GetStr.h>
#include <Utils_Statics/StringParse.h>
#include <Utils_Statics/utilsExam.h>
#include <zel_string_convert/TableLoading.h>
#include <zel_string_convert/ZelTString.h>

#include <windows.h>

#include <cstdio>
#include <filesystem>
#include <map>
#include <sstream>
#include <string>
#include <vector>

namespace {

const std::wstring sentence =
    L"The quick brown fox jumps over the lazy dog and looks for a place to sleep until noon";

void GetAllWords(benchmark::State& state)
{
    const CString text(sentence.c_str());
    CStringArray words;
    for (auto _ : state) {
        StringParse::GetAllWords(text, words, L' ');
        benchmark::DoNotOptimize(words.GetSize());
    }
}

void GetlineOfStringStream(benchmark::State& state)
{
    std::vector<std::wstring> words;
    for (auto _ : state) {
        words.clear();
        std::wistringstream stream(sentence);
        for (std::wstring word; std::getline(stream, word, L' ');)
            words.push_back(word);
        benchmark::DoNotOptimize(words.size());
    }
}

void FindAndSubstr(benchmark::State& state)
{
    std::vector<std::wstring> words;
    for (auto _ : state) {
        words.clear();
        std::size_t begin = 0;
        for (std::size_t end; (end = sentence.find(L' ', begin)) != std::wstring::npos;
             begin = end + 1)
            words.push_back(sentence.substr(begin, end - begin));
        words.push_back(sentence.substr(begin));
        benchmark::DoNotOptimize(words.size());
    }
}

void GetStrFormatted(benchmark::State& state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(GetStr("bench.images", 17, L"Meier", 2.5));
}

// Does the same without a check: looks a map up and has the C library format into a buffer.
void MapAndSwprintf(benchmark::State& state)
{
    const std::map<std::string, std::wstring> texts{{"bench.images", L"%d Bilder von %s (%.1f MB)"},
                                                    {"bench.plain", L"Sichern"}};
    for (auto _ : state) {
        wchar_t buffer[256];
        _snwprintf(buffer, 256, texts.at("bench.images").c_str(), 17, L"Meier", 2.5);
        std::wstring result = buffer;
        benchmark::DoNotOptimize(result);
    }
}

void GetStrPlain(benchmark::State& state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(GetStr("bench.plain"));
}

void MapAndCopy(benchmark::State& state)
{
    const std::map<std::string, std::wstring> texts{{"bench.images", L"%d Bilder von %s (%.1f MB)"},
                                                    {"bench.plain", L"Sichern"}};
    for (auto _ : state) {
        std::wstring result = texts.at("bench.plain");
        benchmark::DoNotOptimize(result);
    }
}

namespace fs = std::filesystem;

const test_support::TemporaryFolder& LayoutFolder()
{
    static const test_support::TemporaryFolder folder;
    return folder;
}

fs::path Reference()
{
    return LayoutFolder() / L"main.xml";
}

void ParsePathFound(benchmark::State& state)
{
    const std::wstring reference = L"file:///" + Reference().generic_wstring();
    for (auto _ : state)
        benchmark::DoNotOptimize(utilsExam::ParsePath(reference.c_str(), L"img.png"));
}

void FilesystemExists(benchmark::State& state)
{
    const fs::path reference = Reference();
    for (auto _ : state) {
        fs::path found = reference.parent_path() / L"img.png";
        if (!fs::exists(found)) state.SkipWithError("the file is gone");
        benchmark::DoNotOptimize(found);
    }
}

void ParsePathRelative(benchmark::State& state)
{
    const std::wstring reference = L"file:///" + Reference().generic_wstring();
    for (auto _ : state)
        benchmark::DoNotOptimize(utilsExam::ParsePath(reference.c_str(), L"..\\img.png"));
}

void FilesystemCompose(benchmark::State& state)
{
    const fs::path reference = Reference();
    for (auto _ : state) {
        std::wstring composed = (reference.parent_path() / L"..\\img.png").generic_wstring();
        benchmark::DoNotOptimize(composed);
    }
}

BENCHMARK(GetAllWords);
BENCHMARK(FindAndSubstr);
BENCHMARK(GetlineOfStringStream);
BENCHMARK(GetStrFormatted);
BENCHMARK(MapAndSwprintf);
BENCHMARK(GetStrPlain);
BENCHMARK(MapAndCopy);
BENCHMARK(ParsePathFound);
BENCHMARK(FilesystemExists);
BENCHMARK(ParsePathRelative);
BENCHMARK(FilesystemCompose);

void PrintRatios(const RatioReporter& reporter)
{
    reporter.PrintRatio("GetAllWords", "FindAndSubstr");
    reporter.PrintRatio("GetAllWords", "GetlineOfStringStream");
    reporter.PrintRatio("GetStrFormatted", "MapAndSwprintf");
    reporter.PrintRatio("GetStrPlain", "MapAndCopy");
    reporter.PrintRatio("ParsePathFound", "FilesystemExists");
    reporter.PrintRatio("ParsePathRelative", "FilesystemCompose");
}

constexpr const char* table =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<xliff version=\"1.2\" xmlns=\"urn:oasis:names:tc:xliff:document:1.2\">"
    "<file original=\"bench\" datatype=\"plaintext\" source-language=\"en\" "
    "target-language=\"de\"><body>"
    "<trans-unit id=\"bench.images\"><source>%d images of %s (%.1f MB)</source>"
    "<target>%d Bilder von %s (%.1f MB)</target></trans-unit>"
    "<trans-unit id=\"bench.plain\"><source>Save</source><target>Sichern</target></trans-unit>"
    "</body></file></xliff>\n";

} // namespace

int main(int argc, char** argv)
{
    test_support::WriteFile(LayoutFolder() / L"img.png", "x");
    test_support::WriteFile(LayoutFolder() / L"texts.xlf", table);
    if (!zel_string_convert::LoadTable(LayoutFolder() / L"texts.xlf") ||
        !zel_string_convert::SetLanguage(L"de"))
        return 1;
    return RatioReporter::RunAll(argc, argv, PrintRatios);
}
