#pragma once

#include "protocol/Findings.h"

#include <zel_xml/zelXMLNode.h>

#include <set>
#include <string>

namespace exam {

/// One check for each protocol file. Each adds a finding for everything below the document element
/// that will be ignored when the file is read.

/// Checks "ButtonActions.xml". `names` gets the names of the buttons that are kept.
void CheckButtonActions(const zelXMLNode& root, std::set<std::wstring>& names, Findings& findings);

/// Checks "button_states.xml".
void CheckButtonStates(const zelXMLNode& root, Findings& findings);

/// Checks "panel.xml". `buttons`: the names of the existing buttons; empty when they are not known.
void CheckPanel(const zelXMLNode& root, const std::set<std::wstring>& buttons, Findings& findings);

} // namespace exam
