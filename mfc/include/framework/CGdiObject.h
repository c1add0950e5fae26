#pragma once

#include <afx.h>
#include <atltypes.h>

class CDC;

/// An owned GDI object: the destructor deletes it. The Create and Load functions return FALSE when
/// the platform refuses, which leaves the object empty, or when a handle is already attached.
///
/// FromHandle returns the object that a handle is attached to, or a temporary one that does not own
/// the handle. Temporary objects belong to the calling thread. They are deleted at idle time of its
/// message loop, by DeleteTempMap, or when the thread ends, so never keep a pointer to one.
class MFC_API CGdiObject : public CObject
{
public:
    CGdiObject() = default;
    ~CGdiObject() override;

    /// The handle, which stays the object's; null for an empty object.
    HGDIOBJ m_hObject = nullptr;

    /// The handle, also of an empty object (null).
    HGDIOBJ GetSafeHandle() const noexcept { return m_hObject; }
    operator HGDIOBJ() const noexcept { return m_hObject; }
    /// FALSE for a null handle, or when a handle is already attached.
    BOOL Attach(HGDIOBJ object);
    /// Gives the handle up without deleting it.
    HGDIOBJ Detach();
    /// The object must not be selected into a device context.
    BOOL DeleteObject();
    /// GDI's functions of these names.
    int GetObject(int size, LPVOID data) const { return ::GetObjectW(m_hObject, size, data); }
    UINT GetObjectType() const { return ::GetObjectType(m_hObject); }
    /// Attaches an object of the system, which deleting leaves as it is.
    BOOL CreateStockObject(int index) { return Attach(::GetStockObject(index)); }

    /// Null for a null handle.
    static CGdiObject* FromHandle(HGDIOBJ object);
    /// Deletes the calling thread's temporary objects.
    static void DeleteTempMap();

protected:
    /// Takes ownership of a new handle; deletes it when another is already attached.
    BOOL Own(HGDIOBJ object);
};

/// A pen of GDI.
class MFC_API CPen : public CGdiObject
{
public:
    CPen() = default;
    /// Empty when the platform refuses.
    CPen(int style, int width, COLORREF colour) { CreatePen(style, width, colour); }
    ~CPen() override;

    /// The handle, which stays the object's; null for an empty object.
    operator HPEN() const noexcept { return static_cast<HPEN>(m_hObject); }
    /// FALSE like the functions of CGdiObject.
    BOOL CreatePen(int style, int width, COLORREF colour)
    {
        return Own(::CreatePen(style, width, colour));
    }
    /// Returns the description's length in bytes; 0 on failure.
    int GetLogPen(LOGPEN* description) { return GetObject(sizeof *description, description); }
    /// Null for a null handle.
    static CPen* FromHandle(HPEN pen);
};

/// A brush of GDI.
class MFC_API CBrush : public CGdiObject
{
public:
    CBrush() = default;
    /// A brush of one colour; empty when the platform refuses.
    explicit CBrush(COLORREF colour) { CreateSolidBrush(colour); }
    ~CBrush() override;

    /// The handle, which stays the object's; null for an empty object.
    operator HBRUSH() const noexcept { return static_cast<HBRUSH>(m_hObject); }
    /// FALSE like the functions of CGdiObject. A brush of a system colour keeps the colour that is
    /// set now.
    BOOL CreateSolidBrush(COLORREF colour) { return Own(::CreateSolidBrush(colour)); }
    BOOL CreateHatchBrush(int style, COLORREF colour)
    {
        return Own(::CreateHatchBrush(style, colour));
    }
    BOOL CreateSysColorBrush(int index) { return Own(::CreateSolidBrush(::GetSysColor(index))); }
    /// Returns the description's length in bytes; 0 on failure.
    int GetLogBrush(LOGBRUSH* description) { return GetObject(sizeof *description, description); }
    /// Null for a null handle.
    static CBrush* FromHandle(HBRUSH brush);
};

/// A font of GDI.
class MFC_API CFont : public CGdiObject
{
public:
    CFont() = default;
    ~CFont() override;

    /// The handle, which stays the object's; null for an empty object.
    operator HFONT() const noexcept { return static_cast<HFONT>(m_hObject); }
    /// FALSE like the functions of CGdiObject.
    BOOL CreateFontIndirect(const LOGFONT* description)
    {
        return Own(::CreateFontIndirectW(description));
    }
    BOOL CreateFont(int height, int width, int escapement, int orientation, int weight, BYTE italic,
                    BYTE underline, BYTE strikeOut, BYTE charSet, BYTE outPrecision,
                    BYTE clipPrecision, BYTE quality, BYTE pitchAndFamily, LPCTSTR faceName);
    /// `tenths` is the height in tenths of a point, at the resolution of `dc` (null: of the
    /// screen).
    BOOL CreatePointFont(int tenths, LPCTSTR faceName, CDC* dc = nullptr);
    /// Returns the description's length in bytes; 0 on failure.
    int GetLogFont(LOGFONT* description) { return GetObject(sizeof *description, description); }
    /// Null for a null handle.
    static CFont* FromHandle(HFONT font);
};

/// A bitmap of GDI in the format of a device.
class MFC_API CBitmap : public CGdiObject
{
public:
    CBitmap() = default;
    ~CBitmap() override;

    /// The handle, which stays the object's; null for an empty object.
    operator HBITMAP() const noexcept { return static_cast<HBITMAP>(m_hObject); }
    /// Loads a bitmap resource of the module that has it (AfxFindResourceHandle).
    BOOL LoadBitmap(LPCTSTR name);
    BOOL LoadBitmap(UINT id) { return LoadBitmap(MAKEINTRESOURCE(id)); }
    /// FALSE like the functions of CGdiObject. The bits are copied; null leaves them undefined.
    BOOL CreateBitmap(int width, int height, UINT planes, UINT bitsPerPixel, const void* bits)
    {
        return Own(::CreateBitmap(width, height, planes, bitsPerPixel, bits));
    }
    BOOL CreateBitmapIndirect(LPBITMAP description)
    {
        return Own(::CreateBitmapIndirect(description));
    }
    /// FALSE like the functions of CGdiObject.
    BOOL CreateCompatibleBitmap(CDC* dc, int width, int height);
    /// Returns the description's length in bytes; 0 on failure.
    int GetBitmap(BITMAP* description) const { return GetObject(sizeof *description, description); }
    /// Returns the number of bytes copied. Rows are padded to 16 bits.
    DWORD GetBitmapBits(DWORD size, LPVOID bits) const;
    /// Returns the number of bytes that were set.
    DWORD SetBitmapBits(DWORD size, const void* bits);
    /// Null for a null handle.
    static CBitmap* FromHandle(HBITMAP bitmap);
};
