#include "Utils_Statics/CStatusFtpTransfer.h"

#include "status/OneInstance.h"
#include "status/StatusDrawing.h"

#include <Utils_Statics/utilsExam.h>

using namespace utils_statics;

constinit std::atomic<CStatusFtpTransfer*> CStatusFtpTransfer::m_me = nullptr;
constinit std::atomic<bool> CStatusFtpTransfer::m_transferring = false;

CStatusFtpTransfer::CStatusFtpTransfer() = default;

CStatusFtpTransfer::~CStatusFtpTransfer() = default;

CStatusFtpTransfer* CStatusFtpTransfer::getInstance()
{
    return OneInstance(m_me, [] { return new CStatusFtpTransfer; });
}

void CStatusFtpTransfer::setState(bool transferring)
{
    m_transferring = transferring;
    getInstance()->issueUpdate();
}

bool CStatusFtpTransfer::getState() noexcept
{
    return m_transferring;
}

bool CStatusFtpTransfer::isTransferring() noexcept
{
    return m_transferring;
}

void CStatusFtpTransfer::issueUpdate() const
{
    IssueStatusUpdate();
}

void CStatusFtpTransfer::updateVisibleState()
{
    m_enabled = IsWanted(L"FTPTransfer");
}

bool CStatusFtpTransfer::isVisible() const
{
    return m_enabled && isTransferring();
}

std::wstring CStatusFtpTransfer::getPath() const
{
    return isVisible() ? utilsExam::GetImage(L"status/ftpconnectionon.png") : std::wstring();
}

int CStatusFtpTransfer::drawIcon(const CRect& rect, Gdiplus::Graphics& graphics) const
{
    return DrawStatusIcon([this] { return getPath(); }, rect, graphics);
}
