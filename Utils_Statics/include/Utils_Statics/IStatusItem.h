#pragma once

#include <Utils_Statics/export.h>

#include <atltypes.h>

#include <atomic>

namespace Gdiplus {
class Graphics;
}

/// One icon of the application's status row, and the one callback through which all of them ask the
/// application to repaint that row.
///
/// The application owns the row. It registers the items that it wants with CStatusFactory, sets its
/// callback, and when it repaints it lets each registered item draw itself into the part of the row
/// that is still free, beginning at the right:
///
///     int right = row.right;
///     for (IStatusItem* item : CStatusFactory::getItems())
///         right -= item->drawIcon(CRect(row.left, row.top, right, row.bottom), graphics);
///
/// The first item that was registered thus stands rightmost. Items are used on the thread that
/// paints; their static setters may be called on any.
class UTILS_STATICS_API IStatusItem
{
public:
    /// Called on the thread that changed a state: one of the application's, the platform's event
    /// thread or its timer thread. It should do no more than schedule a repaint, by a posted
    /// message say: it must not wait for the user-interface thread, which may be waiting for it in
    /// CStatusFactory::destroyInstance.
    using StatusCallback = void (*)();

    virtual ~IStatusItem();

    /// Asks the application to repaint the row.
    virtual void issueUpdate() const = 0;

    /// Reads again whether the user wants the item shown. The application calls it when the
    /// settings may have changed; until then an item that has a setting counts as unwanted.
    virtual void updateVisibleState() = 0;

    /// Whether the item is to be drawn now.
    virtual bool isVisible() const = 0;

    /// Draws the item at the right edge of `rect`, the free part of the row in pixels, and answers
    /// the width used; 0 when nothing is shown, as without the image file or for want of memory.
    virtual int drawIcon(const CRect& rect, Gdiplus::Graphics& graphics) const = 0;

    /// Sets the repaint callback in place of the one before; null switches repaint requests off.
    static void SetStatusCallback(StatusCallback callback) noexcept;

    /// Calls the callback, if there is one. It does not say which item changed.
    static void IssueStatusUpdate();

private:
    static std::atomic<StatusCallback> m_pfnStatusCallback;
};
