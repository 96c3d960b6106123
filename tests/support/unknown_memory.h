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

/// What a block of `size` bytes has beyond the first `known` counts as never stored.
void forget_beyond(size_t known, void *block, size_t size);

} // namespace kvt_test
