#pragma once

// The hook in the application and the driver outside agree on these.
namespace soak {

// The registered message to the main window that asks for the figures.
constexpr wchar_t probeMessage[] = L"soak.probe";

// The properties of the main window in which they are left.
constexpr wchar_t handlesProperty[] = L"soak.handles"; // but for those of files
constexpr wchar_t filesProperty[] = L"soak.files";
constexpr wchar_t drawingProperty[] = L"soak.drawing";
constexpr wchar_t userProperty[] = L"soak.user";

} // namespace soak
