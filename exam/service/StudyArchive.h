#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace exam {

/// The result of packing or unpacking.
struct ArchiveResult
{
    std::size_t files = 0; ///< number of files packed or unpacked
    std::wstring problem;  ///< one sentence; empty when all went well
};

/// Called before each file with the number of finished files, the number of all files, and its
/// name.
using ArchiveProgress =
    std::function<void(std::size_t done, std::size_t all, const std::wstring& name)>;

/// Packs all files in a folder and below it, under names relative to the folder, into a new zip
/// archive. Empty folders are left out. A failure leaves no archive.
ArchiveResult PackFolder(const std::wstring& archive, const std::wstring& folder,
                         const ArchiveProgress& progress);

/// Unpacks a zip archive into a folder, which is made if it is missing. Existing files are
/// replaced. `password` is for encrypted entries. The library cannot extract an entry that is a
/// folder, so an archive with one is unpacked up to it, and `problem` says so. It also names
/// skipped entries: those whose name leads out of the folder, or whose file cannot be written; the
/// rest is unpacked. UI thread only, because the process's current folder changes meanwhile.
ArchiveResult UnpackArchive(const std::wstring& archive, const std::wstring& folder,
                            const std::string& password, const ArchiveProgress& progress);

/// The names of a zip archive's entries, in the order of its directory. Nothing when the file is
/// not a zip archive or its directory is damaged.
std::optional<std::vector<std::wstring>> ReadEntryNames(const std::wstring& archive);

/// Packs a folder and prints the result. False, with a sentence on standard error, when it failed,
/// and when the archive exists and `overwrite` does not allow replacing it.
bool PackCommand(const std::wstring& archive, const std::wstring& folder, bool overwrite);

/// Unpacks an archive into a folder and prints the result. False, with a sentence on standard
/// error, when not all of it is there.
bool UnpackCommand(const std::wstring& archive, const std::wstring& folder,
                   const std::wstring& password);

} // namespace exam
