#pragma once

#include <afxwin.h>

#include <shellapi.h>

#include <string>
#include <vector>

// The platform's own ways to choose files.
namespace exam {

/// Asks for a file that exists; `name` says what files of `pattern` are. Empty when the user
/// cancels.
std::wstring ChooseFile(HWND owner, const CString& name, const wchar_t* pattern);

/// Asks for a folder, at first `folder`; `title` says what for. Empty when the user cancels.
std::wstring ChooseFolder(HWND owner, const CString& title, const std::wstring& folder);

/// The paths of what was dropped, which is released.
std::vector<std::wstring> TakeDropped(HDROP dropped);

} // namespace exam
