#include "Input.h"

#include <utility>
#include <vector>

namespace soak {

namespace {

INPUT Key(UINT key, DWORD flags)
{
    INPUT input{};
    input.type = INPUT_KEYBOARD;
    input.ki.wVk = static_cast<WORD>(key);
    input.ki.wScan = static_cast<WORD>(MapVirtualKeyW(key, MAPVK_VK_TO_VSC));
    input.ki.dwFlags = flags;
    return input;
}

INPUT Letter(wchar_t letter, DWORD flags)
{
    INPUT input{};
    input.type = INPUT_KEYBOARD;
    input.ki.wScan = letter;
    input.ki.dwFlags = KEYEVENTF_UNICODE | flags;
    return input;
}

void Send(std::vector<INPUT> inputs)
{
    SendInput(static_cast<UINT>(inputs.size()), inputs.data(), sizeof(INPUT));
}

void SendMouse(DWORD flags, DWORD data = 0)
{
    INPUT input{};
    input.type = INPUT_MOUSE;
    input.mi.dwFlags = flags;
    input.mi.mouseData = data;
    Send({input});
}

struct Flags
{
    DWORD down;
    DWORD up;
};

Flags FlagsOf(Button button)
{
    switch (button) {
    case Button::right: return {MOUSEEVENTF_RIGHTDOWN, MOUSEEVENTF_RIGHTUP};
    case Button::middle: return {MOUSEEVENTF_MIDDLEDOWN, MOUSEEVENTF_MIDDLEUP};
    default: return {MOUSEEVENTF_LEFTDOWN, MOUSEEVENTF_LEFTUP};
    }
}

} // namespace

void PressKeys(std::initializer_list<UINT> keys)
{
    std::vector<INPUT> inputs;
    for (const UINT key : keys)
        inputs.push_back(Key(key, 0));
    for (auto key = std::rbegin(keys); key != std::rend(keys); ++key)
        inputs.push_back(Key(*key, KEYEVENTF_KEYUP));
    Send(std::move(inputs));
}

void TypeText(const std::wstring& text)
{
    for (const wchar_t letter : text)
        Send({Letter(letter, 0), Letter(letter, KEYEVENTF_KEYUP)});
}

void MoveTo(POINT place)
{
    SetCursorPos(place.x, place.y);
    SendMouse(MOUSEEVENTF_MOVE);
}

void PressButton(Button button)
{
    SendMouse(FlagsOf(button).down);
}

void ReleaseButton(Button button)
{
    SendMouse(FlagsOf(button).up);
}

void TurnWheel(int notches)
{
    SendMouse(MOUSEEVENTF_WHEEL, static_cast<DWORD>(notches * WHEEL_DELTA));
}

} // namespace soak
