#include "service/StudyArchive.h"

#include "service/ArchiveErrors.h"
#include "service/ZipDirectory.h"

#include <base/Encoding.h>
#include <base/FilePath.h>
#include <Utils_Statics/ZipCompress.h>
#include <Utils_Statics/ZipExtract.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <vector>

namespace exam {

namespace {

namespace fs = std::filesystem;

// Changes the process's current folder for the length of a scope.
class InFolder
{
public:
    explicit InFolder(const std::wstring& folder) : m_before(fs::current_path(m_error))
    {
        if (!m_error) fs::current_path(folder, m_error);
    }
    ~InFolder()
    {
        std::error_code ignored;
        fs::current_path(m_before, ignored);
    }
    InFolder(const InFolder&) = delete;
    InFolder& operator=(const InFolder&) = delete;

    explicit operator bool() const { return !m_error; }

private:
    std::error_code m_error; // stands before the path, whose look-up sets it
    fs::path m_before;
};

// The files below a folder, sorted, without the archive itself; `error` is set when it cannot be
// read.
std::vector<std::wstring> FilesBelow(const std::wstring& folder, const std::wstring& archive,
                                     std::error_code& error)
{
    std::vector<std::wstring> files;
    fs::recursive_directory_iterator entry(folder, error);
    for (; !error && entry != fs::recursive_directory_iterator(); entry.increment(error)) {
        std::error_code unknown;
        const std::wstring path = entry->path().wstring();
        if (entry->is_regular_file(unknown) && !fs::equivalent(path, archive, unknown))
            files.push_back(path);
    }
    std::ranges::sort(files);
    return files;
}

// True when the archive can hold the name: its names are in the system's ANSI code page.
bool CanBeKept(const std::wstring& name)
{
    return base::WideFromBytes(CP_ACP, base::BytesFromWide(CP_ACP, name)) == name;
}

ArchiveResult AddFiles(ZipCompress& zip, const std::vector<std::wstring>& files,
                       std::size_t baseSize, const ArchiveProgress& progress)
{
    const ArchiveErrors errors;
    ArchiveResult result;
    for (const std::wstring& file : files) {
        const std::wstring name = file.substr(baseSize);
        progress(result.files, files.size(), name);
        if (!CanBeKept(name))
            result.problem = name + L" has characters that an archive cannot keep";
        else if (!zip.AddFile(file.c_str()))
            result.problem = name + L" cannot be packed: code " + errors.First();
        if (!result.problem.empty()) return result;
        ++result.files;
    }
    zip.Close();
    if (!errors.First().empty())
        result.problem = L"the archive cannot be finished: code " + errors.First();
    return result;
}

// The path that the library extracts an entry to, relative to the current folder.
std::wstring PathOf(std::wstring name)
{
    if (name.size() > 1 && name[1] == L':') name.erase(0, 2);
    return name.erase(0, name.find_first_not_of(L"/\\"));
}

// True when a file is there that must not be written.
bool IsHeld(const std::wstring& path)
{
    constexpr auto withoutChange = std::ios::in | std::ios::out;
    std::error_code error;
    return fs::exists(path, error) && !std::fstream(fs::path(path), withoutChange);
}

enum class Extracted
{
    written,
    skipped,
    failed
};

// Extracts the current entry. `problem` gets the reason of a failure, if there is one.
Extracted ExtractEntry(ZipExtract& zip, const std::wstring& name, const char* password, bool isLast,
                       std::wstring& problem)
{
    const ArchiveErrors errors;
    const std::wstring path = PathOf(name);
    const bool wasHeld = IsHeld(path);
    const bool wentOn = zip.ExtractNext(password);
    if (errors.First().starts_with(L"error ")) {
        problem = name + L": " + errors.First();
        return Extracted::failed;
    }
    if (IsFolderName(name)) {
        problem = L"extraction stays at the folder entry " + name;
        return Extracted::failed;
    }
    std::error_code error;
    if (!errors.First().empty() || wasHeld || !fs::exists(path, error)) return Extracted::skipped;
    if (wentOn || isLast) return Extracted::written;
    problem = name + L" cannot be unpacked";
    return Extracted::failed;
}

ArchiveResult ExtractEntries(ZipExtract& zip, const std::vector<std::wstring>& names,
                             const char* password, const ArchiveProgress& progress)
{
    ArchiveResult result;
    std::wstring skipped;
    for (std::size_t i = 0; i < names.size(); ++i) {
        progress(i, names.size(), names[i]);
        const Extracted extracted =
            ExtractEntry(zip, names[i], password, i + 1 == names.size(), result.problem);
        if (extracted == Extracted::failed) return result;
        if (extracted == Extracted::written)
            ++result.files;
        else
            skipped += (skipped.empty() ? L"" : L", ") + names[i];
    }
    if (!skipped.empty())
        result.problem = L"skipped, because no such file can be written: " + skipped;
    return result;
}

} // namespace

ArchiveResult PackFolder(const std::wstring& archive, const std::wstring& folder,
                         const ArchiveProgress& progress)
{
    const std::wstring target = base::FullPath(archive.c_str());
    std::wstring root = base::FullPath(folder.c_str());
    if (!root.ends_with(L'\\')) root += L'\\';
    std::error_code error;
    const std::vector<std::wstring> files = FilesBelow(root, target, error);
    if (error) return {0, L"the folder " + folder + L" cannot be read"};
    if (files.empty()) return {0, L"the folder " + folder + L" has no files"};
    ZipCompress zip;
    zip.SetBasePath(root);
    if (!zip.Create(target.c_str())) return {0, archive + L" cannot be written"};
    ArchiveResult result = AddFiles(zip, files, root.size(), progress);
    zip.Close();
    if (!result.problem.empty()) fs::remove(target, error);
    return result;
}

ArchiveResult UnpackArchive(const std::wstring& archive, const std::wstring& folder,
                            const std::string& password, const ArchiveProgress& progress)
{
    const std::wstring source = base::FullPath(archive.c_str());
    const auto names = ReadEntryNames(source);
    ZipExtract zip;
    if (!names || !zip.Open(source.c_str())) return {0, archive + L" is no zip archive"};
    std::error_code error;
    fs::create_directories(folder, error);
    const InFolder inFolder(folder);
    if (!inFolder) return {0, L"the folder " + folder + L" cannot be made"};
    return ExtractEntries(zip, *names, password.empty() ? nullptr : password.c_str(), progress);
}

} // namespace exam
