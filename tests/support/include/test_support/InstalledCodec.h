#pragma once

#include <string>

namespace test_support {

// A video codec that is installed while the object lives, by the registry entry that Video for
// Windows looks up. The codec installed under the name before is restored afterwards.
class InstalledCodec
{
public:
    // fourcc: the four characters after "vidc."; dll: a file beside the test program, whose full
    // path has no blank. Throws std::runtime_error when the registry cannot be written.
    InstalledCodec(const std::wstring& fourcc, const std::wstring& dll);
    ~InstalledCodec();
    InstalledCodec(const InstalledCodec&) = delete;
    InstalledCodec& operator=(const InstalledCodec&) = delete;

    const std::wstring& Path() const { return m_path; }

private:
    std::wstring m_entry;
    std::wstring m_path;
    std::wstring m_before;
};

} // namespace test_support
