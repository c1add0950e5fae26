#include "Utils_Statics/CMiniVersion.h"

#include "diagnostics/VersionBlock.h"

#include <algorithm>
#include <cstring>
#include <cwchar>
#include <iterator>
#include <new>

namespace {

// The compilers of Windows have these sizes on both architectures.
static_assert(sizeof(unsigned) == sizeof(DWORD) && sizeof(unsigned short) == sizeof(wchar_t));

void SplitVersion(DWORD high, DWORD low, unsigned short (&version)[4])
{
    version[0] = HIWORD(high);
    version[1] = LOWORD(high);
    version[2] = HIWORD(low);
    version[3] = LOWORD(low);
}

} // namespace

CMiniVersion::CMiniVersion(const wchar_t* path) noexcept
{
    if (path) std::wcsncpy(m_modulePath, path, textSize - 1);
    Init();
}

int CMiniVersion::Init() noexcept
{
    VS_FIXEDFILEINFO info = {};
    if (!ReadVersionData() || !GetFixedInfo(info)) return 0;
    SplitVersion(info.dwFileVersionMS, info.dwFileVersionLS, m_fileVersion);
    SplitVersion(info.dwProductVersionMS, info.dwProductVersionLS, m_productVersion);
    m_fileFlags = info.dwFileFlags;
    m_fileOS = info.dwFileOS;
    m_fileType = info.dwFileType;
    m_fileSubtype = info.dwFileSubtype;
    GetStringInfo(L"CompanyName", m_companyName);
    GetStringInfo(L"FileDescription", m_fileDescription);
    GetStringInfo(L"ProductName", m_productName);
    return 1;
}

// False when there is no version resource or it is unusable.
bool CMiniVersion::ReadVersionData() noexcept
{
    const utils_statics::VersionReader reader(m_modulePath);
    if (reader.Size() == 0) return false;
    m_versionData = new (std::nothrow) unsigned char[reader.Size()]();
    return m_versionData && reader.Read(m_versionData);
}

void CMiniVersion::Release() noexcept
{
    delete[] m_versionData;
    m_versionData = nullptr;
}

int CMiniVersion::GetFixedInfo(VS_FIXEDFILEINFO& info) const noexcept
{
    void* found = nullptr;
    UINT size = 0;
    if (!m_versionData || !VerQueryValueW(m_versionData, L"\\", &found, &size) || !found ||
        size < sizeof info)
        return 0;
    std::memcpy(&info, found, sizeof info); // it need not be aligned
    return 1;
}

int CMiniVersion::GetStringInfo(const wchar_t* key, wchar_t* out) const noexcept
{
    if (!m_versionData || !out || !key) return 0;
    wchar_t query[256];
    const auto text = utils_statics::VersionText(m_versionData, key, query);
    out[text.copy(out, textSize - 1)] = L'\0';
    return text.data() ? 1 : 0;
}

int CMiniVersion::GetFileVersion(unsigned short* out) const noexcept
{
    if (out) std::copy(std::begin(m_fileVersion), std::end(m_fileVersion), out);
    return 1;
}

int CMiniVersion::GetProductVersion(unsigned short* out) const noexcept
{
    if (out) std::copy(std::begin(m_productVersion), std::end(m_productVersion), out);
    return 1;
}

int CMiniVersion::GetFileFlags(unsigned long& flags) const noexcept
{
    flags = m_fileFlags;
    return 1;
}

int CMiniVersion::GetFileOS(unsigned long& os) const noexcept
{
    os = m_fileOS;
    return 1;
}

int CMiniVersion::GetFileType(unsigned long& type) const noexcept
{
    type = m_fileType;
    return 1;
}

int CMiniVersion::GetFileSubtype(unsigned long& subtype) const noexcept
{
    subtype = m_fileSubtype;
    return 1;
}

int CMiniVersion::CopyText(const wchar_t* text, unsigned short* out, int len) noexcept
{
    if (!out) return 0;
    if (len <= 0) return 1;
    const auto room = static_cast<std::size_t>(len);
    std::memset(out, 0, room); // deliberately bytes, not characters
    const std::size_t size = wcsnlen(text, room - 1);
    std::memcpy(out, text, size * sizeof(wchar_t));
    out[size] = 0;
    return 1;
}

int CMiniVersion::GetCompanyName(unsigned short* out, int len) const noexcept
{
    return CopyText(m_companyName, out, len);
}

int CMiniVersion::GetFileDescription(unsigned short* out, int len) const noexcept
{
    return CopyText(m_fileDescription, out, len);
}

int CMiniVersion::GetProductName(unsigned short* out, int len) const noexcept
{
    return CopyText(m_productName, out, len);
}
