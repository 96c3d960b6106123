// What the check of a text promises of the text when it finds nothing (kvt/kvt_check.h).
#pragma once

#include <cstddef>
#include <string>

namespace kvt_test {

/// The findings in a text. The check is given a block of exactly its size, without a NUL, where a
/// sanitizer sees every character too far.
size_t count_findings(const std::string &text);

/// What does not hold of a text without findings; empty when all does:
///
/// - all of its messages are read, each for itself and as a sequence, and none is left out;
/// - a record whose counts are left as they were read is the one whose counts were made to agree:
///   it is written alike, and released whole by its counts;
/// - every line of the text is a line of what is written, but for the spelling of numbers, lines
///   that say 0, and the value that ends a byte array;
/// - what is written has no findings.
std::string broken_promise(const std::string &text);

} // namespace kvt_test
