#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace exam {

/// A file was left out for one of these reasons.
enum class SkipReason
{
    name,       ///< its name leads out of the folder, or no file can have it
    unwritable, ///< the file that is there cannot be replaced, or the disk is full
    missing     ///< the study names it, but there is no such file to pack
};

/// A file that is left out when an archive is packed or unpacked.
struct SkippedEntry
{
    std::wstring name;
    SkipReason reason;
};

/// The result of packing or unpacking.
struct ArchiveResult
{
    std::size_t files = 0;     ///< number of files packed or unpacked
    std::wstring problem = {}; ///< one sentence for InUsersLanguage(); empty when all went well
    bool isCancelled = false;  ///< the progress asked for the end
    std::vector<SkippedEntry> skipped = {}; ///< the problem names them, too
};

/// Called before each file and while it is packed, with how much of all is done, in any unit, and
/// the file's name. False ends the work there.
using ArchiveProgress =
    std::function<bool(std::size_t done, std::size_t all, const std::wstring& name)>;

/// A file that is packed, and its name in the archive.
struct PackedFile
{
    std::wstring path;
    std::wstring name;
};

/// Packs files into a zip archive. It is written under another name, beside its own, and gets its
/// own when it is whole. A failure or an early end, which takes effect within a file too, leaves
/// the archive that was there before, or none. The entries' names are in UTF-8. Any thread may call
/// it.
ArchiveResult PackFiles(const std::wstring& archive, const std::vector<PackedFile>& files,
                        const ArchiveProgress& progress);

/// The files of a folder and below it, but for one, with names relative to the folder; sorted.
/// Nothing when the folder cannot be read.
std::optional<std::vector<PackedFile>> FilesBelow(const std::wstring& folder,
                                                  const std::wstring& leftOut);

/// Packs all files in a folder and below it. Empty folders are left out.
ArchiveResult PackFolder(const std::wstring& archive, const std::wstring& folder,
                         const ArchiveProgress& progress);

/// The fate of files that an unpacked archive has too.
enum class Existing
{
    keep, ///< nothing is unpacked while there is any
    replace
};

/// The names of an archive's entries whose files a folder has already.
std::vector<std::wstring> FilesInTheWay(const std::wstring& archive, const std::wstring& folder);

/// Unpacks a zip archive into a folder, which is made if it is missing. Each file gets its name
/// when it is whole, so a failure leaves no part of one. `password` is for encrypted entries. The
/// library cannot extract an entry that is a folder, so an archive with one is unpacked up to it,
/// and `problem` says so. It also names skipped entries: those whose name leads out of the folder,
/// or whose file cannot be written; the rest is unpacked. The process's current folder changes
/// meanwhile, so nobody else may use it.
ArchiveResult UnpackArchive(const std::wstring& archive, const std::wstring& folder,
                            const std::string& password, Existing existing,
                            const ArchiveProgress& progress);

/// The names of a zip archive's entries, in the order of its directory. Nothing when the file is
/// not a zip archive or its directory is damaged.
std::optional<std::vector<std::wstring>> ReadEntryNames(const std::wstring& archive);

/// Packs a folder and prints the result. False, with a sentence on standard error, when it failed,
/// and when the archive exists and `overwrite` does not allow replacing it.
bool PackCommand(const std::wstring& archive, const std::wstring& folder, bool overwrite);

/// Unpacks an archive into a folder and prints the result. False, with a sentence on standard
/// error, when not all of it is there, and when files are there that `overwrite` does not allow
/// replacing.
bool UnpackCommand(const std::wstring& archive, const std::wstring& folder,
                   const std::wstring& password, bool overwrite);

} // namespace exam
