// What the memory sanitizer takes for never stored. Does nothing without it.
//
// Only the codec's memory is watched: calloc clears, so what is unknown is what a block gains by
// realloc. The stacks and blocks of the tests, of GoogleTest and of the C++ library count as
// stored.
#pragma once

#include <cstddef>

namespace kvt_test {

/// How many bytes a block has, or 0 for NULL.
size_t known_size(void *block);

/// To be told of a block that realloc has made of `old`, which had `known` bytes: what it has
/// gained counts as never stored. NULL when realloc has failed.
void block_has_grown(void *old, size_t known, void *block, size_t size);

/// To be told of a block, or NULL, before it is released: whoever gets it next need not have stored
/// into it.
void block_is_released(void *block);

} // namespace kvt_test
