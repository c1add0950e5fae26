#include "XMLDocument.h"

#include <base/FileReplacement.h>
#include <base/Handles.h>

#include <atomic>
#include <limits>

namespace zel_xml {

namespace {

// A new file with an unused name, open for writing. It is deleted with the object unless it was
// moved away.
class NewFile
{
public:
    explicit NewFile(const std::wstring& folder)
    {
        static std::atomic<unsigned> serial{0};
        const std::wstring stem = folder + L"~xml" + std::to_wstring(GetCurrentProcessId()) + L"-";
        do {
            m_path = stem + std::to_wstring(++serial) + L".tmp";
            m_file.reset(CreateFileW(m_path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                                     FILE_ATTRIBUTE_NORMAL, nullptr));
        } while (!m_file && GetLastError() == ERROR_FILE_EXISTS);
        m_exists = IsOpen();
    }

    ~NewFile()
    {
        m_file.reset();
        if (m_exists) DeleteFileW(m_path.c_str());
    }

    NewFile(const NewFile&) = delete;
    NewFile& operator=(const NewFile&) = delete;

    bool IsOpen() const { return static_cast<bool>(m_file); }

    bool Write(const std::string& bytes)
    {
        if (bytes.size() > std::numeric_limits<DWORD>::max()) return false;
        const DWORD size = static_cast<DWORD>(bytes.size());
        DWORD written = 0;
        return WriteFile(m_file.get(), bytes.data(), size, &written, nullptr) && written == size;
    }

    bool MoveOver(const std::wstring& path)
    {
        // Without the flush a power cut could leave the new name on a file that was never written.
        if (!FlushFileBuffers(m_file.get())) return false;
        m_file.reset();
        if (!base::MoveOver(m_path.c_str(), path.c_str())) return false;
        m_exists = false;
        return true;
    }

private:
    std::wstring m_path;
    base::File m_file;
    bool m_exists = false;
};

// This is checked explicitly, because some file systems replace a write-protected file.
bool IsWriteProtected(const std::wstring& path)
{
    const DWORD attributes = GetFileAttributesW(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY) != 0;
}

} // namespace

bool XMLDocument::Save(const std::wstring& path) const
{
    const std::string bytes = ToBytes();
    if (IsWriteProtected(path)) return false;
    NewFile file(path.substr(0, path.find_last_of(L"\\/") + 1));
    return file.IsOpen() && file.Write(bytes) && file.MoveOver(path);
}

} // namespace zel_xml
