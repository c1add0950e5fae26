#pragma once

#include <afxwin.h>

// The module object that the framework expects of a library. It has no initialisation of its own,
// and the application object of the program stays the one that AfxGetApp answers.
class CUtils_StaticsApp : public CWinApp
{
public:
    ~CUtils_StaticsApp() override;

    DECLARE_MESSAGE_MAP()
};
