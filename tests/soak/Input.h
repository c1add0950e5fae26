#pragma once

#include <windows.h>

#include <initializer_list>
#include <string>

// The system's own input, as keyboard and mouse give it.
namespace soak {

enum class Button
{
    left,
    right,
    middle
};

/// Presses keys in this order, and releases them in the reverse one.
void PressKeys(std::initializer_list<UINT> keys);

void TypeText(const std::wstring& text);

/// Moves the pointer to a place on the screen.
void MoveTo(POINT place);

/// Each is done where the pointer is.
void PressButton(Button button);
void ReleaseButton(Button button);
void TurnWheel(int notches);

} // namespace soak
