#include "record/StudyArchive.h"

#include "base/Console.h"
#include "base/FileReader.h"
#include "base/UnusedPath.h"
#include "image/CineProblem.h"

#include <base/Encoding.h>
#include <base/FilePath.h>
#include <base/FileReplacement.h>
#include <base/InFolder.h>
#include <base/Owner.h>
#include <qor_utils/LogOutput.h>
#include <Utils_Statics/utilsExam.h>
#include <Utils_Statics/ZipExtract.h>

#include <unzip.h>

#include <algorithm>
#include <filesystem>
#include <string_view>

namespace exam {

namespace {

namespace fs = std::filesystem;

// Collects what the library logs about zip archives while this object lives. Only the log has the
// reason of a failure, and the result of extracting the last entry does not tell a failure from the
// end. One object at a time, because it takes the logger's only hook.
class ArchiveErrors
{
public:
    ArchiveErrors() { qor_utils::SetLogHook(KeepFirst, &m_first); }
    ~ArchiveErrors() { qor_utils::SetLogHook(nullptr, nullptr); }
    ArchiveErrors(const ArchiveErrors&) = delete;
    ArchiveErrors& operator=(const ArchiveErrors&) = delete;

    // The first message; empty when there was none.
    const std::wstring& First() const { return m_first; }

private:
    static void KeepFirst(const qor_utils::LogMessage& message, void* first)
    {
        constexpr std::string_view source = "Utils_Statics/ZipArchive";
        auto& text = *static_cast<std::wstring*>(first);
        if (!text.empty() || message.source != source) return;
        text = message.text;
        text.erase(text.find_last_not_of(L'\n') + 1);
    }

    std::wstring m_first;
};

// True when the record at the end of an archive is whole. The zip library takes what is missing
// there for zeros.
bool HasWholeEnd(const std::wstring& archive)
{
    constexpr std::size_t endSize = 22; // the record without its comment
    constexpr std::int64_t longest = endSize + 0xFFFF;
    FileReader file;
    if (!file.Open(archive)) return false;
    const std::int64_t size = std::min(file.Size(), longest);
    std::string tail(static_cast<std::size_t>(size), '\0');
    if (!file.Read(file.Size() - size, tail.data(), tail.size())) return false;
    const std::size_t end = tail.rfind("PK\5\6");
    return end != std::string::npos && tail.size() - end >= endSize;
}

struct ZipReaderTraits
{
    using Handle = unzFile;
    static unzFile Empty() noexcept { return nullptr; }
    static void Release(unzFile reader) noexcept { unzClose(reader); }
};

// Reads the name of the reader's current entry into `name`, through `bytes`, which has room for the
// longest one. False when the directory is damaged there.
bool ReadEntryName(unzFile reader, std::string& bytes, std::wstring& name)
{
    constexpr uLong utf8Flag = 0x800;
    unz_file_info64 info = {};
    if (unzGetCurrentFileInfo64(reader, &info, bytes.data(), static_cast<uLong>(bytes.size()),
                                nullptr, 0, nullptr, 0) != UNZ_OK)
        return false;
    const UINT codePage = (info.flag & utf8Flag) != 0 ? CP_UTF8 : CP_ACP;
    name = base::WideFromBytes(codePage, std::string_view(bytes).substr(0, info.size_filename))
               .value_or(std::wstring());
    return true;
}

bool IsFolderName(const std::wstring& name)
{
    return name.ends_with(L'/') || name.ends_with(L'\\');
}

// The path that the library extracts an entry to, relative to the current folder.
std::wstring PathOf(std::wstring name)
{
    if (name.size() > 1 && name[1] == L':') name.erase(0, 2);
    return name.erase(0, name.find_first_not_of(L"/\\"));
}

// The folder that an archive is unpacked into, and one in it that each file is written to first.
// The end of this object removes that one with all it holds, so no part of a file stays.
class Destination
{
public:
    explicit Destination(const std::wstring& folder) : m_folder(base::FullPath(folder.c_str()))
    {
        utilsExam::CreateDirectoryW(m_folder.c_str());
        m_writing = UnusedPath(m_folder + L"\\unpacking-", L"");
        if (!utilsExam::CreateDirectoryW(m_writing.c_str())) m_writing.clear();
    }
    ~Destination()
    {
        if (!m_writing.empty()) utilsExam::RemoveDirectoryW(m_writing.c_str(), TRUE);
    }
    Destination(const Destination&) = delete;
    Destination& operator=(const Destination&) = delete;

    // Empty when it could not be made.
    const std::wstring& WritingFolder() const { return m_writing; }

