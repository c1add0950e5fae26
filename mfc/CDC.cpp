#include "GdiMap.h"

#include <framework/FromHandle.h>

#include <utility>

namespace {

using ContextMap = framework::PermanentMap<HDC, CDC>;

ContextMap& Contexts()
{
    static auto& map = *new ContextMap; // never destroyed, like GdiMap
    return map;
}

HDC HandleOf(const CDC* dc)
{
    return dc ? dc->m_hDC : nullptr;
}

HGDIOBJ HandleOf(const CGdiObject* object)
{
    return object ? object->m_hObject : nullptr;
}

// Selects the object into the output context and, where it differs, also into the attribute
// context.
HGDIOBJ SelectInto(const CDC& dc, HGDIOBJ object)
{
    const HGDIOBJ old = dc.m_hDC ? ::SelectObject(dc.m_hDC, object) : nullptr;
    if (dc.m_hAttribDC == dc.m_hDC) return old;
    const HGDIOBJ oldAttribute = ::SelectObject(dc.m_hAttribDC, object);
    return old ? old : oldAttribute;
}

} // namespace

CDC::~CDC()
{
    if (m_hDC) ::DeleteDC(Detach());
}

CDC* CDC::FromHandle(HDC context)
{
    if (!context) return nullptr;
    if (CDC* const permanent = Contexts().Find(context)) return permanent;
    auto& temporary = framework::ThreadState::Current().contexts[context];
    if (!temporary) temporary = std::make_unique<CDC>();
    // A temporary object that was detached, or whose handle was destroyed, gets the handle again.
    if (!temporary->m_hDC) temporary->m_hDC = temporary->m_hAttribDC = context;
    return temporary.get();
}

CDC* framework::DeviceContextFromHandle(HDC context)
{
    return CDC::FromHandle(context);
}

void CDC::DeleteTempMap()
{
    framework::ThreadState::Current().DeleteTemporaryContexts();
}

BOOL CDC::Attach(HDC context)
{
    if (!context || m_hDC) return FALSE;
    m_hDC = m_hAttribDC =
        context; // set first, so that the handle has an owner if memory is short for the map
    Contexts().Add(context, this);
    return TRUE;
}

HDC CDC::Detach()
{
    if (m_hDC) Contexts().Remove(m_hDC, this);
    m_hAttribDC = nullptr;
    return std::exchange(m_hDC, nullptr);
}

BOOL CDC::CreateDC(LPCTSTR driver, LPCTSTR device, LPCTSTR output, const void* mode)
{
    return !m_hDC && Attach(::CreateDCW(driver, device, output, static_cast<const DEVMODE*>(mode)));
}

BOOL CDC::CreateCompatibleDC(CDC* dc)
{
    return !m_hDC && Attach(::CreateCompatibleDC(HandleOf(dc)));
}

BOOL CDC::DeleteDC()
{
    return m_hDC && ::DeleteDC(Detach());
}

int CDC::SaveDC()
{
    return ::SaveDC(m_hDC);
}

BOOL CDC::RestoreDC(int saved)
{
    return ::RestoreDC(m_hDC, saved);
}

CGdiObject* CDC::SelectStockObject(int index)
{
    return CGdiObject::FromHandle(SelectInto(*this, ::GetStockObject(index)));
}

CGdiObject* CDC::SelectObject(CGdiObject* object)
{
    return CGdiObject::FromHandle(SelectInto(*this, HandleOf(object)));
}

CPen* CDC::SelectObject(CPen* pen)
{
    return CPen::FromHandle(static_cast<HPEN>(SelectInto(*this, HandleOf(pen))));
}

CBrush* CDC::SelectObject(CBrush* brush)
{
    return CBrush::FromHandle(static_cast<HBRUSH>(SelectInto(*this, HandleOf(brush))));
}

CFont* CDC::SelectObject(CFont* font)
{
    return CFont::FromHandle(static_cast<HFONT>(SelectInto(*this, HandleOf(font))));
}

CBitmap* CDC::SelectObject(CBitmap* bitmap)
{
    return CBitmap::FromHandle(static_cast<HBITMAP>(SelectInto(*this, HandleOf(bitmap))));
}

CBitmap* CDC::GetCurrentBitmap() const
{
    return CBitmap::FromHandle(static_cast<HBITMAP>(::GetCurrentObject(m_hAttribDC, OBJ_BITMAP)));
}

CFont* CDC::GetCurrentFont() const
{
    return CFont::FromHandle(static_cast<HFONT>(::GetCurrentObject(m_hAttribDC, OBJ_FONT)));
}

CPoint CDC::SetBrushOrg(int x, int y)
{
    CPoint old;
    ::SetBrushOrgEx(m_hDC, x, y, &old);
    return old;
}

CPoint CDC::GetViewportOrg() const
{
    CPoint origin;
    ::GetViewportOrgEx(m_hAttribDC, &origin);
    return origin;
}

CPoint CDC::SetViewportOrg(int x, int y)
{
    CPoint old;
    ::SetViewportOrgEx(m_hDC, x, y, &old);
    return old;
}

CPoint CDC::GetCurrentPosition() const
{
    CPoint position;
    ::GetCurrentPositionEx(m_hAttribDC, &position);
    return position;
}

CPoint CDC::MoveTo(int x, int y)
{
    CPoint old;
    ::MoveToEx(m_hDC, x, y, &old);
    return old;
}

void CDC::FillRect(LPCRECT rect, CBrush* brush)
{
    ::FillRect(m_hDC, rect, static_cast<HBRUSH>(HandleOf(brush)));
}

void CDC::FrameRect(LPCRECT rect, CBrush* brush)
{
    ::FrameRect(m_hDC, rect, static_cast<HBRUSH>(HandleOf(brush)));
}

void CDC::FillSolidRect(LPCRECT rect, COLORREF colour)
{
    const COLORREF old = ::SetBkColor(m_hDC, colour);
    ::ExtTextOutW(m_hDC, 0, 0, ETO_OPAQUE, rect, nullptr, 0, nullptr);
    ::SetBkColor(m_hDC, old);
}

void CDC::FillSolidRect(int x, int y, int width, int height, COLORREF colour)
{
    const CRect rect(CPoint(x, y), CSize(width, height));
    FillSolidRect(&rect, colour);
}

BOOL CDC::GradientFill(TRIVERTEX* vertices, ULONG vertexCount, void* elements, ULONG elementCount,
                       DWORD mode)
{
    return ::GradientFill(m_hDC, vertices, vertexCount, elements, elementCount, mode);
}

BOOL CDC::BitBlt(int x, int y, int width, int height, CDC* source, int xSource, int ySource,
                 DWORD operation)
{
    return ::BitBlt(m_hDC, x, y, width, height, HandleOf(source), xSource, ySource, operation);
}

BOOL CDC::StretchBlt(int x, int y, int width, int height, CDC* source, int xSource, int ySource,
                     int widthSource, int heightSource, DWORD operation)
{
    return ::StretchBlt(m_hDC, x, y, width, height, HandleOf(source), xSource, ySource, widthSource,
                        heightSource, operation);
}

BOOL CDC::MaskBlt(int x, int y, int width, int height, CDC* source, int xSource, int ySource,
                  CBitmap& mask, int xMask, int yMask, DWORD operation)
{
    return ::MaskBlt(m_hDC, x, y, width, height, HandleOf(source), xSource, ySource, mask, xMask,
                     yMask, operation);
}

CSize CDC::GetTextExtent(LPCTSTR text, int length) const
{
    CSize size;
    ::GetTextExtentPoint32W(m_hAttribDC, text, length, &size);
    return size;
}
