#pragma once

#include <cstdint>

/// The kind of a state change. The application completes this enumeration in a header of its own
/// with the same underlying type. The library passes the values on without reading them.
enum StateChangeType : std::int32_t;
