#include "app/CommandLine.h"

#include <functional>
#include <map>

namespace exam
{

namespace
{

using Setter = std::function<void(CommandLine&, const std::wstring& value)>;

void SetLanguage(CommandLine& options, const std::wstring& value)
{
    if (value != L"en" && value != L"de") options.error = L"--language takes en or de, not '" + value + L"'";
    options.language = value;
}

void SetConsole(CommandLine& options, const std::wstring& value)
{
    options.console = utilsExam::MapConsoleType(value.c_str());
    if (options.console == EConsoleType(-1)) options.error = L"--console knows no model '" + value + L"'";
}

void SetTourFolder(CommandLine& options, const std::wstring& value)
{
    if (value.empty()) options.error = L"--tour needs a folder";
    options.tourFolder = value;
}

const std::map<std::wstring, Setter>& Options()
{
    static const std::map<std::wstring, Setter> options{
        {L"--language", SetLanguage},
        {L"--console", SetConsole},
        {L"--tour", SetTourFolder},
    };
    return options;
}

} // namespace

CommandLine ParseCommandLine(const std::vector<std::wstring>& arguments)
{
    CommandLine result;
    for (std::size_t i = 0; i < arguments.size() && result.error.empty(); ++i)
    {
        const std::wstring& name = arguments[i];
        if (name == L"--help" || name == L"-h")
        {
            result.help = true;
            continue;
        }
        const auto option = Options().find(name);
        if (option == Options().end())
            result.error = L"unknown argument '" + name + L"'";
        else if (i + 1 == arguments.size())
            result.error = name + L" needs a value";
        else
            option->second(result, arguments[++i]);
    }
    return result;
}

const wchar_t* UsageText()
{
    return L"usage: exam.exe [OPTIONS]\n"
           L"\n"
           L"The sample exam application: shows recorded ultrasound frames in a window.\n"
           L"\n"
           L"  --language L   language of the texts: en (default) or de\n"
           L"  --console M    console model: Pemmit (default), Olkesh, Vollet, Saquin or Tavren\n"
           L"  --tour DIR     run unattended, check every step, leave pictures and files in DIR;\n"
           L"                 exits 0 only when all steps held\n"
           L"  --help         this text\n"
           L"\n"
           L"Keys: Space shows the next image, F the next frame, L the other language; 1, 2 and 3 show and hide the\n"
           L"distance, angle and region tools; P switches between pointer and trackball style, Tab takes up the next\n"
           L"point; S shows the spectral strip, R turns the outline by 15 degrees; Esc leaves.\n";
}

} // namespace exam
