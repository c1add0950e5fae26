#include "AtomicFile.h"

#include <atomic>
#include <limits>

namespace zel_xml {

namespace {

// A new file of a name nobody uses, open for writing; deleted with the object unless it was moved
// away.
class NewFile
{
public:
    explicit NewFile(const std::wstring& folder)
    {
        static std::atomic<unsigned> serial{0};
        const std::wstring stem = folder + L"~xml" + std::to_wstring(GetCurrentProcessId()) + L"-";
        do {
            m_path = stem + std::to_wstring(++serial) + L".tmp";
            m_file = CreateFileW(m_path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                                 FILE_ATTRIBUTE_NORMAL, nullptr);
        } while (m_file == INVALID_HANDLE_VALUE && GetLastError() == ERROR_FILE_EXISTS);
        m_exists = m_file != INVALID_HANDLE_VALUE;
    }

    ~NewFile()
    {
        Close();
        if (m_exists) DeleteFileW(m_path.c_str());
    }

    NewFile(const NewFile&) = delete;
    NewFile& operator=(const NewFile&) = delete;

    bool IsOpen() const { return m_file != INVALID_HANDLE_VALUE; }
    HANDLE Handle() const { return m_file; }

    bool MoveOver(const std::wstring& path)
    {
        // Without the flush a power cut could leave the new name on a file that was never written.
        if (!FlushFileBuffers(m_file) || !Close()) return false;
        if (!MoveFileExW(m_path.c_str(), path.c_str(),
                         MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH))
            return false;
        m_exists = false;
        return true;
    }

private:
    bool Close()
    {
        if (!IsOpen()) return true;
        const HANDLE file = m_file;
        m_file = INVALID_HANDLE_VALUE;
        return CloseHandle(file) != FALSE;
    }

    std::wstring m_path;
    HANDLE m_file = INVALID_HANDLE_VALUE;
    bool m_exists = false;
};

// Said outright, because not every file system lets this decide over a file's replacement.
bool IsWriteProtected(const std::wstring& path)
{
    const DWORD attributes = GetFileAttributesW(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY) != 0;
}

} // namespace

bool WriteBytes(HANDLE file, const std::string& bytes)
{
    if (bytes.size() > std::numeric_limits<DWORD>::max()) return false;
    const DWORD size = static_cast<DWORD>(bytes.size());
    DWORD written = 0;
    return WriteFile(file, bytes.data(), size, &written, nullptr) && written == size;
}

std::wstring AbsolutePath(const wchar_t* path)
{
    if (!path || !*path) return {};
    const DWORD needed = GetFullPathNameW(path, 0, nullptr, nullptr);
    if (needed == 0) return {};
    std::wstring full(needed, L'\0');
    const DWORD length = GetFullPathNameW(path, needed, full.data(), nullptr);
    if (length >= needed) return {}; // another thread changed the current directory in between
    full.resize(length);
    return full;
}

bool ReplaceAtomically(const std::wstring& path, const FileFiller& fill)
{
    if (IsWriteProtected(path)) return false;
    NewFile file(path.substr(0, path.find_last_of(L"\\/") + 1));
    return file.IsOpen() && fill(file.Handle()) && file.MoveOver(path);
}

} // namespace zel_xml
