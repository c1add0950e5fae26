#include "Utils_Statics/ZipExtract.h"

#include "archive/ArchiveLog.h"
#include "archive/EntryName.h"
#include "environment/PathText.h"

#include <base/Encoding.h>
#include <Utils_Statics/utilsExam.h>

#include <unzip.h>

#include <type_traits>
#include <utility>

using namespace utils_statics;

static_assert(std::is_same_v<unzFile, void*>);

namespace {

// Logs the code of a failed call of the reader. True when the call succeeded.
bool Read(int error, const wchar_t* call, int line = __builtin_LINE())
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

// The path that the entry goes to; empty, with a log line, when it would leave the current folder.
std::wstring TargetPath(const std::wstring& name)
{
    auto path = PathInside(name);
    if (!path) ArchiveError()(L"'%s' leads out of the current folder.", name.c_str());
    return path ? *std::move(path) : std::wstring();
}

// Creates a relative path's folders from the first to the last. True when the last was created.
bool CreateFolders(const std::wstring& path)
{
    for (auto end = path.find(L'\\'); end != std::wstring::npos; end = path.find(L'\\', end + 1))
        utilsExam::CreateDirectoryW(path.substr(0, end).c_str());
    return utilsExam::CreateDirectoryW(path.c_str()) != 0;
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

std::FILE* CreateWithFolders(const std::wstring& path)
{
    if (path.empty()) return nullptr;
    std::FILE* const file = _wfopen(path.c_str(), L"wb");
    const std::size_t folder = path.rfind(L'\\');
    if (file || folder == std::wstring::npos) return file;
    CreateFolders(path.substr(0, folder));
    return _wfopen(path.c_str(), L"wb");
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
        const std::wstring path = TargetPath(entry.name);
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
    std::FILE* const file = CreateWithFolders(path);
    if (!file) return true;
    const bool copied = CopyData(file);
    const bool closed = std::fclose(file) == 0;
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
