#include "app/CommandLine.h"

#include "service/CrashOnPurpose.h"

#include <algorithm>
#include <set>
#include <span>

namespace exam {

namespace {

// An option takes texts, or one word, or it is a flag.
struct Option
{
    const wchar_t* name;
    std::vector<std::wstring CommandLine::*> texts{};
    const wchar_t* needs = L""; // said when a text is empty
    bool isCommand = false;     // true: only one of these can be done
    void (*read)(CommandLine& options, const std::wstring& word) = nullptr;
    bool CommandLine::*flag = nullptr;

    std::size_t Values() const { return read ? 1 : texts.size(); }
};

void ReadLanguage(CommandLine& options, const std::wstring& word)
{
    if (word != L"en" && word != L"de")
        options.error = L"--language takes en or de, not '" + word + L"'";
    options.language = word;
}

void ReadConsole(CommandLine& options, const std::wstring& word)
{
    options.console = utilsExam::MapConsoleType(word.c_str());
    if (options.console == eConsoleUnknown)
        options.error = L"--console knows no model '" + word + L"'";
}

void ReadCrash(CommandLine& options, const std::wstring& word)
{
    options.crashKind = word;
    for (const CrashKind& kind : CrashKinds())
        if (word == kind.name) return;
    options.error = L"--crash takes " + CrashNames() + L", not '" + word + L"'";
}

const std::vector<Option>& Options()
{
    using Line = CommandLine;
    static const std::vector<Option> options{
        {.name = L"--language", .read = ReadLanguage},
        {.name = L"--console", .read = ReadConsole},
        {L"--tour", {&Line::tourFolder}, L"a folder", true},
        {L"--profile", {&Line::profile}, L"a file"},
        {L"--recordings", {&Line::recordings}, L"a folder"},
        {L"--cine-info", {&Line::cineInfo}, L"a file", true},
        {L"--cine-to-avi", {&Line::cineToPlay, &Line::movie}, L"two files", true},
        {L"--check-protocol", {&Line::protocolToCheck}, L"a folder", true},
        {L"--version-info", {&Line::versionFile}, L"a file", true},
        {L"--pack", {&Line::archive, &Line::folderToPack}, L"a file and a folder", true},
        {L"--unpack", {&Line::archive, &Line::folderToFill}, L"a file and a folder", true},
        {.name = L"--crash", .isCommand = true, .read = ReadCrash},
        {L"--password", {&Line::password}, L"a text"},
        {L"--log", {&Line::logFolder}, L"a folder"},
        {.name = L"--service", .flag = &Line::service},
        {.name = L"--overwrite", .flag = &Line::overwrite},
        {.name = L"--help", .flag = &Line::help},
        {.name = L"-h", .flag = &Line::help},
    };
    return options;
}

void Set(CommandLine& options, const Option& option, std::span<const std::wstring> values)
{
    if (option.flag) options.*option.flag = true;
    if (option.read) option.read(options, values.front());
    for (std::size_t i = 0; i < option.texts.size(); ++i) {
        if (values[i].empty())
            options.error = std::wstring(option.name) + L" needs " + option.needs;
        options.*option.texts[i] = values[i];
    }
}

// Reads the option at the front. The result is the number of arguments that belong to it, or 0 for
// an error.
std::size_t ReadOption(CommandLine& options, std::span<const std::wstring> arguments)
{
    const std::wstring& name = arguments.front();
    const auto option = std::find_if(Options().begin(), Options().end(),
                                     [&name](const Option& each) { return each.name == name; });
    if (option == Options().end()) {
        options.error = L"unknown argument '" + name + L"'";
        return 0;
    }
    const std::size_t values = option->Values();
    if (arguments.size() <= values) {
        options.error = name + (values == 1 ? L" needs a value" : L" needs two values");
        return 0;
    }
    Set(options, *option, arguments.subspan(1, values));
    return 1 + values;
}

// One sentence that names the options that do not go together; empty when all do.
std::wstring FindConflict(const CommandLine& options, const std::set<std::wstring>& given)
{
    std::vector<std::wstring> commands;
    for (const Option& option : Options())
        if (option.isCommand && given.contains(option.name)) commands.emplace_back(option.name);
    if (commands.size() > 1)
        return commands[0] + L" and " + commands[1] + L" cannot be done at once";
    if (options.overwrite && options.cineToPlay.empty() && options.folderToPack.empty())
        return L"--overwrite goes with --cine-to-avi or --pack";
    if (!options.password.empty() && options.folderToFill.empty())
        return L"--password goes with --unpack";
    return L"";
}

} // namespace

std::wstring CommandLine::RecordingFolder() const
{
    if (!recordings.empty()) return recordings;
    return (IsTour() ? tourFolder : L"out") + L"\\recordings";
}

CommandLine ParseCommandLine(const std::vector<std::wstring>& arguments)
{
    CommandLine result;
    std::set<std::wstring> given;
    for (std::size_t i = 0; i < arguments.size() && result.error.empty();) {
        if (!given.insert(arguments[i]).second)
            result.error = arguments[i] + L" is given twice";
        else
            i += ReadOption(result, std::span(arguments).subspan(i));
    }
    if (result.error.empty() && !result.help) result.error = FindConflict(result, given);
    return result;
}

std::wstring UsageText()
{
    return L"usage: exam.exe [OPTIONS]\n"
           L"\n"
           L"The sample exam application: shows recorded ultrasound frames in a window.\n"
           L"\n"
           L"  --language L   language of the texts: en (default) or de\n"
           L"  --console M    console model: Pemmit (default), Olkesh, Vollet, Saquin or Tavren\n"
           L"  --tour DIR     run unattended, check every step, leave pictures and files in DIR;\n"
           L"                 exits 0 only when all steps held\n"
           L"  --profile FILE keep the settings in this INI file instead of the registry; the tour "
           L"uses\n"
           L"                 exam.ini in its folder\n"
           L"  --recordings DIR\n"
           L"                 the folder of the recordings; without it, out\\recordings below the "
           L"current\n"
           L"                 folder, or recordings in the folder of the tour\n"
           L"  --log DIR      the folder of the log and of crash reports; without it, log beside "
           L"the program\n"
           L"  --service      service mode: F11 opens the menu of the service staff\n"
           L"  --help         this text\n"
           L"\n"
           L"Without a window:\n"
           L"  --cine-info FILE         print the header of a raw cine and check it and the file's "
           L"size; exits 0\n"
           L"                           when the file can be replayed whole, 1 when not\n"
           L"  --cine-to-avi FILE OUT   replay a raw cine into a movie; exits 0 when all frames "
           L"are in it\n"
           L"  --check-protocol DIR     print what will be ignored in the protocol files in DIR "
           L"and "
           L"below it, with\n"
           L"                           file and line; exits 1 when there is any\n"
           L"  --version-info FILE      print the version resource of an executable file\n"
           L"  --pack FILE DIR          pack the files of a folder, and all below it, into a zip "
           L"archive\n"
           L"  --unpack FILE DIR        unpack a zip archive into a folder\n"
           L"  --password P             the password of an encrypted archive\n"
           L"  --crash KIND             crash, to see the report: read, write, divide, illegal, "
           L"stack or thread\n"
           L"  --overwrite              let --cine-to-avi or --pack replace an existing file\n"
           L"\n"
           L"Settings, section \"Settings\\Capture\": RecordCodec is the short name of the movies' "
           L"codec (MJPG at\n"
           L"first) or Uncompressed, RecordQuality its quality in percent. Section "
           L"\"Settings\\Status\" says what\n"
           L"the status row shows; a click on the row opens the page of its settings.\n"
           L"\n"
           L"Keys:\n";
}

} // namespace exam
