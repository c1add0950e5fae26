// utilsExam: the places of dialogs and of the imaging area on the console's screen.
#include "Utils_Statics/utilsExam.h"

#include "environment/MainWindow.h"

#include <algorithm>

using utils_statics::MainWindow;

namespace {

constexpr int screenWidth = 1024;
constexpr int screenHeight = 768;
constexpr int tavrenDialogHeight = 600;
constexpr int raisedBy = 50; // leaves room below a centred image

CSize ClientSize(HWND window)
{
    RECT client = {0, 0, screenWidth, screenHeight};
    if (window) GetClientRect(window, &client);
    return CSize(client.right - client.left, client.bottom - client.top);
}

} // namespace

CSize utilsExam::GetMainScreenSize() noexcept
{
    return CSize(screenWidth, screenHeight);
}

CSize utilsExam::GetImagingSize() noexcept
{
    return IsFullscreen() ? CSize(screenWidth, screenHeight) : CSize(800, 600);
}

CRect utilsExam::CalculateDialogRect()
{
    CRect around(0, 0, screenWidth, screenHeight);
    if (const HWND window = MainWindow()) GetWindowRect(window, &around);
    const int left = around.left + (around.Width() - screenWidth) / 2;
    const int top = around.top + (around.Height() - screenHeight) / 2;
    const int height = GetConsoleType() == eConsoleTavren ? tavrenDialogHeight : screenHeight;
    return CRect(left, top, left + screenWidth, top + height);
}

CPoint utilsExam::CalculateSystemOrigin(CSize image)
{
    const CSize client = ClientSize(MainWindow());
    int x = (client.cx - screenWidth) / 2;
    int y = (client.cy - screenHeight) / 2;
    if (image.cx < 0 || image.cy < 0) image = GetImagingSize();
    const int width = std::min<int>(client.cx, screenWidth);
    const int height = std::min<int>(client.cy, screenHeight);
    if (GetConsoleType() == eConsoleTavren && !IsLayoutLeft())
        return CPoint(x + width - image.cx, y);
    if (width > image.cx && height > image.cy) {
        x += (width - image.cx) / 2;
        y += (height - image.cy) / 2 - raisedBy;
    }
    return CPoint(x, y);
}
