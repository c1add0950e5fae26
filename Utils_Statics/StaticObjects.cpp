// Every object of the library that is constructed when the library is loaded. Clients rely on the
// order, and the language orders construction only within one source; between sources it would be
// the linker's. So all of them stand here, are built from top to bottom, and are destroyed from
// bottom to top when the library is unloaded. Every other static object of the library is
// initialised at compile time or on first use; the test static_constructors_check sees to it.
#include "CUtils_StaticsApp.h"

#include <Utils_Statics/CStatusFactory.h>
#include <Utils_Statics/DerivedState.h>
#include <Utils_Statics/IStateChangeConsumer.h>
#include <Utils_Statics/MouseCapture.h>
#include <Utils_Statics/PrecisionMouse.h>
#include <Utils_Statics/ShowCursorHelper.h>
#include <Utils_Statics/utilsExam.h>

#include <qor_utils/CriticalSection.h>

IStateChangeConsumer::Signal IStateChangeConsumer::m_onStateChangeSignal;

// An explicit text, because a compiler may build an empty one in advance, outside of the order.
CString utilsExam::ThumbnailImagePath(L"");

StringEnumHelper utilsExam::m_consoleTypeMap;
const bool utilsExam::m_staticInit = utilsExam::StaticInit();

// Objects of other class families come here.

// The pointer's. The lists are empty at compile time already; only their end is code.
constinit std::vector<IMouseHandler*> MouseCapture::m_handlers;
std::set<IPrecisionControl*> PrecisionMouse::m_controllers;
CriticalSection ShowCursorHelper::m_criticalSection;

// The derived states. The list is empty at compile time already. Its end ends the registrations of
// those that are left: their code is unloaded with the library.
constinit std::vector<std::unique_ptr<DerivedState>> DerivedState::m_derivedStates;

// The status row's. Its items are destroyed by the application, not when the library goes.
constinit std::vector<IStatusItem*> CStatusFactory::m_statusItems;

namespace {
CUtils_StaticsApp s_moduleObject; // last
}
