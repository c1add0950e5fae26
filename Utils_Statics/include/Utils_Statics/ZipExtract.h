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
/// No entry leaves the current folder. Its name is taken as a path relative to it, in the system's
/// ANSI code page, or in UTF-8 where the entry says so. Either slash separates folders. A drive
/// letter and separators at the beginning are dropped. The rest is the platform's to read: it may
/// resolve "..", and drop dots and blanks at the end of a name. A name is refused, with a log line
/// that quotes it, when it would leave the folder: to a parent, a device (CON, NUL ...) or an
/// alternate stream of a file. So is one with a folder of dots and blanks alone.
///
/// A link (junction, symbolic or hard link) that stands in the folder is followed, so what is
/// extracted through it lands where it leads. No archive can bring one: an entry is always written
/// as a plain file or a folder.
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
    /// because its name is refused or no file of its name can be created.
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
