// How long the texts are that the format takes.
#pragma once

#include <cstddef>

namespace kvt_str {

/// A character array takes so many characters of a value at most. No array has room for more.
inline constexpr size_t longest_text_value = 199;

/// The format gives a value of a joined text 300 characters, with its comma and NUL.
inline constexpr size_t longest_joined_value = 298;

} // namespace kvt_str
