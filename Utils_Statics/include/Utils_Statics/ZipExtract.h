#pragma once

#include <Utils_Statics/export.h>

#include <cstdio>
#include <string>

/// Reads one zip archive. Its entries are extracted one after the other into the current folder.
///
/// One thread at a time uses an object; meanwhile no other thread changes the process's current
/// folder. A failure gives a false result and, except in Open, a log line with the code of the zip
/// library, at level 1 under the source Utils_Statics/ZipArchive. Nothing throws.
///
/// No entry leaves the current folder. An entry's name is read as a path relative to the folder, in
/// the system's ANSI code page, or in UTF-8 when the entry says so. Either slash separates folders.
/// A drive letter and separators at the beginning are dropped. The platform reads the rest: it may
/// resolve "..", and drop dots and blanks at the end of a name. A name that would leave the folder,
/// to a parent, a device (CON, NUL ...) or an alternate stream of a file, is refused with a log
/// line that quotes it. So is a name with a folder of dots and blanks alone.
///
/// A link (junction, symbolic or hard link) in the folder is followed, so an entry extracted
/// through it lands at the link's target. No archive can bring a link: an entry is always written
/// as a plain file or a folder.
class UTILS_STATICS_API ZipExtract
{
public:
    ZipExtract() = default;
    /// Copies every member, the open archive included. Do not copy while one is open: both objects
    /// would close it.
    ZipExtract(const ZipExtract&) = default;
    ZipExtract& operator=(const ZipExtract&) = default;
    /// Closes the archive that is open.
    virtual ~ZipExtract();

    /// Closes the archive that is open and opens another one, at its first entry. False when there
    /// is no readable archive of that name; nothing is logged. The system's ANSI code page has to
    /// be able to express `path`.
    bool Open(const wchar_t* path) noexcept;

    /// Extracts the current entry, making the folders it needs and replacing an existing file, and
    /// goes to the next one. `password` is for encrypted entries (the traditional encryption of zip
    /// files only) and may be null.
    ///
    /// False when the entry's data is damaged, cannot be decrypted or cannot be written completely
    /// (what could be written stays). Also false for the last entry, because there is no next one;
    /// the reader then stays at it. True otherwise, also for an entry that is skipped because its
    /// name is refused or no file of its name can be created.
    ///
    /// An entry that is a folder is created as one, and the result tells whether that succeeded.
    /// The reader deliberately stays where it is then. The next call sees the same entry again, and
    /// is false without a log line, because the folder is there by now. So what stands behind such
    /// an entry is not extracted. ZipCompress writes none; other programs do.
    bool ExtractNext(const char* password) noexcept;

    /// Does nothing when no archive is open.
    void Close() noexcept;

private:
    bool ExtractFile(const std::wstring& path, const char* password);
    bool CopyData(std::FILE* target);

    void* m_archive = nullptr; // the zip library's reader
    char m_buffer[32768];      // the data on its way to the file
};
