#include "Utils_Statics/CStatusRecording.h"

#include "status/OneInstance.h"
#include "status/StatusDrawing.h"

#include <Utils_Statics/utilsExam.h>

using namespace utils_statics;

constinit std::atomic<CStatusRecording*> CStatusRecording::m_me = nullptr;
constinit std::atomic<bool> CStatusRecording::m_recording = false;

CStatusRecording::CStatusRecording() = default;

CStatusRecording::~CStatusRecording() = default;

CStatusRecording* CStatusRecording::getInstance()
{
    return OneInstance(m_me, [] { return new CStatusRecording; });
}

void CStatusRecording::setState(bool recording)
{
    m_recording = recording;
    getInstance()->issueUpdate();
}

bool CStatusRecording::getState() noexcept
{
    return m_recording;
}

bool CStatusRecording::isRecording() noexcept
{
    return m_recording;
}

void CStatusRecording::issueUpdate() const
{
    IssueStatusUpdate();
}

void CStatusRecording::updateVisibleState()
{
    m_enabled = IsWanted(L"CineRecording");
}

bool CStatusRecording::isVisible() const
{
    return m_enabled && isRecording();
}

std::wstring CStatusRecording::getPath() const
{
    return isVisible() ? utilsExam::GetImage(L"status/cineiRecord.png") : std::wstring();
}

int CStatusRecording::drawIcon(const CRect& rect, Gdiplus::Graphics& graphics) const
{
    return DrawStatusIcon([this] { return getPath(); }, rect, graphics);
}
