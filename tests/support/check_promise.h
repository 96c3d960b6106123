// What the check of a text promises of the text when it finds nothing that is lost
// (kvt/kvt_check.h).
#pragma once

#include <cstddef>
#include <string>

namespace kvt_test {

/// The findings in a text. The check is given a block of exactly its size, without a NUL, where a
/// sanitizer sees every character too far.
size_t count_findings(const std::string &text);

/// The same for those that are worse than style.
size_t count_losses(const std::string &text);

/// What does not hold of a text that loses nothing; empty when all does:
///
/// - all of its messages are read, each for itself and as a sequence, and none is left out;
/// - a record whose counts are left as they were read is the one whose counts were made to agree:
///   it is written alike, and released whole by its counts;
/// - every line of the text is a line of what is written, but for the spelling of numbers, lines
///   that say 0 or hold an empty text, the value that ends a byte array, a value that is said
///   again, and braces that nobody needs;
/// - what is written loses nothing, and has no findings where the text has none.
std::string broken_promise(const std::string &text);

} // namespace kvt_test
