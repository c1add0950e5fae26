// Every object of the library that is constructed when the library is loaded. Clients rely on the order, and the
// language orders construction only within one source; between sources it would be the linker's. So all of them stand
// here, are built from top to bottom, and are destroyed from bottom to top when the library is unloaded. Every other
// static object of the library is initialised at compile time or on first use; the test static_constructors_check sees
// to it.
#include "CUtils_StaticsApp.h"

#include <Utils_Statics/IStateChangeConsumer.h>
#include <Utils_Statics/utilsExam.h>

IStateChangeConsumer::Signal IStateChangeConsumer::m_onStateChangeSignal;

// An explicit text, because a compiler may build an empty one in advance, outside of the order.
CString utilsExam::ThumbnailImagePath(L"");

StringEnumHelper utilsExam::m_consoleTypeMap;
const bool utilsExam::m_staticInit = utilsExam::StaticInit();

// Objects of other class families come here.

namespace {
CUtils_StaticsApp moduleObject; // last
}
