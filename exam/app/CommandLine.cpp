#include "app/CommandLine.h"

#include "service/CrashOnPurpose.h"

#include <functional>
#include <map>
#include <set>
#include <span>

namespace exam {

namespace {

// Points to the argument that follows an option's name.
using Values = const std::wstring*;

struct Option
{
    std::size_t values;
    std::function<void(CommandLine&, Values)> set;
};

void SetLanguage(CommandLine& options, Values values)
{
    const std::wstring& value = *values;
    if (value != L"en" && value != L"de")
        options.error = L"--language takes en or de, not '" + value + L"'";
    options.language = value;
}

void SetConsole(CommandLine& options, Values values)
{
    const std::wstring& value = *values;
    options.console = utilsExam::MapConsoleType(value.c_str());
    if (options.console == eConsoleUnknown)
        options.error = L"--console knows no model '" + value + L"'";
}

void SetTourFolder(CommandLine& options, Values values)
{
    if (values->empty()) options.error = L"--tour needs a folder";
    options.tourFolder = *values;
}

void SetProfile(CommandLine& options, Values values)
{
    if (values->empty()) options.error = L"--profile needs a file";
    options.profile = *values;
}

void SetRecordings(CommandLine& options, Values values)
{
    if (values->empty()) options.error = L"--recordings needs a folder";
    options.recordings = *values;
}

void SetCineInfo(CommandLine& options, Values values)
{
    if (values->empty()) options.error = L"--cine-info needs a file";
    options.cineInfo = *values;
}

void SetCineToAvi(CommandLine& options, Values values)
{
    if (values[0].empty() || values[1].empty()) options.error = L"--cine-to-avi needs two files";
    options.cineToPlay = values[0];
    options.movie = values[1];
}

void SetProtocolToCheck(CommandLine& options, Values values)
{
    if (values->empty()) options.error = L"--check-protocol needs a folder";
    options.protocolToCheck = *values;
}

void SetVersionInfo(CommandLine& options, Values values)
{
    if (values->empty()) options.error = L"--version-info needs a file";
    options.versionFile = *values;
}

void SetPack(CommandLine& options, Values values)
{
    if (values[0].empty() || values[1].empty()) options.error = L"--pack needs a file and a folder";
    options.archive = values[0];
    options.folderToPack = values[1];
}

void SetUnpack(CommandLine& options, Values values)
{
    if (values[0].empty() || values[1].empty())
        options.error = L"--unpack needs a file and a folder";
    options.archive = values[0];
    options.folderToFill = values[1];
}

void SetPassword(CommandLine& options, Values values)
{
    if (values->empty()) options.error = L"--password needs a text";
    options.password = *values;
}

void SetCrash(CommandLine& options, Values values)
{
    options.crashKind = *values;
    for (const CrashKind& kind : CrashKinds())
        if (*values == kind.name) return;
    options.error = L"--crash takes " + CrashNames() + L", not '" + *values + L"'";
}

void SetLog(CommandLine& options, Values values)
{
    if (values->empty()) options.error = L"--log needs a folder";
    options.logFolder = *values;
}

void SetService(CommandLine& options, Values)
{
    options.service = true;
}

void SetOverwrite(CommandLine& options, Values)
{
    options.overwrite = true;
}

void SetHelp(CommandLine& options, Values)
{
    options.help = true;
}

const std::map<std::wstring, Option>& Options()
{
    static const std::map<std::wstring, Option> options{
        {L"--language", {1, SetLanguage}},
        {L"--console", {1, SetConsole}},
        {L"--tour", {1, SetTourFolder}},
        {L"--profile", {1, SetProfile}},
        {L"--recordings", {1, SetRecordings}},
        {L"--cine-info", {1, SetCineInfo}},
        {L"--cine-to-avi", {2, SetCineToAvi}},
        {L"--check-protocol", {1, SetProtocolToCheck}},
        {L"--version-info", {1, SetVersionInfo}},
        {L"--pack", {2, SetPack}},
        {L"--unpack", {2, SetUnpack}},
        {L"--password", {1, SetPassword}},
        {L"--crash", {1, SetCrash}},
        {L"--log", {1, SetLog}},
        {L"--service", {0, SetService}},
        {L"--overwrite", {0, SetOverwrite}},
        {L"--help", {0, SetHelp}},
        {L"-h", {0, SetHelp}},
    };
    return options;
}

// Reads the option at the front. The result is the number of arguments that belong to it, or 0 for
// an error.
std::size_t ReadOption(CommandLine& options, std::span<const std::wstring> arguments)
{
    const std::wstring& name = arguments.front();
    const auto option = Options().find(name);
    if (option == Options().end()) {
        options.error = L"unknown argument '" + name + L"'";
        return 0;
    }
    const std::size_t values = option->second.values;
    if (arguments.size() <= values) {
        options.error = name + (values == 1 ? L" needs a value" : L" needs two values");
        return 0;
    }
    option->second.set(options, arguments.data() + 1);
    return 1 + values;
}

// One sentence that names the options that do not go together; empty when all do.
std::wstring FindConflict(const CommandLine& options)
{
    std::vector<std::wstring> commands;
    if (options.IsTour()) commands.emplace_back(L"--tour");
    if (!options.cineInfo.empty()) commands.emplace_back(L"--cine-info");
    if (!options.cineToPlay.empty()) commands.emplace_back(L"--cine-to-avi");
    if (!options.protocolToCheck.empty()) commands.emplace_back(L"--check-protocol");
    if (!options.versionFile.empty()) commands.emplace_back(L"--version-info");
    if (!options.folderToPack.empty()) commands.emplace_back(L"--pack");
    if (!options.folderToFill.empty()) commands.emplace_back(L"--unpack");
    if (!options.crashKind.empty()) commands.emplace_back(L"--crash");
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
    if (result.error.empty() && !result.help) result.error = FindConflict(result);
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
