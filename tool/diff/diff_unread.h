// What differs between the lines of two messages that the reader does not take as they stand.
#pragma once

#include <cstdint>
#include <vector>

#include "diff/diff_records.h"
#include "io/unread_lines.h"

namespace kvt_tool {

/// A line that differs, such as `line 6, not read: future_key: 7 -> 8`.
struct UnreadDifference {
    Difference::What what; ///< `order` has no lines: all of them stand on both sides
    const UnreadLine *a;   ///< null where only B has it
    const UnreadLine *b;   ///< null where only A has it
};

/// The differences between lines, which they point to. A line is compared with the next one of the
/// other side that stands in the same block and has the same key.
std::vector<UnreadDifference> diff_unread(const std::vector<UnreadLine> &a,
                                          const std::vector<UnreadLine> &b);

/// True when the lines are the same, and stand in the same blocks.
bool same_unread(const std::vector<UnreadLine> &a, const std::vector<UnreadLine> &b);

/// A hash of what same_unread compares; 0 where there are no lines.
uint64_t unread_hash(const std::vector<UnreadLine> &lines);

/// The key of a line with a colon, and what follows it. Of another line all is the key.
struct KeyAndValue {
    std::string key;
    std::string value;
};

KeyAndValue key_and_value(const UnreadLine &line);

} // namespace kvt_tool
