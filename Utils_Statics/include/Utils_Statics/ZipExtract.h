#pragma once

#include <Utils_Statics/export.h>

#include <cstdio>
#include <string>

/// Reads one zip archive: its entries are extracted one after the other into the current folder.
///
/// An object is used by one thread at a time, while no other thread changes the process's current
/// folder. A failure is a false result and a log line with the code of the zip library, at level 1
/// under the source Utils_Statics/ZipArchive; nothing throws.
///
/// No entry is written outside of the current folder. Its name is taken as a path relative to it,
/// in the system's ANSI code page, or in UTF-8 where the entry says so. Either slash separates
/// folders. A drive letter and separators at the beginning are dropped. A name that has a ".." or a
/// device (CON, NUL ...) for a part of it, a part that ends in a dot or a blank, a character that
/// no file name may have, or more than 255 bytes, is not extracted but logged.
class UTILS_STATICS_API ZipExtract
{
public:
    ZipExtract() = default;
    /// Copies every member, the open archive included; not meant to be done while one is open,
    /// because both objects would then close it.
    ZipExtract(const ZipExtract&) = default;
    ZipExtract& operator=(const ZipExtract&) = default;
    virtual ~ZipExtract();

    /// Closes the archive that is open and opens one, at its first entry. False when there is no
    /// readable archive of that name. `path` has to be expressible in the system's ANSI code page.
    bool Open(const wchar_t* path) noexcept;

    /// Extracts the current entry over a file that is there, making the folders it needs, and goes
    /// to the next. `password` is for encrypted entries (the traditional encryption of zip files
    /// only) and may be null.
    ///
    /// False when the entry's data is damaged, cannot be decrypted or cannot be written completely
    /// (what could be written stays), and when there is no next entry: so also for the last one.
    /// The reader stays at the last entry then. True otherwise, also for an entry that is skipped
    /// because no file of its name can be created.
    ///
    /// An entry that is a folder is different: it is created, the result tells whether it was, and
    /// the reader deliberately stays where it is. The next call sees the same entry again, so a
    /// loop over entries has to end by itself, for example by their number.
    bool ExtractNext(const char* password) noexcept;

    /// Does nothing when no archive is open.
    void Close() noexcept;

private:
    bool ExtractFile(const std::wstring& path, const char* password);
    bool CopyData(std::FILE* target);

    void* m_archive = nullptr; // the zip library's reader
    char m_buffer[32768];      // for the data on its way
};
