#pragma once

#include "protocol/Findings.h"

#include <string>
#include <vector>

namespace exam {

/// The files that were checked, and the findings.
struct ProtocolCheck
{
    std::wstring problem; ///< one sentence that says why nothing could be checked; empty otherwise
    std::vector<std::wstring> files; ///< the files that were checked
    std::vector<Finding> findings;
};

/// Checks the protocol files "ButtonActions.xml", "button_states.xml" and "panel.xml" in a folder
/// and in those below it, with the vocabulary in force.
ProtocolCheck FindIgnored(const std::wstring& folder);

/// Prints the findings. False when anything will be ignored, or there is nothing to check.
bool CheckProtocol(const std::wstring& folder);

} // namespace exam
