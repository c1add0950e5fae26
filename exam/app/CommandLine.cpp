#include "app/CommandLine.h"

#include "service/CrashOnPurpose.h"

#include <Utils_Statics/utilsExam.h>

#include <algorithm>
#include <set>
#include <span>

namespace exam {

namespace {

using Values = std::span<const std::wstring>;

// The part of --help that describes an option.
enum class Place
{
    window, // options of the application with its window
    command // commands that need no window, and their options
};

struct Option
{
    std::wstring_view name;
    std::wstring_view arguments; // the names of its values in --help, with blanks between them
    Place place;
    bool isCommand; // true: no other command can be given besides
    // Said of an option with an empty value: it "needs a folder". Null: `keep` judges the value.
    const wchar_t* needs;
    std::wstring (*keep)(CommandLine&, Values); // the result says what is wrong; empty: nothing
    const wchar_t* help;                        // lines of --help; null: not described
};

template <std::wstring CommandLine::*... members>
std::wstring Keep(CommandLine& options, Values values)
{
    auto value = values.begin();
    ((options.*members = *value++), ...);
    return L"";
}

template <bool CommandLine::*member>
std::wstring Set(CommandLine& options, Values)
{
    options.*member = true;
    return L"";
}

std::wstring KeepLanguage(CommandLine& options, Values values)
{
    options.language = values[0];
    if (values[0] == L"en" || values[0] == L"de") return L"";
    return L"--language takes en or de, not '" + values[0] + L"'";
}

std::wstring KeepConsole(CommandLine& options, Values values)
{
    options.console = values[0];
    if (utilsExam::MapConsoleType(values[0].c_str()) != eConsoleUnknown) return L"";
    return L"--console knows no model '" + values[0] + L"'";
}

std::wstring KeepCrash(CommandLine& options, Values values)
{
    options.crashKind = values[0];
    std::wstring names;
    for (const std::wstring& name : CrashNames()) {
        if (values[0] == name) return L"";
        names += name + L", ";
    }
    return L"--crash takes " + names + L"not '" + values[0] + L"'";
}

using C = CommandLine;
constexpr Option options[] = {
    {L"--language", L"L", Place::window, false, nullptr, KeepLanguage,
     L"language of the texts: en or de; without it, as it is set"},
    {L"--console", L"M", Place::window, false, nullptr, KeepConsole,
     L"console model: Pemmit, Olkesh, Vollet, Saquin or Tavren; without it, as it is set"},
    {L"--fixed", L"", Place::window, false, nullptr, Set<&C::fixed>,
     L"show the window in the fixed form of a console, 1024 x 768 pixels with the\n"
     L"control panel below it, as the tour does"},
    {L"--tour", L"DIR", Place::window, true, L"a folder", Keep<&C::tourFolder>,
     L"run unattended, check every step, leave pictures and files in DIR;\n"
     L"exits 0 only when all steps held"},
    {L"--profile", L"FILE", Place::window, false, L"a file", Keep<&C::profile>,
     L"keep the settings in this INI file instead of the registry; the tour uses\n"
     L"exam.ini in its folder"},
    {L"--recordings", L"DIR", Place::window, false, L"a folder", Keep<&C::recordings>,
     L"the folder of the recordings; without it, as it is set (out\\recordings below the\n"
     L"current folder at first), or recordings in the folder of the tour"},
    {L"--log", L"DIR", Place::window, false, L"a folder", Keep<&C::logFolder>,
     L"the folder of the log and of crash reports; without it, as it is set (log\n"
     L"beside the program at first)"},
    {L"--service", L"", Place::window, false, nullptr, Set<&C::service>,
     L"service mode: F11 opens the menu of the service staff"},
    {L"--help", L"", Place::window, false, nullptr, Set<&C::help>, L"this text"},
    {L"--version", L"", Place::window, false, nullptr, Set<&C::version>, L"the program's version"},
    {L"-h", L"", Place::window, false, nullptr, Set<&C::help>, nullptr},
    {L"--cine-info", L"FILE", Place::command, true, L"a file", Keep<&C::cineInfo>,
     L"print the header of a raw cine and check it and the file's size; exits 0\n"
     L"when the file can be replayed whole, 1 when not"},
    {L"--cine-to-avi", L"FILE OUT", Place::command, true, L"two files",
     Keep<&C::cineToPlay, &C::movie>,
     L"replay a raw cine into a movie; exits 0 when all frames are in it"},
    {L"--repair", L"FILE", Place::command, true, L"a file", Keep<&C::recordingToRepair>,
     L"repair a movie or a raw cine whose recording was cut off: its whole frames\n"
     L"stay, and the damaged file is replaced when the repaired one is whole"},
    {L"--check-protocol", L"DIR", Place::command, true, L"a folder", Keep<&C::protocolToCheck>,
     L"print what will be ignored in the protocol files in DIR and below it, with\n"
     L"file and line; exits 1 when there is any"},
    {L"--version-info", L"FILE", Place::command, true, L"a file", Keep<&C::versionFile>,
     L"print the version resource of an executable file"},
    {L"--pack", L"FILE DIR", Place::command, true, L"a file and a folder",
     Keep<&C::archive, &C::folderToPack>,
     L"pack the files of a folder, and all below it, into a zip archive"},
    {L"--unpack", L"FILE DIR", Place::command, true, L"a file and a folder",
     Keep<&C::archive, &C::folderToFill>, L"unpack a zip archive into a folder"},
    {L"--password", L"P", Place::command, false, L"a text", Keep<&C::password>,
     L"the password of an encrypted archive"},
    {L"--crash", L"KIND", Place::command, true, nullptr, KeepCrash,
     L"crash, to see the report: read, write, divide, illegal, stack or thread"},
    {L"--overwrite", L"", Place::command, false, nullptr, Set<&C::overwrite>,
     L"let --cine-to-avi, --pack or --unpack replace existing files"},
};

std::size_t ValuesOf(const Option& option)
{
    if (option.arguments.empty()) return 0;
    return 1 + static_cast<std::size_t>(std::ranges::count(option.arguments, L' '));
}

// Reads the option at the front. The result is the number of arguments that belong to it, or 0 for
// an error.
std::size_t ReadOption(CommandLine& result, Values arguments)
{
    const std::wstring& name = arguments.front();
    if (!name.empty() && !name.starts_with(L"-") && result.image.empty()) {
        result.image = name;
        return 1;
    }
    const auto* const option = std::ranges::find(options, name, &Option::name);
    if (option == std::end(options)) {
        result.error = L"unknown argument '" + name + L"'";
        return 0;
    }
    const std::size_t count = ValuesOf(*option);
    if (arguments.size() <= count) {
        result.error = name + (count == 1 ? L" needs a value" : L" needs two values");
        return 0;
    }
    const Values values = arguments.subspan(1, count);
    if (option->needs && std::ranges::any_of(values, &std::wstring::empty))
        result.error = name + L" needs " + option->needs;
    else
        result.error = option->keep(result, values);
    return 1 + count;
}

// One sentence that names the options that do not go together; empty when all do.
std::wstring FindConflict(const std::set<std::wstring, std::less<>>& given)
{
    std::wstring first;
    for (const Option& option : options) {
        if (!option.isCommand || !given.contains(option.name)) continue;
        if (!first.empty())
            return first + L" and " + std::wstring(option.name) + L" cannot be done at once";
        first = option.name;
    }
    if (given.contains(L"--overwrite") && first != L"--cine-to-avi" && first != L"--pack" &&
        first != L"--unpack")
        return L"--overwrite goes with --cine-to-avi, --pack or --unpack";
    if (given.contains(L"--password") && first != L"--unpack")
        return L"--password goes with --unpack";
    return L"";
}

// The lines of --help about the options of one place. What an option does stands from `column` on,
// on the next line when its name is too long.
std::wstring Describe(Place place, std::size_t column)
{
    const std::wstring indent(column, L' ');
    std::wstring text;
    for (const Option& option : options) {
        if (option.place != place || !option.help) continue;
        std::wstring line = L"  " + std::wstring(option.name);
        if (!option.arguments.empty()) line += L" " + std::wstring(option.arguments);
        if (line.size() < column)
            line.resize(column, L' ');
        else
            line += L"\n" + indent;
        for (const wchar_t* letter = option.help; *letter; ++letter)
            line += *letter == L'\n' ? L"\n" + indent : std::wstring(1, *letter);
        text += line + L"\n";
    }
    return text;
}

} // namespace

Settings CommandLine::Over(Settings kept) const
{
    if (!language.empty()) kept.language = language;
    if (!console.empty()) kept.console = console;
    if (!logFolder.empty()) kept.log = logFolder;
    if (IsTour()) kept.recordings = tourFolder + L"\\recordings";
    if (!recordings.empty()) kept.recordings = recordings;
    return kept;
}

CommandLine ParseCommandLine(const std::vector<std::wstring>& arguments)
{
    CommandLine result;
    std::set<std::wstring, std::less<>> given;
    for (std::size_t i = 0; i < arguments.size() && result.error.empty();) {
        if (!given.insert(arguments[i]).second)
            result.error = arguments[i] + L" is given twice";
        else
            i += ReadOption(result, Values(arguments).subspan(i));
    }
    if (result.error.empty() && !result.help) result.error = FindConflict(given);
    if (result.error.empty() && result.IsCommand() && !result.image.empty())
        result.error = L"unknown argument '" + result.image + L"'";
    return result;
}

std::wstring UsageText()
{
    return L"usage: exam.exe [OPTIONS] [FILE]\n"
           L"\n"
           L"The sample exam application: shows recorded and simulated ultrasound frames in a\n"
           L"window. It opens FILE, a raw cine, a movie or a picture.\n"
           L"\n" +
           Describe(Place::window, 17) +
           L"\n"
           L"Without a window:\n" +
           Describe(Place::command, 27) +
           L"\n"
           L"F12 opens the settings; Ctrl+I exports them as a file for --profile.\n"
           L"\n"
           L"Keys:\n";
}

} // namespace exam
