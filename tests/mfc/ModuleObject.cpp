// A DLL with a module object of its own, whose message map adds nothing.
#include <afxwin.h>

namespace {

class ModuleApplication : public CWinApp
{
public:
    ~ModuleApplication() override;
    DECLARE_MESSAGE_MAP()
};

ModuleApplication::~ModuleApplication() = default;

BEGIN_MESSAGE_MAP(ModuleApplication, CWinApp)
END_MESSAGE_MAP()

CWinApp* const applicationBefore = AfxGetApp();
ModuleApplication s_theModule;
CWinApp* const applicationAfter = AfxGetApp();

} // namespace

extern "C" {

__declspec(dllexport) CWinApp* ModuleObject()
{
    return &s_theModule;
}

__declspec(dllexport) CWinApp* ApplicationNow()
{
    return AfxGetApp();
}

__declspec(dllexport) CWinApp* ApplicationBeforeModuleObject()
{
    return applicationBefore;
}

__declspec(dllexport) CWinApp* ApplicationAfterModuleObject()
{
    return applicationAfter;
}
}
