// How long the texts are that the format takes.
#pragma once

#include <cstddef>

namespace kvt_str {

/// No longer values are taken into a character array; every array is shorter.
inline constexpr size_t longest_text_value = 199;

/// What a value of a joined text shares with its comma and NUL in the 300 characters that the
/// format gives it.
inline constexpr size_t longest_joined_value = 298;

} // namespace kvt_str
