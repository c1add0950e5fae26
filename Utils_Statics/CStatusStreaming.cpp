#include "Utils_Statics/CStatusStreaming.h"

#include "status/OneInstance.h"
#include "status/StatusDrawing.h"
#include "text/TextView.h"

#include <base/SlimLock.h>
#include <Utils_Statics/GetStr.h>
#include <Utils_Statics/utilsExam.h>

#include <mmsystem.h>

#include <mutex>
#include <new>
#include <shared_mutex>

using namespace utils_statics;

namespace {

constexpr UINT halfBlink = 1000; // milliseconds
constexpr auto addressColour = Gdiplus::ARGB{0xFFFFFFFF};
constexpr Gdiplus::REAL addressSize = 8; // points

// State, timer and blink phase change together, so that no late timer darkens a lit icon.
constinit base::SlimLock s_blinkLock;
// The timer of the current blinking; 0 for none.
constinit std::uint32_t s_blinkTimer = 0;
// The timer's thread holds it while it uses the item; shared, because callbacks may call setters.
constinit base::SlimLock s_itemInUse;

std::wstring NoAddress()
{
    return std::wstring(View(GetStr("streaming.noipaddress")));
}

// The text over the icon: this computer's address, or the text for no address when only the
// computer itself can reach that; empty when memory is short.
std::wstring AddressCaption()
try {
    const CString address = utilsExam::GetLocalIP();
    return address == L"127.0.0.1" ? NoAddress() : std::wstring(View(address));
} catch (const std::bad_alloc&) {
    return {};
}

} // namespace

constinit std::atomic<CStatusStreaming*> CStatusStreaming::m_me = nullptr;
constinit std::atomic<CStatusStreaming::StreamingStatus> CStatusStreaming::m_streaming =
    CStatusStreaming::StreamingOff;

CStatusStreaming::CStatusStreaming() : m_ipAddress(NoAddress()) {}

CStatusStreaming::~CStatusStreaming()
{
    const std::lock_guard lastUse(s_itemInUse); // waits for a running call of the timer
    if (m_me == this) s_blinkTimer = 0;
    timeKillEvent(m_timerId);
}

CStatusStreaming* CStatusStreaming::getInstance()
{
    return OneInstance(m_me, [] { return new CStatusStreaming; });
}

void CStatusStreaming::setState(StreamingStatus status)
{
    CStatusStreaming* const item = getInstance();
    {
        const std::lock_guard lock(s_blinkLock);
        m_streaming = status;
        item->setBlinkState();
    }
    item->issueUpdate();
}

CStatusStreaming::StreamingStatus CStatusStreaming::getState() noexcept
{
    return m_streaming;
}

bool CStatusStreaming::isStreaming() noexcept
{
    return m_streaming != StreamingOff;
}

void CStatusStreaming::issueUpdate() const
{
    IssueStatusUpdate();
}

void CStatusStreaming::updateVisibleState()
{
    m_enabled = IsWanted(L"Streaming");
    m_showIp = IsWanted(L"StreamingIP");
    m_ipAddress = AddressCaption();
    const std::lock_guard lock(s_blinkLock);
    setBlinkState();
}

// The caller holds s_blinkLock.
void CStatusStreaming::setBlinkState()
{
    timeKillEvent(m_timerId); // harmless for one that has ended already
    s_blinkTimer = 0;
    if (m_streaming != StreamingToDisk) {
        m_blinkOff = false;
        return;
    }
    m_timerId = timeSetEvent(halfBlink, halfBlink, StatusMessageTimer, 0, TIME_PERIODIC);
    s_blinkTimer = m_timerId;
}

void CALLBACK CStatusStreaming::StatusMessageTimer(UINT timer, UINT, DWORD_PTR, DWORD_PTR,
                                                   DWORD_PTR)
{
    const std::shared_lock inUse(s_itemInUse);
    {
        const std::lock_guard lock(s_blinkLock);
        if (timer == 0 || timer != s_blinkTimer) return; // a late call of an ended timer
        CStatusStreaming* const item = m_me;
        item->m_blinkOff = !item->m_blinkOff;
    }
    try {
        m_me.load()->issueUpdate();
    } catch (...) { // the platform's thread must not see an exception
    }
}

bool CStatusStreaming::isVisible() const
{
    const StreamingStatus status = m_streaming;
    return (m_enabled && status != StreamingOff) || status == StreamingToDisk;
}

// The state alone decides, even while the item is not visible.
std::wstring CStatusStreaming::getPath() const
{
    switch (m_streaming) {
    case StreamingOn: return utilsExam::GetImage(L"status/streamingon.png");
    case StreamingToDisk: return utilsExam::GetImage(L"status/streamingdisk.png");
    default: return {};
    }
}

int CStatusStreaming::drawIcon(const CRect& rect, Gdiplus::Graphics& graphics) const
{
    const int width = DrawStatusIcon([this] { return getPath(); }, rect, graphics, m_blinkOff);
    if (width != 0 && m_showIp && m_streaming == StreamingOn) DrawAddress(rect, graphics);
    return width;
}

void CStatusStreaming::DrawAddress(const CRect& rect, Gdiplus::Graphics& graphics) const
{
    const Gdiplus::RectF layout(0, static_cast<Gdiplus::REAL>(rect.top),
                                static_cast<Gdiplus::REAL>(rect.right),
                                static_cast<Gdiplus::REAL>(rect.Height()));
    const StatusText text(addressSize, Gdiplus::FontStyleRegular, Gdiplus::StringAlignmentFar);
    text.Draw(graphics, m_ipAddress, layout, addressColour);
}
