#pragma once

#include <framework/CWinThread.h>

#include <afxmsg_.h>

/// The start of the module that this code is compiled into. Its address is the module's instance
/// handle.
extern "C" IMAGE_DOS_HEADER __ImageBase;

/// The application object. The executable has one, as a static object; a DLL may have one too, its
/// module object, which only marks the module as one with resources. AfxGetApp never returns a
/// DLL's object.
class MFC_API CWinApp : public CWinThread
{
public:
    /// Without a name the application is named like its program file, without the extension. The
    /// constructor is inline, so that it is compiled into the object's module and can tell which
    /// that is.
    explicit CWinApp(LPCTSTR appName = nullptr)
        : CWinApp(appName, reinterpret_cast<HINSTANCE>(&__ImageBase))
    {
    }
    ~CWinApp() override;

    /// The names may be replaced by texts from _wcsdup (release the old one with free); the object
    /// frees them.
    LPCTSTR m_pszAppName = nullptr;
    LPCTSTR m_pszExeName = nullptr;
    LPCTSTR m_pszRegistryKey = nullptr; ///< null when the profile is an INI file
    LPCTSTR m_pszProfileName =
        nullptr; ///< name of the INI file, or the application's key below the registry key
    /// The module that the object was compiled into.
    HINSTANCE m_hInstance = nullptr;
    LPTSTR m_lpCmdLine = nullptr; ///< borrowed
    int m_nCmdShow = SW_SHOWDEFAULT;

    /// Called before InitInstance; FALSE ends the program. TRUE by default.
    virtual BOOL InitApplication();
    /// Without a main window it ends at once, by WM_QUIT.
    int Run() override;

    /// The profile: values of the registry key HKCU\Software\<registry key>\<profile
    /// name>\<section> after SetRegistryKey, else of the INI file, which lies in
    /// the Windows folder when its name has no folder. A section with backslashes is a
    /// key below a key. A missing value, or one of another type, gives the default; reading creates
    /// nothing.
    UINT GetProfileInt(LPCTSTR section, LPCTSTR entry, int defaultValue);
    CString GetProfileString(LPCTSTR section, LPCTSTR entry, LPCTSTR defaultValue = nullptr);
    BOOL WriteProfileInt(LPCTSTR section, LPCTSTR entry, int value);
    /// A null entry deletes the section, a null value deletes the entry. Deleting something that
    /// does not exist succeeds.
    BOOL WriteProfileString(LPCTSTR section, LPCTSTR entry, LPCTSTR value);
    /// Moves the profile into the registry; `registryKey` is usually the company's name. The
    /// profile takes the application's name.
    void SetRegistryKey(LPCTSTR registryKey);

protected:
    /// Makes the object of the module with this handle.
    CWinApp(LPCTSTR appName, HINSTANCE module);
    DECLARE_MESSAGE_MAP()

private:
    friend HINSTANCE AfxFindResourceHandle(LPCTSTR name, LPCTSTR type);

    CString SectionKey(LPCTSTR section) const;

    CWinApp* m_nextModule = nullptr; // the chain of the DLLs' module objects
};

/// The executable's application object, in whichever module this is called; null while there is
/// none.
MFC_API CWinApp* AfxGetApp();

/// The executable's instance handle, the handle of its resources, and its application's name (null
/// without an application).
MFC_API HINSTANCE AfxGetInstanceHandle();
MFC_API HINSTANCE AfxGetResourceHandle();
MFC_API LPCTSTR AfxGetAppName();

/// The module that has the resource: the executable, else a DLL with a module object; the most
/// recently constructed one is tried first. The executable when none has it.
MFC_API HINSTANCE AfxFindResourceHandle(LPCTSTR name, LPCTSTR type);

/// Passes the program's parameters to the application object; FALSE when there is none.
MFC_API BOOL AfxWinInit(HINSTANCE instance, HINSTANCE previous, LPTSTR commandLine, int show);

/// A program's entry function calls this: it initialises the application, runs its message loop and
/// returns its exit code. When InitInstance returns FALSE, the main window is destroyed and
/// ExitInstance is called at once.
MFC_API int AfxWinMain(HINSTANCE instance, HINSTANCE previous, LPTSTR commandLine, int show);
