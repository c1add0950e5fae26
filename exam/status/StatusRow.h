#pragma once

#include "service/StatusSettings.h"
#include "status/KeptReading.h"

#include <Utils_Statics/IStateChangeConsumer.h>

#include <afxwin.h>

#include <functional>

namespace exam {

/// True when the setting asks for this computer's address over the streaming icon.
bool IsAddressWanted();

/// The status row, a window of its own in the header. The library's items draw themselves into it,
/// the first registered one at the right. Any thread may ask for a repaint through the items'
/// callback. It arrives here as one posted message, however many requests came meanwhile.
class StatusRow : public CWnd, private IStateChangeConsumer
{
public:
    /// `onClick` is called when the user clicks into the row.
    explicit StatusRow(std::function<void()> onClick);
    ~StatusRow() override;

    /// Creates and shows the window; false when the platform refuses.
    bool Open(CWnd& parent, const CRect& place);

    /// Lets the items take their icons from a folder of images.
    void UseIcons(const std::wstring& folder);

    /// Lets the items read their settings again.
    void ReadSettings();

    /// A probe reports its reading once a tick. More often would fill the log.
    static constexpr double tickSeconds = 5;
    /// Sets the function that is called once a tick from now on; an empty one ends the ticks.
    void OnTick(std::function<void()> action);

    /// The left edge of the last painting, in pixels of the row; the row's width when it was empty.
    int PaintedFrom() const { return m_paintedFrom; }

protected:
    BOOL OnEraseBkgnd(CDC* dc);
    void OnPaint();
    void OnLButtonDown(UINT flags, CPoint point);
    void OnTimer(UINT_PTR id);
    LRESULT OnRepaint(WPARAM wParam, LPARAM lParam);
    DECLARE_MESSAGE_MAP()

private:
    void OnStateChange(StateChangeType type, unsigned int param1, long param2) override;
    static void RequestRepaint();
    void Paint(CDC& dc, const CRect& area);
    int PaintItems(Gdiplus::Graphics& graphics, const CRect& area);

    std::function<void()> m_onClick;
    std::function<void()> m_onTick;
    KeptReading m_reading;
    std::wstring m_icons; // empty: those of the store
    int m_paintedFrom = 0;
};

} // namespace exam
