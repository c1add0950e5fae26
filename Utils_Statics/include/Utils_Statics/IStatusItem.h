#pragma once

#include <Utils_Statics/export.h>

#include <atltypes.h>

#include <atomic>

namespace Gdiplus {
class Graphics;
}

/// One icon of the application's status row. All icons share one callback through which they ask
/// the application to repaint the row.
///
/// The application owns the row. It registers the items that it wants with CStatusFactory and sets
/// its callback. When it repaints, it lets each registered item draw itself into the part of the
/// row that is still free, beginning at the right:
///
///     int right = row.right;
///     for (IStatusItem* item : CStatusFactory::getItems())
///         right -= item->drawIcon(CRect(row.left, row.top, right, row.bottom), graphics);
///
/// So the item that was registered first is the rightmost. Items are used on the thread that
/// paints; their static setters may be called on any.
class UTILS_STATICS_API IStatusItem
{
public:
    /// Called on the thread that changed a state: a thread of the application, the platform's event
    /// thread or its timer thread. It should only schedule a repaint, for example by a posted
    /// message. It must not wait for the user-interface thread, which may be waiting for it in
    /// CStatusFactory::destroyInstance.
    using StatusCallback = void (*)();

    virtual ~IStatusItem();

    /// Asks the application to repaint the row.
    virtual void issueUpdate() const = 0;

    /// Reads again whether the user wants the item shown. The application calls it once at first
    /// and whenever the settings may have changed; before, an item that has a setting counts as
    /// unwanted.
    virtual void updateVisibleState() = 0;

    /// True when the item is to be drawn now.
    virtual bool isVisible() const = 0;

    /// Draws the item at the right edge of `rect`, the free part of the row in pixels. The result
    /// is the width used; 0 when nothing is shown, for example for lack of the image file or of
    /// memory.
    virtual int drawIcon(const CRect& rect, Gdiplus::Graphics& graphics) const = 0;

    /// Replaces the repaint callback; null switches repaint requests off.
    static void SetStatusCallback(StatusCallback callback) noexcept;

    /// Calls the callback, if there is one. It does not say which item changed.
    static void IssueStatusUpdate();

private:
    static std::atomic<StatusCallback> m_pfnStatusCallback;
};
