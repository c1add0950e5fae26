#pragma once

#include <framework/export.h>

#include <windows.h>

class CDC;
class CWnd;

namespace framework {

/// CWnd::FromHandle and CDC::FromHandle for the message-map templates, which are compiled before
/// those classes.
MFC_API CWnd* WindowFromHandle(HWND window);
MFC_API CDC* DeviceContextFromHandle(HDC context);

} // namespace framework
