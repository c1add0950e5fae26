#include "Utils_Statics/CStatusNetwork.h"

#include "status/OneInstance.h"
#include "status/StatusDrawing.h"

#include <Utils_Statics/utilsExam.h>

using namespace utils_statics;

constinit std::atomic<CStatusNetwork*> CStatusNetwork::m_me = nullptr;
constinit std::atomic<bool> CStatusNetwork::m_connected = false;

CStatusNetwork::CStatusNetwork() = default;

CStatusNetwork::~CStatusNetwork() = default;

CStatusNetwork* CStatusNetwork::getInstance()
{
    return OneInstance(m_me, [] { return new CStatusNetwork; });
}

void CStatusNetwork::setState(bool connected)
{
    m_connected = connected;
    getInstance()->issueUpdate();
}

bool CStatusNetwork::getState() noexcept
{
    return m_connected;
}

bool CStatusNetwork::isConnected() noexcept
{
    return m_connected;
}

void CStatusNetwork::issueUpdate() const
{
    IssueStatusUpdate();
}

void CStatusNetwork::updateVisibleState()
{
    m_enabled = IsWanted(L"NetworkConnection");
}

bool CStatusNetwork::isVisible() const
{
    return m_enabled; // a lost connection is shown as well
}

std::wstring CStatusNetwork::getPath() const
{
    if (!isVisible()) return {};
    return utilsExam::GetImage(m_connected ? L"status/connectionon.png" : L"status/connection.png");
}

int CStatusNetwork::drawIcon(const CRect& rect, Gdiplus::Graphics& graphics) const
{
    return DrawStatusIcon([this] { return getPath(); }, rect, graphics);
}
