#include <base/FilePath.h>
#include <base/SlimLock.h>

#include <afxwin.h>

#include <atomic>
#include <cstdlib>
#include <cwchar>
#include <mutex>

namespace {

// Constant-initialised, so that application objects may be constructed before and after this DLL's
// other objects.
constinit std::atomic<CWinApp*> s_theApplication = nullptr;
constinit base::SlimLock s_modulesMutex;
constinit CWinApp* s_modules = nullptr;

bool IsExecutable(HINSTANCE module)
{
    return module == GetModuleHandleW(nullptr);
}

LPTSTR Duplicate(LPCWSTR text)
{
    return text ? _wcsdup(text) : nullptr;
}

void Release(LPCTSTR text)
{
    std::free(const_cast<LPTSTR>(text));
}

// The file name of the module without its folder and its extension.
CString BaseName(HINSTANCE module)
{
    CString name(base::ModuleFile(module).c_str());
    name = name.Mid(name.ReverseFind(L'\\') + 1);
    const int dot = name.ReverseFind(L'.');
    return dot < 0 ? name : name.Left(dot);
}

} // namespace

BEGIN_MESSAGE_MAP(CWinApp, CCmdTarget)
END_MESSAGE_MAP()

CWinApp::CWinApp(LPCTSTR appName, HINSTANCE module) : m_hInstance(module)
{
    const CString exeName = BaseName(module);
    m_pszExeName = Duplicate(exeName);
    m_pszAppName = Duplicate(appName ? appName : exeName.GetString());
    m_pszProfileName = Duplicate(exeName + L".INI");
    m_bAutoDelete = FALSE;
    m_nThreadID = GetCurrentThreadId();
    if (IsExecutable(module)) {
        CWinApp* none = nullptr;
        s_theApplication.compare_exchange_strong(none,
                                                 this); // only the first application object counts
        return;
    }
    const std::lock_guard lock(s_modulesMutex);
    m_nextModule = s_modules;
    s_modules = this;
}

CWinApp::~CWinApp()
{
    CWinApp* self = this;
    s_theApplication.compare_exchange_strong(self, nullptr);
    {
        const std::lock_guard lock(s_modulesMutex);
        for (CWinApp** link = &s_modules; *link; link = &(*link)->m_nextModule) {
            if (*link != this) continue;
            *link = m_nextModule;
            break;
        }
    }
    Release(m_pszAppName);
    Release(m_pszExeName);
    Release(m_pszRegistryKey);
    Release(m_pszProfileName);
}

BOOL CWinApp::InitApplication()
{
    return TRUE;
}

int CWinApp::Run()
{
    if (!m_pMainWnd) PostQuitMessage(0);
    return CWinThread::Run();
}

CWinApp* AfxGetApp()
{
    return s_theApplication;
}

HINSTANCE AfxGetInstanceHandle()
{
    return GetModuleHandleW(nullptr);
}

HINSTANCE AfxGetResourceHandle()
{
    return GetModuleHandleW(nullptr);
}

LPCTSTR AfxGetAppName()
{
    const CWinApp* const application = AfxGetApp();
    return application ? application->m_pszAppName : nullptr;
}

HINSTANCE AfxFindResourceHandle(LPCTSTR name, LPCTSTR type)
{
    const HINSTANCE executable = AfxGetResourceHandle();
    if (FindResourceW(executable, name, type)) return executable;
    const std::lock_guard lock(s_modulesMutex);
    for (const CWinApp* module = s_modules; module; module = module->m_nextModule)
        if (FindResourceW(module->m_hInstance, name, type)) return module->m_hInstance;
    return executable;
}

BOOL AfxWinInit(HINSTANCE instance, HINSTANCE, LPTSTR commandLine, int show)
{
    CWinApp* const application = AfxGetApp();
    if (!application) return FALSE;
    application->m_hInstance = instance;
    application->m_lpCmdLine = commandLine;
    application->m_nCmdShow = show;
    return TRUE;
}

int AfxWinMain(HINSTANCE instance, HINSTANCE previous, LPTSTR commandLine, int show)
{
    if (!AfxWinInit(instance, previous, commandLine, show)) return -1;
    CWinApp& application = *AfxGetApp();
    if (!application.InitApplication()) return -1;
    if (application.InitInstance()) return application.Run();
    if (application.m_pMainWnd) application.m_pMainWnd->DestroyWindow();
    return application.ExitInstance();
}
