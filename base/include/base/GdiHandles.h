#pragma once

#include <base/Owner.h>

#include <windows.h>

#include <utility>

// Owners of drawing objects and device contexts, and the guard that selects one into the other.
namespace base {

/// Owns any object that DeleteObject deletes. It must not be selected into a device context by
/// then.
template <class ObjectHandle>
struct GdiObjectTraits
{
    using Handle = ObjectHandle;
    static Handle Empty() noexcept { return nullptr; }
    static void Release(Handle object) noexcept { DeleteObject(object); }
};
using Bitmap = Owner<GdiObjectTraits<HBITMAP>>;
using Brush = Owner<GdiObjectTraits<HBRUSH>>;
using Font = Owner<GdiObjectTraits<HFONT>>;
using Pen = Owner<GdiObjectTraits<HPEN>>;
using Region = Owner<GdiObjectTraits<HRGN>>;

/// Owns a result of LoadImageW without LR_SHARED, or of CreateIconIndirect.
struct IconTraits
{
    using Handle = HICON;
    static HICON Empty() noexcept { return nullptr; }
    static void Release(HICON icon) noexcept { DestroyIcon(icon); }
};
using Icon = Owner<IconTraits>;

/// Owns a result of CreateCompatibleDC or CreateDCW.
struct MemoryContextTraits
{
    using Handle = HDC;
    static HDC Empty() noexcept { return nullptr; }
    static void Release(HDC context) noexcept { DeleteDC(context); }
};
using MemoryContext = Owner<MemoryContextTraits>;

/// The context of GetDC: that of a window, or of the whole screen for a null window.
class WindowContext
{
public:
    explicit WindowContext(HWND window) noexcept : m_window(window), m_context(GetDC(window)) {}
    ~WindowContext()
    {
        if (m_context) ReleaseDC(m_window, m_context);
    }
    WindowContext(const WindowContext&) = delete;
    WindowContext& operator=(const WindowContext&) = delete;

    explicit operator bool() const noexcept { return m_context != nullptr; }
    HDC get() const noexcept { return m_context; }

private:
    HWND m_window;
    HDC m_context;
};

/// Selects an object into a device context and restores the previous one when the scope ends.
/// Context and object must outlive it. A null context or object selects nothing.
class Selection
{
public:
    Selection(HDC context, HGDIOBJ object) noexcept
        : m_context(context), m_before(context && object ? SelectObject(context, object) : nullptr)
    {
    }
    ~Selection()
    {
        if (m_before) SelectObject(m_context, m_before);
    }
    Selection(const Selection&) = delete;
    Selection& operator=(const Selection&) = delete;

    /// False when the platform refused, as for a bitmap that is selected elsewhere.
    explicit operator bool() const noexcept { return m_before != nullptr; }

private:
    HDC m_context;
    HGDIOBJ m_before;
};

} // namespace base
