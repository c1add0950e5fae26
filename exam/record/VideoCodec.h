#pragma once

#include <optional>
#include <string>

namespace exam {

/// The name that stands for movies without compression where a codec is named.
inline constexpr wchar_t uncompressedMovies[] = L"Uncompressed";

/// The name of an installed codec in the form that the library needs: "Uncompressed", or the
/// codec's own short name. The case of `name` does not matter. Nothing when there is no such codec.
std::optional<std::wstring> FindCodec(const std::wstring& name);

} // namespace exam
