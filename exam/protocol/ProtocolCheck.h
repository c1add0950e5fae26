#pragma once

#include "protocol/Findings.h"

#include <string>
#include <vector>

namespace exam {

/// What was looked at, and what was found.
struct ProtocolCheck
{
    std::wstring problem;            ///< one sentence: why nothing could be checked; or empty
    std::vector<std::wstring> files; ///< those that were checked
    std::vector<Finding> findings;
};

/// Looks at the protocol files "ButtonActions.xml", "button_states.xml" and "panel.xml" in a folder
/// and in those below it, with the vocabulary in force.
ProtocolCheck FindIgnored(const std::wstring& folder);

/// Prints what was found. False when there is anything that will be ignored, or nothing to check.
bool CheckProtocol(const std::wstring& folder);

} // namespace exam
