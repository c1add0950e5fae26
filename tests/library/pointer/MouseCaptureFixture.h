#pragma once

#include <gtest/gtest.h>
#include <Utils_Statics/MouseCapture.h>
#include <Utils_Statics/utilsExam.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

using Log = std::vector<std::string>;

// A tool that records its calls, and does what the test asks from inside its operations.
class Tool : public IMouseHandler
{
public:
    Tool(Log& log, std::string name, int order = 0)
        : m_log(log), m_name(std::move(name)), m_order(order)
    {
    }
    ~Tool() override = default;

    std::vector<POINT> points;
    LockType type = LockNormal;
    bool background = false;
    CRect area;
    bool consumes = true;
    std::function<void()> onInput, onRelease, onPoints, onLock, onBackground, onType, onOrder,
        onArea;
    int pointQueries = 0;

    void SetOrder(int order) { m_order = order; }

    bool OnMouseInput(unsigned int message, unsigned int flags, int x, int y) override
    {
        const bool answer = consumes;
        m_log.push_back(m_name + " input " + std::to_string(message) + " " + std::to_string(flags) +
                        " " + std::to_string(x) + "," + std::to_string(y));
        Run(onInput);
        return answer;
    }
    void OnReleaseMouse() override
    {
        m_log.push_back(m_name + " release");
        Run(onRelease);
    }
    void GetAutoPoints(std::vector<POINT>& to) override
    {
        ++pointQueries;
        to.insert(to.end(), points.begin(), points.end());
        Run(onPoints);
    }
    void SetLock(int index) override
    {
        m_log.push_back(m_name + " lock " + std::to_string(index));
        Run(onLock);
    }
    bool HasBackgroundPoint() const override
    {
        const bool answer = background;
        Run(onBackground);
        return answer;
    }
    LockType GetLockType() const override
    {
        const LockType answer = type;
        Run(onType);
        return answer;
    }
    int GetLockOrder() const override
    {
        const int answer = m_order;
        Run(onOrder);
        return answer;
    }
    void GetBackgroundRect(CRect& rect) override
    {
        m_log.push_back(m_name + " area");
        rect = area;
        Run(onArea);
    }

private:
    // Runs a copy, because the hook may destroy the tool.
    static void Run(const std::function<void()>& hook)
    {
        if (const std::function<void()> copy = hook) copy();
    }

    Log& m_log;
    std::string m_name;
    int m_order;
};

// Starts and ends with nothing locked, in trackball style on an image of 1000 x 800.
class MouseCaptureTest : public testing::Test
{
protected:
    void SetUp() override
    {
        ResetFlags();
        MouseCapture::Initialize(CRect(0, 0, 1000, 800), InputTrackball);
    }
    void TearDown() override
    {
        MouseCapture::Unlock();
        ResetFlags();
        ::ClipCursor(nullptr);
    }

    static void ResetFlags()
    {
        utilsExam::ResearchMode = false;
        utilsExam::CursorClippingDisabled = false;
        MouseCapture::SetFreeze(false);
        MouseCapture::SetImaging(true);
    }

    static void UsePointer() { MouseCapture::Initialize(CRect(0, 0, 1000, 800), InputPointer); }

    static bool Press(int x, int y)
    {
        return MouseCapture::HandleMouse(WM_LBUTTONDOWN, MK_LBUTTON, POINT{x, y});
    }
    static bool Let(int x, int y)
    {
        return MouseCapture::HandleMouse(WM_LBUTTONUP, 0, POINT{x, y});
    }
    static bool Move(int x, int y, unsigned int flags = 0)
    {
        return MouseCapture::HandleMouse(WM_MOUSEMOVE, flags, POINT{x, y});
    }

    Log TakeLog() { return std::exchange(log, {}); }

    Log log;
};
