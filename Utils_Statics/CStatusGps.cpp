#include "Utils_Statics/CStatusGps.h"

#include "status/OneInstance.h"
#include "status/StatusDrawing.h"

#include <Utils_Statics/utilsExam.h>

using namespace utils_statics;

constinit std::atomic<CStatusGps*> CStatusGps::m_me = nullptr;
constinit std::atomic<bool> CStatusGps::m_isTracking = false;

CStatusGps::CStatusGps() = default;

CStatusGps::~CStatusGps() = default;

CStatusGps* CStatusGps::getInstance()
{
    return OneInstance(m_me, [] { return new CStatusGps; });
}

void CStatusGps::setState(bool tracking)
{
    m_isTracking = tracking;
    getInstance()->issueUpdate();
}

void CStatusGps::issueUpdate() const
{
    IssueStatusUpdate();
}

void CStatusGps::updateVisibleState() {}

bool CStatusGps::isVisible() const
{
    return m_isTracking;
}

std::wstring CStatusGps::getPath() const
{
    return m_isTracking ? utilsExam::GetImage(L"status/pacemaker.png") : std::wstring();
}

int CStatusGps::drawIcon(const CRect& rect, Gdiplus::Graphics& graphics) const
{
    return DrawStatusIcon([this] { return getPath(); }, rect, graphics);
}
