#pragma once

#include <optional>
#include <string>

namespace exam {

/// What movies without compression are called where a codec is named.
inline constexpr wchar_t uncompressedMovies[] = L"Uncompressed";

/// The codec of this name, whatever its case, as the library has to be given it: "Uncompressed", or
/// the short name of an installed codec. Nothing when there is none.
std::optional<std::wstring> FindCodec(const std::wstring& name);

} // namespace exam
