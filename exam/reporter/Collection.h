#pragma once

#include <optional>
#include <string>
#include <vector>

// What a crash left behind, as the crash handler's settings file names it.
namespace exam {

struct Collection
{
    std::wstring archive;                    // the path of the archive to make
    std::vector<std::wstring> files;         // to put into it; some may be missing
    std::vector<std::wstring> registryTrees; // "HKCU\Software\..."
};

// Reads the settings file. Nothing when it does not name an archive.
std::optional<Collection> ReadCollection(const std::wstring& settingsFile);

// Packs the files that are there, and each registry tree as a file that registry editors read. The
// names in the archive are relative to the archive's folder. False when any of it failed; the rest
// is in the archive all the same.
bool Pack(const Collection& collection);

} // namespace exam
