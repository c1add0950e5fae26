// utilsExam: the application's mode flags and console model, start-up, and the capture ("print")
// buttons' settings. Objects that need construction at run time are in StaticObjects.cpp.
#include "environment/Application.h"

#include <Utils_Statics/IStateChangeConsumer.h>
#include <Utils_Statics/utilsExam.h>

#include <new>

namespace {

using ModeCallback = bool (*)();
constinit ModeCallback s_isResearchModeActive = nullptr;

// The value of HeapCompatibilityInformation that stands for the low-fragmentation heap.
constexpr ULONG lowFragmentationHeap = 2;

constexpr wchar_t captureSection[] = L"Settings\\Capture";

// The flags and actions are the application's own; the library only knows the defaults.
constexpr int defaultAction = 18;

int DefaultFlags(unsigned int n)
{
    switch (n) {
    case 0: return 1;
    case 1: return 13;
    case 2: return 64;
    default: return 3;
    }
}

} // namespace

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

unsigned int utilsExam::GetPrintButtonFlags(unsigned int n)
try {
    CString entry;
    entry.Format(L"PrintButton%d", n);
    return utils_statics::ProfileNumber(captureSection, entry, DefaultFlags(n));
} catch (const std::bad_alloc&) {
    return static_cast<unsigned int>(DefaultFlags(n));
}

unsigned int utilsExam::GetPrintButtonAction(unsigned int n)
try {
    CString entry;
    entry.Format(L"PrintButton%d_Action", n);
    return utils_statics::ProfileNumber(captureSection, entry, defaultAction);
} catch (const std::bad_alloc&) {
    return defaultAction;
}
