// Finds what was meant by a word that is none.
#pragma once

#include <optional>
#include <span>
#include <string_view>

namespace kvt_tool {

/// The fewest characters to insert, remove or replace to make one word of the other.
size_t edit_distance(std::string_view a, std::string_view b);

/// The word at the least distance, the first of several; none when more than half of the
/// characters of `word` would have to change.
std::optional<std::string_view> nearest(std::string_view word,
                                        std::span<const std::string_view> words);

} // namespace kvt_tool
