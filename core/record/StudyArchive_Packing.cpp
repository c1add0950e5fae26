// The packing of archives. The library packs a file in one call, which nobody can end; here the
// user can, at any moment.
#include "record/StudyArchive.h"

#include "base/FileReader.h"
#include "base/UnusedPath.h"
#include "image/CineProblem.h"

#include <base/Encoding.h>
#include <base/FilePath.h>
#include <base/FileReplacement.h>
#include <base/Owner.h>

#include <zip.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>

namespace exam {

namespace {

namespace fs = std::filesystem;

struct ZipWriterTraits
{
    using Handle = zipFile;
    static zipFile Empty() noexcept { return nullptr; }
    static void Release(zipFile writer) noexcept { zipClose(writer, nullptr); }
};

// Archives have the local time of a file's last write.
zip_fileinfo FactsOf(const std::wstring& path)
{
    zip_fileinfo facts = {};
    WIN32_FILE_ATTRIBUTE_DATA data = {};
    FILETIME local = {};
    WORD date = 0;
    WORD time = 0;
    if (GetFileAttributesExW(path.c_str(), GetFileExInfoStandard, &data) &&
        FileTimeToLocalFileTime(&data.ftLastWriteTime, &local) &&
        FileTimeToDosDateTime(&local, &date, &time))
        facts.dosDate = uLong{date} << 16 | time;
    return facts;
}

bool OpenEntry(zipFile zip, const PackedFile& file, std::int64_t size)
{
    constexpr uLong utf8Flag = 0x800;
    constexpr std::int64_t huge = 0xFF000000; // some less than 4 GiB: data may become longer
    const zip_fileinfo facts = FactsOf(file.path);
    return zipOpenNewFileInZip4_64(zip, base::Utf8FromWide(file.name).c_str(), &facts, nullptr, 0,
                                   nullptr, 0, nullptr, Z_DEFLATED, Z_DEFAULT_COMPRESSION, 0,
                                   -MAX_WBITS, DEF_MEM_LEVEL, Z_DEFAULT_STRATEGY, nullptr, 0, 0,
                                   utf8Flag, size >= huge) == ZIP_OK;
}

enum class Added
{
    whole,
    cancelled,
    failed
};

// Adds one file, and tells after each block how many bytes of it are packed.
Added AddFile(zipFile zip, const PackedFile& file,
              const std::function<bool(std::int64_t done)>& tell)
{
    FileReader source;
    if (!source.Open(file.path) || !OpenEntry(zip, file, source.Size())) return Added::failed;
    std::vector<char> block(0x10000);
    for (std::int64_t done = 0; done < source.Size();) {
        if (!tell(done)) return Added::cancelled;
        const std::size_t size = static_cast<std::size_t>(
            std::min<std::int64_t>(source.Size() - done, static_cast<std::int64_t>(block.size())));
        if (!source.Read(done, block.data(), size) ||
            zipWriteInFileInZip(zip, block.data(), static_cast<unsigned>(size)) != ZIP_OK)
            return Added::failed;
        done += static_cast<std::int64_t>(size);
    }
    return zipCloseFileInZip(zip) == ZIP_OK ? Added::whole : Added::failed;
}

std::int64_t SizeOf(const std::wstring& path)
{
    FileReader file;
    return file.Open(path) ? file.Size() : 0;
}

ArchiveResult AddFiles(zipFile zip, const std::vector<PackedFile>& files,
                       const ArchiveProgress& progress)
{
    const auto kilobytes = [](std::int64_t bytes) {
        return static_cast<std::size_t>(bytes / 1024);
    };
    ArchiveResult result;
    std::int64_t all = 0;
    for (const PackedFile& file : files)
        all += SizeOf(file.path);
    std::int64_t before = 0;
    for (const PackedFile& file : files) {
        const auto tell = [&](std::int64_t done) {
            return progress(kilobytes(before + done), kilobytes(all), file.name);
        };
        const Added added = tell(0) ? AddFile(zip, file, tell) : Added::cancelled;
        result.isCancelled = added == Added::cancelled;
        if (added == Added::failed)
            result.problem =
                Quoted(file.path) + L" cannot be packed; is it in use, or the disk full?";
        if (added != Added::whole) return result;
        before += SizeOf(file.path);
        ++result.files;
    }
    return result;
}

} // namespace

std::optional<std::vector<PackedFile>> FilesBelow(const std::wstring& folder,
                                                  const std::wstring& leftOut)
{
    std::vector<PackedFile> files;
    std::error_code error;
    const fs::path root = base::FullPath(folder.c_str());
    fs::recursive_directory_iterator entry(root, error);
    for (; !error && entry != fs::recursive_directory_iterator(); entry.increment(error)) {
        std::error_code unknown;
        if (entry->is_regular_file(unknown) && !fs::equivalent(entry->path(), leftOut, unknown))
            files.push_back(
                {entry->path().wstring(), entry->path().lexically_relative(root).wstring()});
    }
    if (error) return {};
    std::ranges::sort(files, {}, &PackedFile::path);
    return files;
}

ArchiveResult PackFiles(const std::wstring& archive, const std::vector<PackedFile>& files,
                        const ArchiveProgress& progress)
{
    constexpr std::size_t mostEntries = 65535; // that other programs read
    if (files.empty() || files.size() > mostEntries)
        return {0, Quoted(archive) + L" cannot hold " + std::to_wstring(files.size()) + L" files"};
    const std::wstring target = base::FullPath(archive.c_str());
    // The archive gets its name when it is whole; until then, an older one stays.
    const std::wstring written = UnusedPath(target + L".", L".part");
    base::Owner<ZipWriterTraits> zip(
        zipOpen(base::BytesFromWide(CP_ACP, written).c_str(), APPEND_STATUS_CREATE));
    if (!zip) return {0, Quoted(archive) + L" cannot be written"};
    ArchiveResult result = AddFiles(zip.get(), files, progress);
    const bool isClosed = zipClose(zip.release(), nullptr) == ZIP_OK;
    if (!result.problem.empty() || result.isCancelled || !isClosed ||
        !base::MoveOver(written.c_str(), target.c_str())) {
        if (result.problem.empty() && !result.isCancelled)
            result.problem =
                Quoted(archive) +
                (isClosed ? L" cannot be replaced" : L" cannot be finished; is the disk full?");
        DeleteFileW(written.c_str());
    }
    return result;
}

ArchiveResult PackFolder(const std::wstring& archive, const std::wstring& folder,
                         const ArchiveProgress& progress)
{
    const auto files = FilesBelow(folder, archive);
    if (!files) return {0, L"the folder " + folder + L" cannot be read"};
    if (files->empty()) return {0, L"the folder " + folder + L" has no files"};
    return PackFiles(archive, *files, progress);
}

} // namespace exam
