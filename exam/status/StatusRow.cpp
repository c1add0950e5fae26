#include "status/StatusRow.h"

#include "base/Dpi.h"
#include "base/Painting.h"
#include "base/Palette.h"
#include "base/StateChanges.h"

#include <base/GdiPlusSession.h>
#include <qor_utils/StoreFolders.h>
#include <qor_utils/StoreNumbers.h>
#include <Utils_Statics/CStatusFactory.h>
#include <Utils_Statics/CStatusProbeSensor.h>
#include <Utils_Statics/CStatusStreaming.h>
#include <Utils_Statics/GetStr.h>
#include <Utils_Statics/IStatusItem.h>
#include <Utils_Statics/utilsExam.h>

#include <afxwin.h>

#include <algorithm>
#include <atomic>
#include <utility>

namespace exam {

namespace {

constexpr UINT repaintMessage = WM_APP + 310;
constexpr UINT_PTR tickTimer = 1;
// Lengths in pixels at 96 dpi.
constexpr int spacing = 6;      // between two items
constexpr int addressRoom = 76; // the address reaches beyond the icon that it belongs to

// The threads that change a state read it.
constinit std::atomic<HWND> s_row = nullptr;
constinit std::atomic<bool> s_isRepaintPosted = false;

// The items look for their icons in the images store, which is another one for the length of a
// scope.
class IconFolder
{
public:
    explicit IconFolder(const std::wstring& folder) : m_before(utilsExam::GetImage(L""))
    {
        if (!folder.empty()) qor_utils::SetStoreFolder(qor_utils::imagesStore, folder);
    }
    ~IconFolder() { qor_utils::SetStoreFolder(qor_utils::imagesStore, m_before); }
    IconFolder(const IconFolder&) = delete;
    IconFolder& operator=(const IconFolder&) = delete;

private:
    std::wstring m_before;
};

// The pixels that an item takes besides the width that it answers.
int RoomBeside(const IStatusItem* item, int dpi)
{
    const bool hasAddress = item == CStatusStreaming::getInstance() && IsAddressWanted() &&
                            CStatusStreaming::getState() == CStatusStreaming::StreamingOn;
    return MulDiv(hasAddress ? addressRoom : spacing, dpi, USER_DEFAULT_SCREEN_DPI);
}

void PaintHint(CDC& dc, CRect area, int dpi)
{
    const int size = MulDiv(ScopedFont::textSize, dpi, USER_DEFAULT_SCREEN_DPI);
    const ScopedFont font(dc, std::min<int>(size, area.Height() / 2), FW_NORMAL);
    dc.SetBkMode(TRANSPARENT);
    dc.SetTextColor(palette::label);
    dc.DrawText(GetStr("exam.status.hint"), &area, DT_RIGHT | DT_VCENTER | DT_SINGLELINE);
}

} // namespace

bool IsAddressWanted()
{
    return IsWanted(StatusSettings().back());
}

BEGIN_MESSAGE_MAP(StatusRow, CWnd)
    ON_WM_ERASEBKGND()
    ON_WM_PAINT()
    ON_WM_LBUTTONDOWN()
    ON_WM_TIMER()
    ON_MESSAGE(repaintMessage, OnRepaint)
END_MESSAGE_MAP()

StatusRow::StatusRow(std::function<void()> onClick) : m_onClick(std::move(onClick)) {}

StatusRow::~StatusRow()
{
    IStatusItem::SetStatusCallback(nullptr);
    s_row = nullptr;
}

bool StatusRow::Open(CWnd& parent, const CRect& place)
{
    const CString windowClass =
        AfxRegisterWndClass(CS_HREDRAW | CS_VREDRAW, LoadCursor(nullptr, IDC_HAND));
    parent.ModifyStyle(0, WS_CLIPCHILDREN); // it paints round the row
    if (!CreateEx(0, windowClass, L"", WS_CHILD | WS_VISIBLE, place, &parent, 0)) return false;
    s_isRepaintPosted = false; // a message that was posted to a row before is lost
    s_row = GetSafeHwnd();
    IStatusItem::SetStatusCallback(RequestRepaint);
    return true;
}

void StatusRow::UseIcons(const std::wstring& folder)
{
    m_icons = folder;
    m_reading.Forget();
    Invalidate(FALSE);
}

void StatusRow::ReadSettings()
{
    for (IStatusItem* const item : CStatusFactory::getItems())
        item->updateVisibleState();
    m_reading.Forget();
    Invalidate(FALSE);
}

void StatusRow::OnTick(std::function<void()> action)
{
    m_onTick = std::move(action);
    if (m_onTick)
        SetTimer(tickTimer, static_cast<UINT>(tickSeconds * 1000), nullptr);
    else
        KillTimer(tickTimer);
}

void StatusRow::OnTimer(UINT_PTR)
{
    if (m_onTick) m_onTick();
}

// The items keep some texts, so they read their settings again after a change of language.
void StatusRow::OnStateChange(StateChangeType type, unsigned int, long)
{
    if (type == stateLanguageChanged && GetSafeHwnd()) ReadSettings();
}

// Any thread may call it.
void StatusRow::RequestRepaint()
{
    const HWND row = s_row;
    if (row && !s_isRepaintPosted.exchange(true)) ::PostMessage(row, repaintMessage, 0, 0);
}

LRESULT StatusRow::OnRepaint(WPARAM, LPARAM)
{
    s_isRepaintPosted = false;
    Invalidate(FALSE);
    return 0;
}

BOOL StatusRow::OnEraseBkgnd(CDC*)
{
    return TRUE; // OnPaint covers everything; erasing first would flicker
}

void StatusRow::OnPaint()
{
    CRect area;
    GetClientRect(&area);
    BufferedPaint paint(*this);
    Paint(paint.Context(), area);
}

// Paints the items from right to left. The result is the left edge of the last one.
int StatusRow::PaintItems(Gdiplus::Graphics& graphics, const CRect& area)
{
    const IconFolder icons(m_icons);
    const int dpi = DpiOf(GetSafeHwnd());
    int right = area.right;
    for (const IStatusItem* const item : CStatusFactory::getItems()) {
        if (!item->isVisible()) continue;
        const CRect free(0, 0, right, area.bottom);
        const int width = item == CStatusProbeSensor::getInstance()
                              ? m_reading.Draw(*item, free, graphics)
                              : item->drawIcon(free, graphics);
        if (width > 0) right -= width + RoomBeside(item, dpi);
    }
    return right;
}

void StatusRow::Paint(CDC& dc, const CRect& area)
{
    dc.FillSolidRect(&area, palette::header);
    CRect free = area;
    free.right -= MulDiv(spacing, DpiOf(GetSafeHwnd()), USER_DEFAULT_SCREEN_DPI);
    {
        Gdiplus::Graphics graphics(dc.GetSafeHdc());
        m_paintedFrom = PaintItems(graphics, free);
    }
    if (m_paintedFrom < free.right) return;
    m_paintedFrom = area.Width();
    PaintHint(dc, free, DpiOf(GetSafeHwnd()));
}

void StatusRow::OnLButtonDown(UINT, CPoint)
{
    m_onClick();
}

} // namespace exam
