#pragma once

namespace exam {

/// The environment variable with the language of the application. What it starts, also when it
/// crashes, reads it.
inline constexpr wchar_t languageVariable[] = L"EXAM_LANGUAGE";

} // namespace exam
