// What differs between two sequences of messages.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

#include "diff/diff_records.h"
#include "diff/diff_unread.h"
#include "diff/message_source.h"

namespace kvt_tool {

/// Two messages that are one and differ, or a message that only one side has.
struct MessageDifference {
    const Message *a;                          ///< null for a message that only B has
    const Message *b;                          ///< null for a message that only A has
    std::vector<Difference> differences;       ///< of a pair
    std::vector<UnreadDifference> unread = {}; ///< of its lines that are not read

    /// Never 0 for a pair.
    size_t count() const { return differences.size() + unread.size(); }
};

/// How far the comparison reads ahead on either side to find out where the sides agree again.
struct LookAhead {
    size_t messages = 1000;
    size_t text = size_t{64} << 20; ///< in characters; one message may always be longer
};

/// How many messages there were.
struct DiffSummary {
    uint64_t equal = 0;       ///< pairs
    uint64_t differing = 0;   ///< pairs
    uint64_t differences = 0; ///< in these
    uint64_t only_in_a = 0;
    uint64_t only_in_b = 0;

    bool all_equal() const { return differing == 0 && only_in_a == 0 && only_in_b == 0; }
};

/// Compares two sequences of messages and calls `report` for each difference, in the order of both:
/// what only A has before what only B has. The messages live until `report` returns. What they say
/// is to be ignored has no differences.
///
/// A message matches one of its kind that has the same identity (identity.h), or any of its kind
/// where nothing identifies it. While the next messages of both sides are equal, no others are
/// held. Else both sides are read ahead, a little first, and as far as `look_ahead` allows if they
/// do not agree again there. What is read is matched so that as many messages as possible are
/// equal, then as many as possible of one identity; half of that is reported, and so on. So what is
/// inserted or left out is found as such as long as it is shorter than what is read ahead.
DiffSummary diff_messages(MessageSource &a, MessageSource &b,
                          const std::function<void(const MessageDifference &)> &report,
                          const LookAhead &look_ahead = {});

} // namespace kvt_tool
