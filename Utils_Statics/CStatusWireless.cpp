#include "Utils_Statics/CStatusWireless.h"

#include "status/OneInstance.h"
#include "status/StatusDrawing.h"

#include <Utils_Statics/CWmiService.h>
#include <Utils_Statics/utilsExam.h>

using namespace utils_statics;

namespace {

// The icon of a quality up to 100; a quality below zero is unknown or very bad.
const wchar_t* IconOf(std::int32_t quality)
{
    if (quality < 20) return L"status/wireless1.png";
    if (quality < 40) return L"status/wireless2.png";
    if (quality < 60) return L"status/wireless3.png";
    if (quality < 80) return L"status/wireless4.png";
    return L"status/wireless5.png";
}

} // namespace

constinit std::atomic<CStatusWireless*> CStatusWireless::m_me = nullptr;
constinit std::atomic<bool> CStatusWireless::m_isConnected = false;
constinit std::atomic<bool> CStatusWireless::m_isAvailable = false;

CStatusWireless::CStatusWireless() = default;

CStatusWireless::~CStatusWireless() = default;

CStatusWireless* CStatusWireless::getInstance()
{
    return OneInstance(m_me, [] { return new CStatusWireless; });
}

void CStatusWireless::setConnected(bool connected)
{
    m_isConnected = connected;
    getInstance()->issueUpdate();
}

bool CStatusWireless::isConnected() noexcept
{
    return m_isConnected;
}

void CStatusWireless::setAvailable(bool available)
{
    m_isAvailable = available;
    getInstance()->issueUpdate();
}

bool CStatusWireless::isAvailable() noexcept
{
    return m_isAvailable;
}

void CStatusWireless::update()
{
    getInstance()->issueUpdate();
}

void CStatusWireless::issueUpdate() const
{
    IssueStatusUpdate();
}

void CStatusWireless::updateVisibleState()
{
    m_enabled = IsWanted(L"WirelessStrength");
}

bool CStatusWireless::isVisible() const
{
    return m_enabled && m_isAvailable;
}

std::wstring CStatusWireless::getPath() const
{
    if (!isVisible()) return {};
    const std::int32_t quality = CWmiService::getInstance()->Query(
        0, L"SELECT * FROM MSNdis_80211_ReceivedSignalStrength Where active=true");
    return utilsExam::GetImage(IconOf(isConnected() ? quality : -1));
}

int CStatusWireless::drawIcon(const CRect& rect, Gdiplus::Graphics& graphics) const
{
    return DrawStatusIcon([this] { return getPath(); }, rect, graphics);
}
