// Checks what every record promises that was read, whatever its text said: by a walk over its
// table. Used where texts are made by chance, and so no test can say what their records hold.
#pragma once

#include <cstddef>
#include <string>

#include "engine/row.h"

namespace kvt_test {

struct Verdict {
    std::string problem; ///< where the first broken promise is and which; empty when all hold
    size_t blocks = 0;   ///< blocks of the heap that the record holds, with itself
};

/// Checks a record on the heap that was read with Counts::agree from `text`:
///
/// - a pointer is null or holds a block of its own that nothing else in the record holds;
/// - an array or run has no more elements than its block has room for and than its key stands in
///   the text, and is null beside a count of 0;
/// - texts end within their member, joined strings within their block; the length of a joined
///   string is that of the string and its NUL, and 0 beside null, unless the text says a length;
/// - slots are counted up to their capacity, unless the text says their count.
Verdict check_agreeing(const kvt_str::Record &table, const void *record, const char *text);

/// The same for one that was read with Counts::as_read. Its counts may promise more than there is,
/// so `agreeing`, the record read with Counts::agree from the same text, tells the elements that
/// can be looked at: the counts must not be smaller, they must be the same unless the text says
/// them, and the elements must be the same.
Verdict check_as_read(const kvt_str::Record &table, const void *record, const void *agreeing,
                      const char *text);

/// The same for one that was read with Counts::as_read while allocations failed, and a MemoryWatch
/// marked growth. No other record tells its elements then: what lies in its blocks and is not
/// marked is there. Its counts must not promise more than that unless the text says them.
Verdict check_in_part(const kvt_str::Record &table, const void *record, const char *text);

/// Sets the counts of such a record to what lies in its blocks, so that it can be released. Among
/// that may be elements that are all zero: the room of an array that has not grown is cleared.
void count_what_is_there(const kvt_str::Record &table, void *record);

/// The bytes that may be used of a block of the heap. Where knows_blocks() tells so, 0 for what
/// begins no such block; elsewhere such an address must not be asked for.
size_t block_size(const void *block);

/// True in programs built with a sanitizer that knows all blocks.
bool knows_blocks();

} // namespace kvt_test