    // Moves a whole file into the folder. False when it cannot be written there.
    bool Take(const std::wstring& path) const
    {
        const std::wstring place = m_folder + L"\\" + path;
        std::error_code error; // a missing folder shows when the file is moved
        fs::create_directories(fs::path(place).parent_path(), error);
        return base::MoveOver((m_writing + L"\\" + path).c_str(), place.c_str());
    }

private:
    std::wstring m_folder;
    std::wstring m_writing;
};

enum class Extracted
{
    written,
    noName,     // skipped because of its name
    unwritable, // skipped because of the file that is there
    failed
};

// Extracts the current entry into the current folder, and lets the destination take it. `problem`
// gets the reason of a failure, if there is one.
Extracted ExtractEntry(ZipExtract& zip, const Destination& destination, const std::wstring& name,
                       const char* password, bool isLast, std::wstring& problem)
{
    const ArchiveErrors errors;
    const std::wstring path = PathOf(name);
    const bool wentOn = zip.ExtractNext(password);
    if (errors.First().starts_with(L"error ")) {
        problem = Quoted(name) + L" cannot be unpacked: " + Quoted(errors.First());
        return Extracted::failed;
    }
    if (IsFolderName(name)) {
        problem = L"extraction stays at the folder entry " + Quoted(name);
        return Extracted::failed;
    }
    std::error_code error;
    if (!errors.First().empty() || !fs::exists(path, error)) return Extracted::noName;
    if (wentOn || isLast)
        return destination.Take(path) ? Extracted::written : Extracted::unwritable;
    problem = Quoted(name) + L" cannot be unpacked";
    return Extracted::failed;
}

ArchiveResult ExtractEntries(ZipExtract& zip, const Destination& destination,
                             const std::vector<std::wstring>& names, const char* password,
                             const ArchiveProgress& progress)
{
    ArchiveResult result;
    for (std::size_t i = 0; i < names.size(); ++i) {
        result.isCancelled = !progress(i, names.size(), names[i]);
        if (result.isCancelled) return result;
        const Extracted extracted = ExtractEntry(zip, destination, names[i], password,
                                                 i + 1 == names.size(), result.problem);
        if (extracted == Extracted::failed) return result;
        if (extracted == Extracted::written)
            ++result.files;
        else
            result.skipped.push_back({names[i], extracted == Extracted::noName
                                                    ? SkipReason::name
                                                    : SkipReason::unwritable});
    }
    std::wstring skipped;
    for (const SkippedEntry& entry : result.skipped)
        skipped += (skipped.empty() ? L"" : L", ") + entry.name;
    if (!skipped.empty())
        result.problem = L"skipped, because no such file can be written: " + Quoted(skipped);
    return result;
}

// Shows the progress of a command: each name once.
ArchiveProgress PrintNames()
{
    return [last = std::wstring()](std::size_t, std::size_t, const std::wstring& name) mutable {
        if (name != last) WriteOut(L"  " + name + L"\n");
        last = name;
        return true;
    };
}

// Prints the result of a command. False when there was a problem.
bool Print(const ArchiveResult& result, const std::wstring& done)
{
    if (!result.problem.empty()) return Fail(result.problem);
    WriteOut(std::to_wstring(result.files) + L" files " + done + L"\n");
    return true;
}

} // namespace

std::optional<std::vector<std::wstring>> ReadEntryNames(const std::wstring& archive)
{
    // Reading a device may wait for ever.
    if (KindOfFile(archive) != FileKind::file || !HasWholeEnd(archive)) return std::nullopt;
    const base::Owner<ZipReaderTraits> reader(
        unzOpen(base::BytesFromWide(CP_ACP, archive).c_str()));
    unz_global_info64 directory = {};
    if (!reader || unzGetGlobalInfo64(reader.get(), &directory) != UNZ_OK) return std::nullopt;
    std::vector<std::wstring> names;
    std::string bytes(0xFFFF, '\0');
    for (ZPOS64_T i = 0; i < directory.number_entry; ++i) {
        const bool isThere = i == 0 || unzGoToNextFile(reader.get()) == UNZ_OK;
        if (!isThere || !ReadEntryName(reader.get(), bytes, names.emplace_back()))
            return std::nullopt;
    }
    return names;
}

std::vector<std::wstring> FilesInTheWay(const std::wstring& archive, const std::wstring& folder)
{
    std::vector<std::wstring> found;
    const fs::path place = folder;
    const auto names = ReadEntryNames(base::FullPath(archive.c_str()));
    for (const std::wstring& name : names.value_or(std::vector<std::wstring>())) {
        const fs::path path = PathOf(name);
        const bool leadsOut = std::ranges::find(path, fs::path(L"..")) != path.end(); // is skipped
        if (!leadsOut && KindOfFile((place / path).wstring()) == FileKind::file)
            found.push_back(name);
    }
    return found;
}

ArchiveResult UnpackArchive(const std::wstring& archive, const std::wstring& folder,
                            const std::string& password, Existing existing,
                            const ArchiveProgress& progress)
{
    const std::wstring source = base::FullPath(archive.c_str());
    const auto names = ReadEntryNames(source);
    ZipExtract zip;
    if (!names || !zip.Open(source.c_str())) return {0, Quoted(archive) + L" is no zip archive"};
    const std::vector<std::wstring> inTheWay = FilesInTheWay(archive, folder);
    if (existing == Existing::keep && !inTheWay.empty())
        return {0, folder + L" has " + std::to_wstring(inTheWay.size()) +
                       L" of the files already, " + inTheWay.front() +
                       L" first; nothing was unpacked, --overwrite replaces them"};
    const Destination destination(folder);
    const base::InFolder inFolder(destination.WritingFolder());
    if (destination.WritingFolder().empty() || !inFolder)
        return {0, L"the folder " + Quoted(folder) + L" cannot be made"};
    return ExtractEntries(zip, destination, *names, password.empty() ? nullptr : password.c_str(),
                          progress);
}

bool PackCommand(const std::wstring& archive, const std::wstring& folder, bool overwrite)
{
    std::error_code error;
    if (!overwrite && fs::exists(archive, error))
        return Fail(archive + L" is there already; --overwrite replaces it");
    return Print(PackFolder(archive, folder, PrintNames()), L"packed into " + archive);
}

bool UnpackCommand(const std::wstring& archive, const std::wstring& folder,
                   const std::wstring& password, bool overwrite)
{
    return Print(UnpackArchive(archive, folder, base::BytesFromWide(CP_ACP, password),
                               overwrite ? Existing::replace : Existing::keep, PrintNames()),
                 L"unpacked into " + folder);
}

} // namespace exam
