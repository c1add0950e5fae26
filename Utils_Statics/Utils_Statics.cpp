// utilsExam: the application's mode flags and console model, start-up, and the environment's log
// lines. Objects that need construction at run time are in StaticObjects.cpp.
#include "environment/EnvironmentLog.h"

#include <Utils_Statics/IStateChangeConsumer.h>
#include <Utils_Statics/utilsExam.h>

namespace {

using ModeCallback = bool (*)();
constinit ModeCallback s_isResearchModeActive = nullptr;

// The value of HeapCompatibilityInformation that stands for the low-fragmentation heap.
constexpr ULONG lowFragmentationHeap = 2;

} // namespace

namespace utils_statics {

zelLogger::zelLogHelper EnvironmentLog(EnvironmentMessage message, int level)
{
    return zelLogger::zelLogHelper(environmentSource, message, level);
}

} // namespace utils_statics

constinit EConsoleType utilsExam::m_consoleType = eConsoleUnknown;
constinit CTime utilsExam::PharmaStart;
constinit bool utilsExam::DevMode = false;
constinit bool utilsExam::ServiceMode = false;
constinit bool utilsExam::AppExiting = false;
constinit bool utilsExam::AppInitDone = false;
constinit bool utilsExam::CursorClippingDisabled = false;
constinit bool utilsExam::Pharma = false;
constinit bool utilsExam::FusionMode = false;
constinit bool utilsExam::ResearchMode = false;
constinit bool utilsExam::m_bFullscreen = false;
constinit bool utilsExam::m_bLayoutLeft = false;
constinit HWND utilsExam::m_hwndTutorial = nullptr;

EConsoleType utilsExam::GetConsoleType() noexcept
{
    return m_consoleType;
}

void utilsExam::SetConsoleType(EConsoleType type) noexcept
{
    m_consoleType = type;
}

EConsoleType utilsExam::MapConsoleType(const wchar_t* name)
{
    return static_cast<EConsoleType>(m_consoleTypeMap.GetValue(name));
}

const wchar_t* utilsExam::MapConsoleName(EConsoleType type)
{
    return m_consoleTypeMap.GetName(type);
}

bool utilsExam::StaticInit()
{
    m_consoleTypeMap.Add(L"Pemmit", eConsolePemmit);
    m_consoleTypeMap.Add(L"Olkesh", eConsoleOlkesh);
    m_consoleTypeMap.Add(L"Vollet", eConsoleVollet);
    m_consoleTypeMap.Add(L"Saquin", eConsoleSaquin);
    m_consoleTypeMap.Add(L"Tavren", eConsoleTavren);
    m_consoleTypeMap.Add(L"Unknown", eConsoleUnknown);
    return true;
}

void utilsExam::SetIsResearchModeActiveCallback(bool (*callback)()) noexcept
{
    s_isResearchModeActive = callback;
}

bool utilsExam::IsResearchModeActive()
{
    return s_isResearchModeActive && s_isResearchModeActive();
}

bool utilsExam::isTarrowBuild() noexcept
{
    return false;
}

bool utilsExam::isPellanBuild() noexcept
{
    return false;
}

bool utilsExam::isOEMBuild() noexcept
{
    return isTarrowBuild() || isPellanBuild();
}

bool utilsExam::IsFullscreen() noexcept
{
    return m_bFullscreen;
}

void utilsExam::SetFullscreen(bool fullscreen) noexcept
{
    m_bFullscreen = fullscreen;
}

bool utilsExam::IsLayoutLeft() noexcept
{
    return m_bLayoutLeft;
}

void utilsExam::SetLayoutLeft(bool left) noexcept
{
    m_bLayoutLeft = left;
}

void utilsExam::EnableLowFragmentationHeap() noexcept
{
    ULONG compatibility = lowFragmentationHeap;
    HeapSetInformation(GetProcessHeap(), HeapCompatibilityInformation, &compatibility,
                       sizeof compatibility);
}

void utilsExam::StateChangeSignal(StateChangeType type, unsigned int param1, long param2)
{
    IStateChangeConsumer::StateChangeSignal(type, param1, param2);
}
