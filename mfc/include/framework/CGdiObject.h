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

    HGDIOBJ m_hObject = nullptr;

    HGDIOBJ GetSafeHandle() const noexcept { return m_hObject; }
    operator HGDIOBJ() const noexcept { return m_hObject; }
    /// FALSE for a null handle, or when a handle is already attached.
    BOOL Attach(HGDIOBJ object);
    /// Gives the handle up without deleting it.
    HGDIOBJ Detach();
    /// The object must not be selected into a device context.
    BOOL DeleteObject();
    int GetObject(int size, LPVOID data) const { return ::GetObjectW(m_hObject, size, data); }
    UINT GetObjectType() const { return ::GetObjectType(m_hObject); }
    BOOL CreateStockObject(int index) { return Attach(::GetStockObject(index)); }

    static CGdiObject* FromHandle(HGDIOBJ object);
    static void DeleteTempMap();

protected:
    /// Takes ownership of a new handle; deletes it when another is already attached.
    BOOL Own(HGDIOBJ object);
};

class MFC_API CPen : public CGdiObject
{
public:
    CPen() = default;
    /// Empty when the platform refuses.
    CPen(int style, int width, COLORREF colour) { CreatePen(style, width, colour); }
    ~CPen() override;

    operator HPEN() const noexcept { return static_cast<HPEN>(m_hObject); }
    BOOL CreatePen(int style, int width, COLORREF colour)
    {
        return Own(::CreatePen(style, width, colour));
    }
    int GetLogPen(LOGPEN* description) { return GetObject(sizeof *description, description); }
    static CPen* FromHandle(HPEN pen);
};

class MFC_API CBrush : public CGdiObject
{
public:
    CBrush() = default;
    explicit CBrush(COLORREF colour) { CreateSolidBrush(colour); }
    ~CBrush() override;

    operator HBRUSH() const noexcept { return static_cast<HBRUSH>(m_hObject); }
    BOOL CreateSolidBrush(COLORREF colour) { return Own(::CreateSolidBrush(colour)); }
    BOOL CreateHatchBrush(int style, COLORREF colour)
    {
        return Own(::CreateHatchBrush(style, colour));
    }
    BOOL CreateSysColorBrush(int index) { return Own(::CreateSolidBrush(::GetSysColor(index))); }
    int GetLogBrush(LOGBRUSH* description) { return GetObject(sizeof *description, description); }
    static CBrush* FromHandle(HBRUSH brush);
};

class MFC_API CFont : public CGdiObject
{
public:
    CFont() = default;
    ~CFont() override;

    operator HFONT() const noexcept { return static_cast<HFONT>(m_hObject); }
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
    int GetLogFont(LOGFONT* description) { return GetObject(sizeof *description, description); }
    static CFont* FromHandle(HFONT font);
};

class MFC_API CBitmap : public CGdiObject
{
public:
    CBitmap() = default;
    ~CBitmap() override;

    operator HBITMAP() const noexcept { return static_cast<HBITMAP>(m_hObject); }
    /// Loads a bitmap resource of the module that has it (AfxFindResourceHandle).
    BOOL LoadBitmap(LPCTSTR name);
    BOOL LoadBitmap(UINT id) { return LoadBitmap(MAKEINTRESOURCE(id)); }
    BOOL CreateBitmap(int width, int height, UINT planes, UINT bitsPerPixel, const void* bits)
    {
        return Own(::CreateBitmap(width, height, planes, bitsPerPixel, bits));
    }
    BOOL CreateBitmapIndirect(LPBITMAP description)
    {
        return Own(::CreateBitmapIndirect(description));
    }
    BOOL CreateCompatibleBitmap(CDC* dc, int width, int height);
    /// Returns the description's length in bytes; 0 on failure.
    int GetBitmap(BITMAP* description) const { return GetObject(sizeof *description, description); }
    /// Returns the number of bytes copied. Rows are padded to 16 bits.
    DWORD GetBitmapBits(DWORD size, LPVOID bits) const;
    DWORD SetBitmapBits(DWORD size, const void* bits);
    static CBitmap* FromHandle(HBITMAP bitmap);
};
