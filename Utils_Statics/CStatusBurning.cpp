#include "Utils_Statics/CStatusBurning.h"

#include "status/OneInstance.h"
#include "status/StatusDrawing.h"

#include <Utils_Statics/utilsExam.h>

using namespace utils_statics;

constinit std::atomic<CStatusBurning*> CStatusBurning::m_me = nullptr;
constinit std::atomic<bool> CStatusBurning::m_burning = false;

CStatusBurning::CStatusBurning() = default;

CStatusBurning::~CStatusBurning() = default;

CStatusBurning* CStatusBurning::getInstance()
{
    return OneInstance(m_me, [] { return new CStatusBurning; });
}

void CStatusBurning::setState(bool burning)
{
    m_burning = burning;
    getInstance()->issueUpdate();
}

bool CStatusBurning::getState() noexcept
{
    return m_burning;
}

bool CStatusBurning::isBurning() noexcept
{
    return m_burning;
}

void CStatusBurning::issueUpdate() const
{
    IssueStatusUpdate();
}

void CStatusBurning::updateVisibleState()
{
    m_enabled = IsWanted(L"CDBurning");
}

bool CStatusBurning::isVisible() const
{
    return m_enabled && isBurning();
}

std::wstring CStatusBurning::getPath() const
{
    return isVisible() ? utilsExam::GetImage(L"status/burn.png") : std::wstring();
}

int CStatusBurning::drawIcon(const CRect& rect, Gdiplus::Graphics& graphics) const
{
    return DrawStatusIcon([this] { return getPath(); }, rect, graphics);
}
