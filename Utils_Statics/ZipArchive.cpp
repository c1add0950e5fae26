#include "text/TextView.h"

#include <base/CompilerExtensions.h>
#include <base/Encoding.h>
#include <base/FilePath.h>
#include <base/Handles.h>
#include <base/StdFile.h>
#include <qor_utils/zelLogger.h>
#include <Utils_Statics/utilsExam.h>
#include <Utils_Statics/ZipCompress.h>
#include <Utils_Statics/ZipExtract.h>

#include <unzip.h>
#include <zip.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <string_view>
#include <type_traits>
#include <utility>

using namespace utils_statics;

static_assert(std::is_same_v<zipFile, void*>);
static_assert(std::is_same_v<unzFile, void*>);

namespace {

// A helper for one error message of the zip archives.
zelLogger::zelLogHelper ArchiveError(int line = BASE_CALLERS_LINE)
{
    return {"Utils_Statics/ZipArchive", line, qor_utils::errorLevel};
}

constexpr std::size_t blockSize = 32768;
constexpr int highestLevel = 9;
// The writer puts a greater number in a record that it leaves out of archives below 4 GiB. Other
// programs then find no directory.
constexpr unsigned mostEntries = 65535;

// Logs the code of a failed call of the writer. True when the call succeeded.
bool Written(int error, int line = BASE_CALLERS_LINE)
{
    if (error != ZIP_OK) ArchiveError(line)(L"%d", error);
    return error == ZIP_OK;
}

// True when a file's entry needs the wide size fields. They have to be chosen before the data is
// compressed, which can make it longer by a fraction of a percent.
bool IsHuge(const wchar_t* path)
{
    constexpr std::uint64_t limit = 0xFF000000;
    WIN32_FILE_ATTRIBUTE_DATA data = {};
    if (!GetFileAttributesExW(path, GetFileExInfoStandard, &data)) return false;
    return (std::uint64_t{data.nFileSizeHigh} << 32 | data.nFileSizeLow) >= limit;
}

// Passes the rest of a file on to the current entry.
bool CompressData(std::FILE* source, zipFile archive)
{
    char block[blockSize];
    for (;;) {
        const std::size_t size = std::fread(block, 1, sizeof block, source);
        if (size < sizeof block && std::ferror(source)) return Written(ZIP_ERRNO);
        if (size == 0) return true;
        if (!Written(zipWriteInFileInZip(archive, block, static_cast<unsigned>(size))))
            return false;
    }
}

bool CompressFile(const wchar_t* path, zipFile archive)
{
    const base::StdFile source(_wfopen(path, L"rb"));
    return source ? CompressData(source.get(), archive) : Written(ZIP_ERRNO);
}

} // namespace

ZipCompress::~ZipCompress()
{
    Close();
}

bool ZipCompress::Create(const wchar_t* path) noexcept
{
    try {
        Close();
        m_archive =
            zipOpen(base::BytesFromWide(CP_ACP, OrEmpty(path)).c_str(), APPEND_STATUS_CREATE);
        m_entryCount = 0;
        m_archivePath = OrEmpty(path);
        return m_archive != nullptr;
    } catch (...) { // out of memory
        return false;
    }
}

void ZipCompress::SetBasePath(const std::wstring& base)
try {
    m_basePath = base;
} catch (const std::bad_alloc&) { // the previous prefix stays
}

bool ZipCompress::AddFile(const wchar_t* path) noexcept
{
    try {
        if (!OpenEntry(OrEmpty(path))) return false;
        const bool compressed = CompressFile(OrEmpty(path), m_archive);
        const bool closed = Written(zipCloseFileInZip(m_archive));
        return compressed && closed;
    } catch (...) {
        return false;
    }
}

bool ZipCompress::OpenEntry(const wchar_t* path)
{
    if (m_entryCount == mostEntries) return Written(ZIP_PARAMERROR);
    zip_fileinfo info = {};
    FileTime(path, info.dosDate);
    std::wstring_view name = path;
    if (name.starts_with(m_basePath)) name.remove_prefix(m_basePath.size());
    const bool opened = Written(
        zipOpenNewFileInZip64(m_archive, base::BytesFromWide(CP_ACP, name).c_str(), &info, nullptr,
                              0, nullptr, 0, nullptr, Z_DEFLATED, highestLevel, IsHuge(path)));
    if (opened) ++m_entryCount;
    return opened;
}

void ZipCompress::Close() noexcept
{
    if (m_archive) Written(zipClose(std::exchange(m_archive, nullptr), nullptr));
}

