// The sample exam application. Its application object is a static object, as the framework expects.
#include "app/ExamApp.h"

namespace {

exam::ExamApp s_app;

} // namespace

int main()
{
    return AfxWinMain(GetModuleHandle(nullptr), nullptr, GetCommandLine(), SW_SHOWDEFAULT);
}
