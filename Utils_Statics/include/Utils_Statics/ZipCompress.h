#pragma once

#include <Utils_Statics/export.h>

#include <string>

/// Writes one zip archive. Files are compressed into it under names relative to a base folder.
///
/// One thread at a time uses an object. A failure gives a false result and, except in Create, a
/// log line with the code of the zip library, at level 1 under the source
/// Utils_Statics/ZipArchive. Nothing throws. The
/// memory needed does not depend on the size of the files; it grows by some 100 bytes for each
/// file.
class UTILS_STATICS_API ZipCompress
{
public:
    ZipCompress() = default;
    /// Copies every member, the open archive included. Do not copy while one is open: both objects
    /// would close it.
    ZipCompress(const ZipCompress&) = default;
    ZipCompress& operator=(const ZipCompress&) = default;
    /// Closes the archive that is open.
    virtual ~ZipCompress();

    /// Closes the archive that is open and creates a new one; an existing file is replaced. When it
    /// cannot be created, the result is false, no archive is open, and nothing is logged. The
    /// system's ANSI code page has to be able to express `path`, because the zip library opens the
    /// file by such a name.
    bool Create(const wchar_t* path) noexcept;

    /// Sets the prefix that AddFile removes from its paths, exactly as it stands: with "C:\data"
    /// the file C:\data\a.txt becomes the entry "\a.txt", with "C:\data\" the entry "a.txt".
    void SetBasePath(const std::wstring& base);

    /// Compresses one file at the highest level, under its path without the base folder. A path
    /// that does not begin with the base folder, compared character by character, is kept whole.
    /// The entry's name is in the system's ANSI code page. Its time is that of the file's last
    /// write, in local time.
    ///
    /// False when a step fails, no archive is open, or it already has 65535 entries, because other
    /// programs cannot read more. The entry is in the archive even when the file cannot be opened
    /// (it is then empty) or cannot be read to its end.
    bool AddFile(const wchar_t* path) noexcept;

    /// Writes the archive's directory, without which no archive can be read, and closes it. Does
    /// nothing when none is open.
    void Close() noexcept;

protected:
    /// Stores the local time of a file's last write: the DOS date in the high 16 bits, the DOS time
    /// in the low ones. When there is no such file, the result is false and nothing is stored.
    static bool FileTime(const wchar_t* path, unsigned long& dosDateTime);

private:
    bool OpenEntry(const wchar_t* path);

    void* m_archive = nullptr; // the zip library's writer
    std::wstring m_basePath;
    std::wstring m_archivePath;
    unsigned m_entryCount = 0;
};
