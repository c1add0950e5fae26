// Arbitration of the pointer: tools register, and the library decides which of them owns the mouse.
// Here the user drags the end of one of two calipers.
#include <Utils_Statics/IMouseHandler.h>
#include <Utils_Statics/MouseCapture.h>

#include <cstdio>

namespace {

class Caliper : public IMouseHandler
{
public:
    Caliper(const char* name, POINT from, POINT to) : m_name(name), m_points{from, to}
    {
        MouseCapture::Register(this);
    }

    bool OnMouseInput(unsigned int, unsigned int, int x, int y) override
    {
        m_points[m_held] = {x, y};
        std::printf("%s: point %d is at (%d, %d)\n", m_name, m_held, x, y);
        return true;
    }
    void GetAutoPoints(std::vector<POINT>& points) override
    {
        points.assign(m_points, m_points + 2);
    }
    void SetLock(int index) override { m_held = index; }
    void OnReleaseMouse() override { std::printf("%s is let go\n", m_name); }
    void GetBackgroundRect(CRect& rect) override { rect.SetRectEmpty(); }

private:
    const char* m_name;
    POINT m_points[2];
    int m_held = 0;
};

} // namespace

int main()
{
    MouseCapture::Initialize(CRect(0, 0, 800, 600), InputPointer);
    Caliper first("first", {100, 100}, {200, 100});
    Caliper second("second", {400, 300}, {500, 350});

    MouseCapture::HandleMouse(WM_LBUTTONDOWN, MK_LBUTTON, {498, 352}); // grabs the nearest point
    MouseCapture::HandleMouse(WM_MOUSEMOVE, MK_LBUTTON, {520, 360});
    MouseCapture::HandleMouse(WM_LBUTTONUP, 0, {520, 360});
    std::printf("the pointer is %s\n", MouseCapture::IsLocked() ? "held" : "free");
}
