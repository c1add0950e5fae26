// The status row: the application registers the icons that it wants and lets them draw themselves
// from the right. It asks for a repaint whenever one of them changes.
#include <Utils_Statics/BitmapFunctions.h>
#include <Utils_Statics/CStatusFactory.h>
#include <Utils_Statics/CStatusRecording.h>
#include <Utils_Statics/CStatusStreaming.h>

#include <afxwin.h>

#include <cstdio>

namespace {

void RepaintSoon() // an application posts a message here
{
    std::printf("a repaint is asked for\n");
}

} // namespace

int main()
{
    CWinApp application; // whose profile says which icons the user wants
    application.WriteProfileInt(L"Settings\\Status", L"CineRecording", 1);
    CoInitializeEx(nullptr, COINIT_MULTITHREADED); // for the network monitoring
    ULONG_PTR session = 0;
    const Gdiplus::GdiplusStartupInput input;
    Gdiplus::GdiplusStartup(&session, &input, nullptr);

    CStatusFactory::addItem(CStatusRecording::getInstance());
    IStatusItem::SetStatusCallback(RepaintSoon);
    for (IStatusItem* const item : CStatusFactory::getItems())
        item->updateVisibleState();
    CStatusRecording::setState(true);
    for (const IStatusItem* const item : CStatusFactory::getItems())
        std::printf("the icon is %s\n", item->isVisible() ? "shown" : "hidden");

    IStatusItem::SetStatusCallback(nullptr);
    CStatusFactory::destroyInstance();
    Gdiplus::GdiplusShutdown(session);
    CoUninitialize();
}
