// Reads a record's block alone, by the codec and by the literal form: what a test needs of the
// engine's own entry, in one place.
#pragma once

#include "engine/row.h"

namespace kvt_test {

/// How the counts of what is read are treated: left as the text says, as kvt_msg_from_str does, or
/// made to agree with the elements, as kvt_msg_arr_from_str does.
enum class CountsOf { a_message, a_sequence };

/// Reads the block whose opening line `text` begins with into a zeroed record, and returns the
/// position of the first line after it.
using BlockReader = const char *(const kvt_str::Record &table, const char *text, void *record,
                                 CountsOf counts);

BlockReader read_block;
BlockReader read_block_literally;

} // namespace kvt_test
