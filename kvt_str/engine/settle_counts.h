// Sees to the counts of a record, once it is read: a line of the text may have made them differ
// from the elements that are there.
#pragma once

#include "engine/read_block.h"

namespace kvt_str {

/// Counts that shall agree with the elements are made to: a greater count is lowered; elements
/// beyond a smaller one are released, and with the last one the array.
///
/// Counts that stay as they were read are remembered, where the elements own something: the record
/// may be an element that is replaced. A count that cannot be remembered for want of memory is set
/// to what was read. The record of a message is replaced by nothing, and needs none of that.
void settle_counts(BlockReader &block);

/// Makes the count of a row agree.
void make_count_agree(const Row &row, void *record, uint64_t elements);

} // namespace kvt_str
