#pragma once

#include "service/Settings.h"

#include <string>
#include <vector>

namespace exam {

/// The user's requests on the command line.
struct CommandLine
{
    std::wstring language;   ///< empty: as it is set
    std::wstring console;    ///< name of the model; empty: as it is set
    std::wstring image;      ///< recording or picture that is opened; empty: none
    std::wstring tourFolder; ///< empty: stay open and interactive
    std::wstring profile;    ///< INI file that holds the settings; empty: the registry
    std::wstring recordings; ///< folder of the recordings; empty: as it is set, or the tour's
    std::wstring cineInfo;   ///< raw cine file whose header is to be printed
    std::wstring cineToPlay; ///< raw cine file to be replayed into `movie`
    std::wstring movie;
    std::wstring recordingToRepair; ///< movie or raw cine that was cut off
    std::wstring protocolToCheck;   ///< folder of protocol files
    std::wstring versionFile;       ///< executable file whose version is to be printed
    std::wstring archive;           ///< zip archive that is made or unpacked
    std::wstring folderToPack;      ///< folder that is packed into `archive`
    std::wstring folderToFill;      ///< folder that `archive` is unpacked into
    std::wstring password;          ///< password of `archive`
    std::wstring crashKind;         ///< way in which the program is to crash
    std::wstring logFolder; ///< folder of the log and the crash reports; empty: as it is set
    bool fixed = false;     ///< true: the window has the fixed form of a console
    bool service = false;   ///< true: the service mode is on
    bool overwrite = false; ///< true: files may be replaced
    bool help = false;
    bool version = false; ///< true: the program's own version is to be printed
    std::wstring error;   ///< one sentence that says what is wrong; empty when nothing is

    bool IsTour() const { return !tourFolder.empty(); }

    /// The settings of this run: those that were given in the place of `kept`. A tour records into
    /// "recordings" in its folder.
    Settings Over(Settings kept) const;

    /// True when a command was given that needs no window.
    bool IsCommand() const
    {
        return !cineInfo.empty() || !cineToPlay.empty() || !recordingToRepair.empty() ||
               !protocolToCheck.empty() || !versionFile.empty() || !archive.empty() ||
               !crashKind.empty();
    }
};

/// Reads the arguments after the program's name. Nothing is thrown; `error` says what is wrong.
CommandLine ParseCommandLine(const std::vector<std::wstring>& arguments);

/// The text of --help up to the keys, which KeyHelp() lists.
std::wstring UsageText();

} // namespace exam
