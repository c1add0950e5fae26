#include "base/FileReader.h"

#include <base/FilePath.h>
#include <base/Handles.h>

#include <utility>

namespace exam {

namespace {

// Asks for the kind only, which works for files in use and for files without permissions too.
base::File OpenToAsk(const std::wstring& path)
{
    return base::File(CreateFileW(path.c_str(), FILE_READ_ATTRIBUTES,
                                  FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                  OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
}

} // namespace

FileKind KindOfFile(const std::wstring& path)
{
    // The platform knows names such as CON in every folder, also where the device is not there.
    if (base::FullPath(path.c_str()).starts_with(L"\\\\.\\")) return FileKind::device;
    const DWORD attributes = GetFileAttributesW(path.c_str());
    const bool known = attributes != INVALID_FILE_ATTRIBUTES;
    if (known && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0) return FileKind::folder;
    const base::File file = OpenToAsk(path);
    if (file) return GetFileType(file.get()) == FILE_TYPE_DISK ? FileKind::file : FileKind::device;
    return known || GetLastError() == ERROR_ACCESS_DENIED ? FileKind::file : FileKind::missing;
}

std::wstring FindFileProblem(const std::wstring& path)
{
    switch (KindOfFile(path)) {
    case FileKind::missing: return L"there is no such file";
    case FileKind::folder: return L"this is a folder, not a file";
    case FileKind::device: return L"this is a device, not a file";
    default: return L"";
    }
}

bool FileReader::Open(const std::wstring& path)
{
    m_path = base::FullPath(path.c_str());
    m_file.reset(CreateFileW(path.c_str(), GENERIC_READ,
                             FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                             OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    LARGE_INTEGER size{};
    FILE_BASIC_INFO times{};
    if (!m_file || !GetFileSizeEx(m_file.get(), &size) ||
        !GetFileInformationByHandleEx(m_file.get(), FileBasicInfo, &times, sizeof times))
        return false;
    m_size = size.QuadPart;
    m_written = times.LastWriteTime.QuadPart;
    return true;
}

void FileReader::Rest() const
{
    m_file.reset();
}

bool FileReader::Reopen() const
{
    FileReader again;
    if (!again.Open(m_path) || again.m_size != m_size || again.m_written != m_written) return false;
    m_file = std::move(again.m_file);
    return true;
}

bool FileReader::Read(std::int64_t position, void* bytes, std::size_t size) const
{
    LARGE_INTEGER place{};
    place.QuadPart = position;
    DWORD read = 0;
    return position >= 0 && size <= MAXDWORD && (m_file || Reopen()) &&
           SetFilePointerEx(m_file.get(), place, nullptr, FILE_BEGIN) &&
           ReadFile(m_file.get(), bytes, static_cast<DWORD>(size), &read, nullptr) && read == size;
}

} // namespace exam
