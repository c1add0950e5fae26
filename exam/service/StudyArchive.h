#pragma once

#include <cstddef>
#include <functional>
#include <string>

namespace exam {

/// What became of packing or unpacking.
struct ArchiveResult
{
    std::size_t files = 0; ///< that were packed or unpacked
    std::wstring problem;  ///< one sentence; empty when all went well
};

/// Told before each file: how many are done, how many there are in all, and its name.
using ArchiveProgress =
    std::function<void(std::size_t done, std::size_t all, const std::wstring& name)>;

/// Packs the files of a folder and all below it, under names relative to the folder, into a new zip
/// archive. Empty folders are left out. A failure leaves no archive.
ArchiveResult PackFolder(const std::wstring& archive, const std::wstring& folder,
                         const ArchiveProgress& progress);

/// Unpacks a zip archive into a folder, which is made if it is missing, over files that are there.
/// `password` is for encrypted entries. Extraction stays at an entry that is a folder, so that an
/// archive with one is unpacked up to it, and that is told as a problem. So is what was skipped,
/// because its name would lead out of the folder or no file of that name could be written; the rest
/// is unpacked. UI thread: the process's current folder is another one meanwhile.
ArchiveResult UnpackArchive(const std::wstring& archive, const std::wstring& folder,
                            const std::string& password, const ArchiveProgress& progress);

} // namespace exam
