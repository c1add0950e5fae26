#include "Utils_Statics/CMiniVersion.h"

#include "diagnostics/VersionFile.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <cwchar>
#include <iterator>
#include <new>

namespace {

// The compilers of Windows have these sizes on both architectures.
static_assert(sizeof(unsigned) == sizeof(DWORD) && sizeof(unsigned short) == sizeof(wchar_t));

// The low half of a translation's word is the language, the high half the code page.
bool StringQuery(wchar_t (&query)[256], DWORD translation, const wchar_t* key)
{
    const int length = _snwprintf(query, std::size(query), L"\\StringFileInfo\\%04x%04x\\%s",
                                  static_cast<unsigned>(LOWORD(translation)),
                                  static_cast<unsigned>(HIWORD(translation)), key);
    return length > 0 && length < static_cast<int>(std::size(query));
}

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
    // The platform reads a little behind the last node to find the end of the nodes.
    constexpr std::size_t behind = 16;
    const auto layout = utils_statics::LayoutOfVersionResource(m_modulePath);
    DWORD unused = 0;
    const DWORD size = layout ? GetFileVersionInfoSizeW(m_modulePath, &unused) : 0;
    if (size == 0) return false;
    m_versionData = new (std::nothrow) unsigned char[size + behind]();
    return m_versionData && GetFileVersionInfoW(m_modulePath, 0, size, m_versionData) &&
           utils_statics::MendVersionBlock(m_versionData, size, *layout);
}

void CMiniVersion::Release() noexcept
{
    delete[] m_versionData;
    m_versionData = nullptr;
}

bool CMiniVersion::Query(const wchar_t* name, const void*& value, unsigned& length) const noexcept
{
    void* found = nullptr;
    UINT size = 0;
    if (!m_versionData || !VerQueryValueW(m_versionData, name, &found, &size) || !found)
        return false;
    value = found;
    length = size;
    return true;
}

int CMiniVersion::GetFixedInfo(VS_FIXEDFILEINFO& info) const noexcept
{
    const void* value = nullptr;
    unsigned size = 0;
    if (!Query(L"\\", value, size) || size < sizeof info) return 0;
    std::memcpy(&info, value, sizeof info); // it need not be aligned
    return 1;
}

int CMiniVersion::GetStringInfo(const wchar_t* key, wchar_t* out) const noexcept
{
    if (!m_versionData || !out || !key) return 0;
    out[0] = L'\0';
    const void* value = nullptr;
    unsigned length = 0;
    DWORD translation = 0;
    if (!Query(L"\\VarFileInfo\\Translation", value, length) || length < sizeof translation)
        return 0;
    std::memcpy(&translation, value, sizeof translation);

    wchar_t query[256];
    if (!StringQuery(query, translation, key) || !Query(query, value, length)) return 0;
    const auto* const text = static_cast<const wchar_t*>(value);
    const std::size_t size = wcsnlen(text, std::min(length, textSize - 1));
    std::wmemcpy(out, text, size);
    out[size] = L'\0';
    return 1;
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
