#pragma once

#include <framework/CComboBox.h>
#include <framework/CDC.h>
#include <framework/CGdiObject.h>
#include <framework/CWinApp.h>
#include <framework/CWinThread.h>
#include <framework/CWnd.h>

#include <afx.h>
#include <afxcoll.h>
#include <atlstr.h>
#include <atltime.h>
#include <atltypes.h>

#include <windows.h>
