// Notices: any thread raises one, and the user-interface thread shows it as a balloon. What is
// logged reaches the application's own hook, too.
#include <qor_utils/LogOutput.h>
#include <Utils_Statics/BalloonMessageService.h>

#include <windows.h>

#include <cstdio>
#include <thread>

namespace {

void Print(const qor_utils::LogMessage& message, void*)
{
    std::printf("level %d: %ls\n", message.level, message.text);
}

} // namespace

int main()
{
    qor_utils::SetLogDirectory(L"log");
    qor_utils::SetLogHook(Print, nullptr);
    BalloonMessageService::Create();

    std::thread recorder([] {
        BalloonMessageService(__FILE__, __LINE__, true, BalloonMessageService::warning)(
            L"Recording", L"%s has room for %d frames.", L"D:", 250);
    });
    recorder.join();

    MSG message; // the balloon is shown by the messages of this thread
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE))
        DispatchMessageW(&message);

    BalloonMessageService::Destroy();
    qor_utils::SetLogHook(nullptr, nullptr);
}
