// Sees to the counts of a record, once it is read: a line of the text may have made them differ
// from the elements that are there.
#pragma once

#include "engine/read_block.h"

namespace kvt_str {

/// Counts that shall agree with the elements are made to: a greater count is lowered; elements
/// beyond a smaller one are released, and with the last one the array.
///
/// Where counts stay as they were read, the true number of elements is remembered, if these own
/// something: the record may be an element that is replaced. Where there is no memory to remember
/// it, the count becomes true. The record of a message is replaced by nothing, and needs none of
/// that.
void settle_counts(BlockReader &block);

} // namespace kvt_str
