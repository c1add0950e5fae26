#include "CUtils_StaticsApp.h"

BEGIN_MESSAGE_MAP(CUtils_StaticsApp, CWinApp)
END_MESSAGE_MAP()

CUtils_StaticsApp::~CUtils_StaticsApp() = default;
