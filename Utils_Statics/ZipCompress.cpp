#include "Utils_Statics/ZipCompress.h"

#include "archive/ArchiveLog.h"
#include "environment/PathText.h"

#include <base/Encoding.h>
#include <base/Handles.h>

#include <zip.h>

#include <cstdint>
#include <cstdio>
#include <string_view>
#include <type_traits>
#include <utility>

using namespace utils_statics;

static_assert(std::is_same_v<zipFile, void*>);

namespace {

constexpr std::size_t blockSize = 32768;
constexpr int highestLevel = 9;
// The writer puts a greater number in a record that it leaves out of archives below 4 GiB. Other
// programs then find no directory.
constexpr unsigned mostEntries = 65535;

// Logs the code of a failed call of the writer. True when the call succeeded.
bool Written(int error, int line = __builtin_LINE())
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
    std::FILE* const source = _wfopen(path, L"rb");
    if (!source) return Written(ZIP_ERRNO);
    const bool compressed = CompressData(source, archive);
    std::fclose(source);
    return compressed;
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
