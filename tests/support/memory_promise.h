// What the readers promise of their memory, whatever a text says and whichever allocations fail
// (docs/guarantees.md). A sanitizer sees the rest: what is read, stored or freed that is not there.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "support/failing_set.h"

namespace kvt_test {

/// What was promised and does not hold; empty when all does.
struct MemoryVerdict {
    std::string problem;
    size_t allocations = 0; ///< that the reader asked for, those that failed too
};

/// Reads a text by kvt_msg_from_str while allocations fail:
///
/// - it returns -1 for a text that is refused anyway and where the record's own allocation failed,
///   which is the first one, and then hands nothing out and leaves nothing behind;
/// - else the record is valid, as check_in_part (record_checker.h) tells, and holds all that is
///   left allocated;
/// - and when its counts tell what there is, a release leaves nothing behind.
MemoryVerdict check_memory_of_message(const char *text, const FailingSet &failing);

/// Reads a text by kvt_msg_arr_from_str while allocations fail:
///
/// - it returns -1, hands nothing out and leaves nothing behind;
/// - or every message has a kind, and a text in a block of just its size or a null pointer, which
///   only an allocation that failed explains; nothing else is left;
/// - and each of the texts is a message of its kind again.
MemoryVerdict check_memory_of_sequence(const char *text, uint32_t length,
                                       const FailingSet &failing);

} // namespace kvt_test
