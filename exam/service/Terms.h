#pragma once

#include <string>
#include <vector>

namespace exam {

/// The terms for annotations that the protocol in force offers (docs/formats/annotations.md), in
/// the base language. Empty when there are none or the file cannot be read.
std::vector<std::wstring> AnnotationTerms();

} // namespace exam
