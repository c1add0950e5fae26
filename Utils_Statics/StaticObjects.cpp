// Every object of the library that is constructed when the library is loaded. Clients rely on the
// order, and the language defines it only within one source; between sources the linker would
// decide. So all of these objects stand here. They are built from top to bottom, and destroyed from
// bottom to top when the library is unloaded. Every other static object of the library is
// initialised at compile time or on first use; the test static_constructors_check ensures this.
#include "CUtils_StaticsApp.h"

#include <qor_utils/CriticalSection.h>
#include <Utils_Statics/CStatusFactory.h>
#include <Utils_Statics/DerivedState.h>
#include <Utils_Statics/IStateChangeConsumer.h>
#include <Utils_Statics/MouseCapture.h>
#include <Utils_Statics/PrecisionMouse.h>
#include <Utils_Statics/ShowCursorHelper.h>
#include <Utils_Statics/utilsExam.h>

IStateChangeConsumer::Signal IStateChangeConsumer::m_onStateChangeSignal;

// The text is explicit, because a compiler may build an empty one in advance, out of order.
CString utilsExam::ThumbnailImagePath(L"");

StringEnumHelper utilsExam::m_consoleTypeMap;
const bool utilsExam::m_staticInit = utilsExam::StaticInit();

// Objects of other class families come here.

// The objects of the pointer. The lists are already empty at compile time; only their destruction
// is code.
constinit std::vector<IMouseHandler*> MouseCapture::m_handlers;
std::set<IPrecisionControl*> PrecisionMouse::m_controllers;
CriticalSection ShowCursorHelper::m_criticalSection;

// The derived states. The list is already empty at compile time. Its destruction ends the
// registrations of the remaining states, whose code is unloaded with the library.
constinit std::vector<std::unique_ptr<DerivedState>> DerivedState::m_derivedStates;

// The items of the status row. The application destroys them; unloading the library does not.
constinit std::vector<IStatusItem*> CStatusFactory::m_statusItems;

namespace {
CUtils_StaticsApp s_moduleObject; // last
}