bool ZipCompress::FileTime(const wchar_t* path, unsigned long& dosDateTime)
{
    WIN32_FIND_DATAW found = {};
    const base::Find find(FindFirstFileW(OrEmpty(path), &found));
    if (!find) return false;
    FILETIME local = {};
    WORD date = 0;
    WORD time = 0;
    FileTimeToLocalFileTime(&found.ftLastWriteTime, &local);
    FileTimeToDosDateTime(&local, &date, &time);
    dosDateTime = static_cast<unsigned long>(date) << 16 | time;
    return true;
}

namespace {

// ---- The names that an archive gives its entries. They come from outside and are not trusted.

constexpr std::wstring_view separators = L"/\\";

bool IsDriveLetter(wchar_t character)
{
    return (character >= L'A' && character <= L'Z') || (character >= L'a' && character <= L'z');
}

std::wstring_view WithoutRoot(std::wstring_view name)
{
    const bool hasDrive = name.size() >= 2 && IsDriveLetter(name[0]) && name[1] == L':';
    if (hasDrive) name.remove_prefix(2);
    name.remove_prefix(std::min(name.find_first_not_of(separators), name.size()));
    return name;
}

// True for a part of nothing but dots and blanks. The platform strips them from the end of some
// parts and not of others. So such a folder can be created, and later means itself to one function
// and its parent to another.
bool IsParent(std::wstring_view part)
{
    return !part.empty() && part.find_first_not_of(L". ") == std::wstring_view::npos;
}

bool IsDevice(std::wstring_view part)
{
    return base::FullPath(std::wstring(part).c_str()).starts_with(L"\\\\.\\");
}

// True when a part of the path is the parent folder, an alternate stream or a device.
bool LeadsOut(std::wstring_view path)
{
    for (std::size_t end = 0; end != std::wstring_view::npos;) {
        end = path.find(L'\\');
        const std::wstring_view part = path.substr(0, end);
        if (IsParent(part) || part.find(L':') != std::wstring_view::npos || IsDevice(part))
            return true;
        path.remove_prefix(std::min(part.size() + 1, path.size()));
    }
    return false;
}

// Decodes a name of the archive: from UTF-8 where the entry says so and the bytes are valid, else
// from the system's ANSI code page.
std::wstring EntryText(std::string_view bytes, bool isUtf8)
{
    if (isUtf8)
        if (auto text = base::WideFromBytes(CP_UTF8, bytes, MB_ERR_INVALID_CHARS))
            return *std::move(text);
    return base::WideFromBytes(CP_ACP, bytes).value_or(std::wstring());
}

// True for the name of a folder: an empty name, or one that ends in a slash of either kind.
bool IsFolderEntry(std::wstring_view name)
{
    return name.empty() || separators.find(name.back()) != std::wstring_view::npos;
}

// The path to extract an entry to, relative to the current folder, with one backslash between
// folders. The platform resolves the name after its drive letter and leading separators are
// removed. The path is empty for the current folder itself and for a name too long for any path.
// It is empty too, with a log line, for a name that leads out of the current folder: to its parent,
// a device or an alternate stream of a file.
std::wstring PathInside(const std::wstring& name)
{
    const std::wstring folder = base::WithTrailingBackslash(base::FullPath(L"."));
    std::wstring path = base::FullPath((folder + std::wstring(WithoutRoot(name))).c_str());
    if (path.empty()) return path;
    path = base::WithTrailingBackslash(std::move(path));
    const bool startsInside = path.starts_with(folder);
    path.erase(0, folder.size());
    if (!path.empty()) path.pop_back();
    if (startsInside && !LeadsOut(path)) return path;
    ArchiveError()(L"'%s' leads out of the current folder.", name.c_str());
    return {};
}

// ---- Reading entries

// Logs the code of a failed call of the reader. True when the call succeeded.
bool Read(int error, const wchar_t* call, int line = BASE_CALLERS_LINE)
{
    if (error != UNZ_OK) ArchiveError(line)(L"error %d with zipfile in %s\n", error, call);
    return error == UNZ_OK;
}

struct Entry
{
    std::wstring name;
    bool isEncrypted;
    bool hasKnownMethod;
};

// A name longer than `name` fills it to its end, without a null there.
bool EntryInfo(unzFile archive, unz_file_info& info, std::string& name)
{
    return Read(unzGetCurrentFileInfo(archive, &info, name.data(), static_cast<uLong>(name.size()),
                                      nullptr, 0, nullptr, 0),
                L"unzGetCurrentFileInfo");
}

// False when the reader has no current entry.
bool CurrentEntry(unzFile archive, Entry& entry)
{
    constexpr uLong encryptedFlag = 1;
    constexpr uLong utf8Flag = 0x800;
    unz_file_info info = {};
    std::string name(256, '\0');
    if (!EntryInfo(archive, info, name)) return false;
    if (info.size_filename >= name.size()) {
        name.resize(info.size_filename + 1);
        if (!EntryInfo(archive, info, name)) return false;
    }
    entry.name = EntryText(name.c_str(), (info.flag & utf8Flag) != 0);
    entry.isEncrypted = (info.flag & encryptedFlag) != 0;
    // Data compressed with another method the reader would pass on as it is.
    entry.hasKnownMethod = info.compression_method == 0 || info.compression_method == Z_DEFLATED;
    return true;
}

// Goes to the next entry. UNZ_END_OF_LIST_OF_FILE, still at the last entry, when there is none.
int GoToNext(unzFile archive)
{
    // The reader takes this number of entries for one that has overflowed 16 bits, and looks for
    // more.
    constexpr ZPOS64_T mostCounted = 0xFFFF;
    unz_global_info64 info = {};
    unz64_file_pos current = {};
    unzGetGlobalInfo64(archive, &info);
    unzGetFilePos64(archive, &current);
    const int next = unzGoToNextFile(archive);
    if (next != UNZ_BADZIPFILE || info.number_entry != mostCounted ||
        current.num_of_file != mostCounted - 1)
        return next;
    unzGoToFilePos64(archive, &current);
    return UNZ_END_OF_LIST_OF_FILE;
}

// Creates a relative path's folders. True when the last was created. The helper never creates the
// first of several folders.
bool CreateFolders(const std::wstring& path)
{
    const std::size_t first = path.find(L'\\');
    if (first != std::wstring::npos) utilsExam::CreateDirectoryW(path.substr(0, first).c_str());
    return utilsExam::CreateDirectoryW(path.c_str()) != 0;
}

base::StdFile CreateWithFolders(const std::wstring& path)
{
    if (path.empty()) return {};
    base::StdFile file(_wfopen(path.c_str(), L"wb"));
    const std::size_t folder = path.rfind(L'\\');
    if (file || folder == std::wstring::npos) return file;
    CreateFolders(path.substr(0, folder));
    return base::StdFile(_wfopen(path.c_str(), L"wb"));
}

} // namespace

