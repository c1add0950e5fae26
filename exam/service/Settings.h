#pragma once

#include "service/Form.h"

#include <string>
#include <vector>

// The settings that the user chooses in one form. The profile keeps them.
namespace exam {

/// The settings in the words of the profile; at first those that the application ships with.
struct Settings
{
    std::wstring codec = L"MJPG";  ///< the short name of movies' codec, or "Uncompressed"
    std::wstring quality = L"100"; ///< of movies, in percent
    std::wstring recordings = L"out\\recordings"; ///< folder
    std::wstring log = {};                        ///< folder; empty: beside the program
    std::wstring units = L"mm";                   ///< unit of lengths: mm or cm
    std::wstring language = L"en";                ///< en or de
    std::wstring icons = L"small";                ///< icons of the status row: small or large
    std::wstring console = L"Pemmit";             ///< name of the console model

    bool operator==(const Settings& other) const = default;
};

/// The settings of the profile. One that is missing, or that says nothing known, is as shipped.
Settings ReadSettings();

/// Keeps those settings that differ from `before`. False when the profile cannot be written.
bool WriteSettings(const Settings& settings, const Settings& before);

/// Removes every setting from the profile, those of the status row and the simulated devices too.
void RemoveSettings();

/// Writes the settings into a file that the application takes for a profile, those of the status
/// row and the simulated devices too. False when it cannot be written.
bool ExportSettings(const Settings& settings, const std::wstring& path);

/// The fields of a form for the settings, in the current language, and the settings that they make.
std::vector<FormField> SettingFields(const Settings& settings);
Settings SettingsOf(const std::vector<FormField>& fields);

/// A sentence that says what is wrong with the fields; empty when nothing is. Missing folders are
/// made.
CString FindSettingProblem(const std::vector<FormField>& fields);

} // namespace exam
