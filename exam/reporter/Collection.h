#pragma once

#include <optional>
#include <string>
#include <vector>

// The files and registry trees that a crash left behind, as the crash handler's settings file names
// them.
namespace exam {

struct Collection
{
    std::wstring archive;                    // the path of the archive to make
    std::vector<std::wstring> files;         // to put into it; some may be missing
    std::vector<std::wstring> registryTrees; // "HKCU\Software\..."
};

// Reads the settings file. Nothing when the file does not name an archive.
std::optional<Collection> ReadCollection(const std::wstring& settingsFile);

// Packs the existing files, and each registry tree as a file for registry editors. The names in the
// archive are relative to the archive's folder. False when any of it failed; the archive still
// holds the rest.
bool Pack(const Collection& collection);

} // namespace exam