ZipExtract::~ZipExtract()
{
    Close();
}

bool ZipExtract::Open(const wchar_t* path) noexcept
{
    try {
        Close();
        m_archive = unzOpen(base::BytesFromWide(CP_ACP, OrEmpty(path)).c_str());
        return m_archive != nullptr;
    } catch (...) {
        return false;
    }
}

bool ZipExtract::ExtractNext(const char* password) noexcept
{
    try {
        Entry entry;
        if (!m_archive || !CurrentEntry(m_archive, entry)) return false;
        const std::wstring path = PathInside(entry.name);
        if (IsFolderEntry(entry.name)) return CreateFolders(path); // deliberately does not go on

        bool extracted = entry.hasKnownMethod
                             ? ExtractFile(path, entry.isEncrypted ? password : nullptr)
                             : Read(UNZ_BADZIPFILE, L"unzOpenCurrentFilePassword");
        const int closed = unzCloseCurrentFile(m_archive);
        extracted = extracted && Read(closed, L"unzCloseCurrentFile");
        const int next = GoToNext(m_archive);
        if (next == UNZ_END_OF_LIST_OF_FILE) return false;
        return Read(next, L"unzGoToNextFile") && extracted;
    } catch (...) {
        return false;
    }
}

// Opens the current entry and copies it to a file. The entry is skipped when the path is empty or
// no file can be created there; that deliberately counts as success.
bool ZipExtract::ExtractFile(const std::wstring& path, const char* password)
{
    if (!Read(unzOpenCurrentFilePassword(m_archive, password), L"unzOpenCurrentFilePassword"))
        return false;
    base::StdFile file = CreateWithFolders(path);
    if (!file) return true;
    const bool copied = CopyData(file.get());
    const bool closed = std::fclose(file.release()) == 0;
    return copied && (closed || Read(UNZ_ERRNO, L"fclose"));
}

bool ZipExtract::CopyData(std::FILE* target)
{
    for (;;) {
        const int size = unzReadCurrentFile(m_archive, m_buffer, sizeof m_buffer);
        if (size < 0) return Read(size, L"unzReadCurrentFile");
        // The reader does not report data that ends before the promised size.
        if (size == 0)
            return Read(unzeof(m_archive) == 1 ? UNZ_OK : UNZ_BADZIPFILE, L"unzReadCurrentFile");
        if (std::fwrite(m_buffer, static_cast<std::size_t>(size), 1, target) != 1)
            return Read(UNZ_ERRNO, L"fwrite");
    }
}

void ZipExtract::Close() noexcept
{
    if (m_archive) unzClose(std::exchange(m_archive, nullptr));
}
