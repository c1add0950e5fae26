#pragma once

#include <string>

namespace exam {

/// The name of the protocol file that holds the panel's layout.
inline constexpr const wchar_t* panelFileName = L"panel.xml";

/// The path of the copy that is in force: the user's, the factory's or the base copy.
std::wstring PanelFileInForce();

/// The path that the user's copy is saved to.
std::wstring PanelSaveFile();

} // namespace exam
