#pragma once

/// Everything that Utils_Statics.dll offers. These conventions hold unless a declaration says
/// otherwise:
///
/// 1. Ownership. A pointer or handle that is passed in stays the caller's. The library keeps it
///    only where the declaration says so, until it is unregistered, replaced by null, or its
///    registering object is destroyed. An object passed to a registry then belongs to the registry.
///    An object returned by value or as a new handle belongs to the caller.
/// 2. Allocator. The library, the application and the libraries between them share one C++ run-time
///    library and therefore one heap. Strings, containers and objects may be created on one side
///    and destroyed on the other.
/// 3. Strings. Texts are UTF-16 and null-terminated. Paths have backslashes. Narrow texts are ASCII
///    keys. A text that is returned as a pointer lives as long as the library is loaded.
/// 4. Threads. Everything is called on the user-interface thread, except the static setters and
///    getters of the status items, which any thread may call. Locks guard only the state of those
///    items, the count of ShowCursorHelper, and what notices of other threads need: the window that
///    takes them and the product's texts that they show. The logger and the string table, which the
///    library calls, have locks of their own.
/// 5. Null. A null text counts as an empty one. A null interface pointer is ignored. A null output
///    pointer is allowed only where the declaration names it.
/// 6. Failures and exceptions. The result tells of a failure: false, zero, an empty text, an
///    invalid handle. Nothing throws but the following:
///    - std::bad_alloc, for lack of memory, comes from the operations that return texts, containers
///      or the one object of a class. These are GetStr, TranslateStr, the functions of StringParse
///      and QOR_MFC_CONVERSIONS; the members of utilsExam that return a CString or a std::wstring,
///      StlListToMfcList and WrapStr; every getInstance and GetInstance, and the status items'
///      setters, which call it.
///    - _com_error comes from CWmiService::Initialize when the name of the drivers' namespace
///      cannot be allocated, and from CWmiService::getInstance and CStatusFactory::addItem when
///      they connect.
///    - An exception of a handler of the application passes through the operation that called it.

#include <Utils_Statics/ActionInfo.h>
#include <Utils_Statics/ActionRepository.h>
#include <Utils_Statics/BalloonMessageService.h>
#include <Utils_Statics/BitmapFunctions.h>
#include <Utils_Statics/ButtonAction.h>
#include <Utils_Statics/ButtonPlacement.h>
#include <Utils_Statics/CBufferedWnd.h>
#include <Utils_Statics/CCineStore.h>
#include <Utils_Statics/CCineStoreAVI.h>
#include <Utils_Statics/CDopplerScaling.h>
#include <Utils_Statics/CImgGeometry.h>
#include <Utils_Statics/CineHeader.h>
#include <Utils_Statics/CMiniVersion.h>
#include <Utils_Statics/cPointerArray.h>
#include <Utils_Statics/cPreProcessor.h>
#include <Utils_Statics/cSignal.h>
#include <Utils_Statics/cSigSlotBase.h>
#include <Utils_Statics/cSlot.h>
#include <Utils_Statics/CStatusBurning.h>
#include <Utils_Statics/CStatusFactory.h>
#include <Utils_Statics/CStatusFtpTransfer.h>
#include <Utils_Statics/CStatusGps.h>
#include <Utils_Statics/CStatusNetwork.h>
#include <Utils_Statics/CStatusProbeSensor.h>
#include <Utils_Statics/CStatusRecording.h>
#include <Utils_Statics/CStatusStreaming.h>
#include <Utils_Statics/CStatusWireless.h>
#include <Utils_Statics/CToolTipProvider.h>
#include <Utils_Statics/CWmiService.h>
#include <Utils_Statics/DerivedState.h>
#include <Utils_Statics/EConsoleType.h>
#include <Utils_Statics/GetStr.h>
#include <Utils_Statics/GridInfo.h>
#include <Utils_Statics/IMouseHandler.h>
#include <Utils_Statics/IPrecisionControl.h>
#include <Utils_Statics/IPrecisionHandler.h>
#include <Utils_Statics/IProAgent.h>
#include <Utils_Statics/IStateChangeConsumer.h>
#include <Utils_Statics/IStatusItem.h>
#include <Utils_Statics/MatrixRoutines.h>
#include <Utils_Statics/MfcConversions.h>
#include <Utils_Statics/MiniDumper.h>
#include <Utils_Statics/MouseCapture.h>
#include <Utils_Statics/PrecisionMouse.h>
#include <Utils_Statics/QuerySink.h>
#include <Utils_Statics/ShowCursorHelper.h>
#include <Utils_Statics/spectralTraceData.h>
#include <Utils_Statics/StateChangeType.h>
#include <Utils_Statics/StringParse.h>
#include <Utils_Statics/utilsExam.h>
#include <Utils_Statics/ZipCompress.h>
#include <Utils_Statics/ZipExtract.h>
