#pragma once

#include <Utils_Statics/export.h>

#include <string>

/// Writes one zip archive: files are compressed into it under names relative to a base folder.
///
/// An object is used by one thread at a time. A failure is a false result and a log line with the
/// code of the zip library, at level 1 under the source Utils_Statics/ZipArchive; nothing throws.
/// Memory does not grow with the files, only by some 100 bytes for each file added.
class UTILS_STATICS_API ZipCompress
{
public:
    ZipCompress() = default;
    /// Copies every member, the open archive included; not meant to be done while one is open,
    /// because both objects would then close it.
    ZipCompress(const ZipCompress&) = default;
    ZipCompress& operator=(const ZipCompress&) = default;
    virtual ~ZipCompress();

    /// Closes the archive that is open and creates one, over a file that is there. False when it
    /// cannot be created; no archive is open then. `path` has to be expressible in the system's
    /// ANSI code page, because the zip library opens it by such a name.
    bool Create(const wchar_t* path) noexcept;

    /// The prefix that AddFile takes off the paths it is given, exactly as it stands: "C:\data"
    /// makes the entry "\a.txt" of C:\data\a.txt, and "C:\data\" makes "a.txt" of it.
    void SetBasePath(const std::wstring& base);

    /// Compresses one file at the highest level, under its path without the base folder. A path
    /// that does not begin with the base folder, compared character by character, is kept whole.
    /// The entry's name is in the system's ANSI code page, its time the file's last write in local
    /// time.
    ///
    /// False when any step fails, no archive is open, or it has 65535 entries, which is as many as
    /// other programs can read. The entry is in the archive even when the file could not be opened
    /// (it is empty then) or could not be read to its end.
    bool AddFile(const wchar_t* path) noexcept;

    /// Writes the archive's directory, without which no archive can be read, and closes it. Does
    /// nothing when none is open.
    void Close() noexcept;

protected:
    /// The time of a file's last write, in local time: the DOS date in the high 16 bits, the DOS
    /// time in the low ones. False, and nothing stored, when there is no such file.
    static bool FileTime(const wchar_t* path, unsigned long& dosDateTime);

private:
    bool OpenEntry(const wchar_t* path);

    void* m_archive = nullptr; // the zip library's writer
    std::wstring m_basePath;
    std::wstring m_archivePath;
    unsigned m_entryCount = 0;
};
