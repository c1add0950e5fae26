#pragma once

#include <Utils_Statics/export.h>

#include <windows.h>

/// Reads the version resource of one executable file once and gives its numbers, flags and three
/// texts in the resource's first language.
///
/// The object is a plain value: copies share the buffer of the version data, and its owner calls
/// Release on one of them. Values that the resource lacks read as zero or as an empty text. A file
/// so damaged that the platform would read beyond it counts as one without a resource; a damaged
/// text is empty. 16-bit files are read too, as far as the platform reads them. Nothing is logged
/// and nothing throws. The memory is from the heap; no lock is taken.
class UTILS_STATICS_API CMiniVersion
{
public:
    /// Reads the file of a path of at most 519 characters; null or an empty path reads nothing (in
    /// particular not the running program).
    explicit CMiniVersion(const wchar_t* path = nullptr) noexcept;

    /// Reads the file; the constructor has done so already. 1 on success. 0 when the file has no
    /// usable version resource; the numbers and texts then stay as they are. Init does not free an
    /// existing buffer: call Release before a second call.
    int Init() noexcept;

    /// Frees the buffer; numbers and texts stay. The destructor does not call it.
    void Release() noexcept;

    /// Stores four numbers, the most significant one first. The result is always 1.
    int GetFileVersion(unsigned short* out) const noexcept;
    int GetProductVersion(unsigned short* out) const noexcept;

    /// Stores a word of the fixed version information. The flags are not masked. The result is
    /// always 1.
    int GetFileFlags(unsigned long& flags) const noexcept;
    int GetFileOS(unsigned long& os) const noexcept;
    int GetFileType(unsigned long& type) const noexcept;
    int GetFileSubtype(unsigned long& subtype) const noexcept;

    /// Stores at most `len` - 1 characters of a text and a null. `out` has room for `len`
    /// characters; its first `len` bytes (not characters) are cleared before. Nothing is stored
    /// when `len` is not positive. 0 for a null `out`, else 1.
    int GetCompanyName(unsigned short* out, int len) const noexcept;
    int GetFileDescription(unsigned short* out, int len) const noexcept;
    int GetProductName(unsigned short* out, int len) const noexcept;

protected:
    static constexpr unsigned textSize = 520; ///< characters of each text, its null included

    /// Copies the fixed version information. The result is 0 when there is none.
    int GetFixedInfo(VS_FIXEDFILEINFO& info) const noexcept;

    /// Stores the text of a key in the first language of the resource, cut to the textSize
    /// characters for which `out` has room. 0, with an empty `out`, when there is no such text.
    int GetStringInfo(const wchar_t* key, wchar_t* out) const noexcept;

private:
    static int CopyText(const wchar_t* text, unsigned short* out, int len) noexcept;
    bool ReadVersionData() noexcept;

    unsigned char* m_versionData = nullptr;
    unsigned m_reserved = 0;
    unsigned short m_fileVersion[4] = {};
    unsigned short m_productVersion[4] = {};
    unsigned m_fileFlags = 0;
    unsigned m_fileOS = 0;
    unsigned m_fileType = 0;
    unsigned m_fileSubtype = 0;
    wchar_t m_modulePath[textSize] = {};
    wchar_t m_companyName[textSize] = {};
    wchar_t m_productName[textSize] = {};
    wchar_t m_fileDescription[textSize] = {};
};
