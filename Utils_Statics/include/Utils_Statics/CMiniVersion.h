#pragma once

#include <Utils_Statics/export.h>

#include <windows.h>

/// Reads the version resource of one executable file, once, and answers what it says: numbers,
/// flags and three texts in the resource's first language.
///
/// The object is a plain value: copies share the buffer of the version data, and whoever owns it
/// calls Release on one of them. What the resource does not have reads as zero or as an empty text.
/// A file that is damaged so that the platform would be led out of it counts as one without a
/// resource; a text that is damaged is empty. Files of 16 bits are read, too, as far as the
/// platform reads them. Nothing is logged and nothing throws. The memory is from the heap; no lock
/// is taken.
class UTILS_STATICS_API CMiniVersion
{
public:
    /// Reads the file of a path of at most 519 characters; null or an empty path reads nothing (in
    /// particular not the running program).
    explicit CMiniVersion(const wchar_t* path = nullptr) noexcept;

    /// Reads the file; the constructor has done so already. 1 on success. 0 when the file has no
    /// usable version resource; the numbers and texts are then what they were. A buffer that is
    /// there is not freed: call Release before a second call.
    int Init() noexcept;

    /// Frees the buffer. Numbers and texts stay. No destructor does this.
    void Release() noexcept;

    /// Four numbers, the most significant one first. Always 1.
    int GetFileVersion(unsigned short* out) const noexcept;
    int GetProductVersion(unsigned short* out) const noexcept;

    /// The words of the fixed version information. The flags are not masked. Always 1.
    int GetFileFlags(unsigned long& flags) const noexcept;
    int GetFileOS(unsigned long& os) const noexcept;
    int GetFileType(unsigned long& type) const noexcept;
    int GetFileSubtype(unsigned long& subtype) const noexcept;

    /// Texts, of which at most `len` - 1 characters and a null are stored. `out` has room for `len`
    /// characters, of which the first `len` bytes (not characters) are cleared before. Nothing is
    /// stored when `len` is not positive. 0 for a null `out`, else 1.
    int GetCompanyName(unsigned short* out, int len) const noexcept;
    int GetFileDescription(unsigned short* out, int len) const noexcept;
    int GetProductName(unsigned short* out, int len) const noexcept;

protected:
    static constexpr unsigned textSize = 520; ///< characters of each text, its null included

    /// Copies the fixed version information. 0 when there is none.
    int GetFixedInfo(VS_FIXEDFILEINFO& info) const noexcept;

    /// The text of a key in the first language of the resource, cut to what `out`, which has room
    /// for textSize characters, can hold. 0, and `out` empty, when there is no such text.
    int GetStringInfo(const wchar_t* key, wchar_t* out) const noexcept;

private:
    static int CopyText(const wchar_t* text, unsigned short* out, int len) noexcept;
    bool ReadVersionData() noexcept;
    bool Query(const wchar_t* name, const void*& value, unsigned& length) const noexcept;

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
