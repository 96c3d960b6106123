// The heap that the codec gets while a proof runs: blocks come from one piece of memory, know their
// size, and go away all at once. A program that links heap.cpp wraps calloc, realloc and free.
#pragma once

#include <cstddef>

namespace kvt_prove {

/// How many blocks there are that have not been freed.
size_t blocks_alive();

/// The size of a block that is alive, in bytes; 0 for null. What is no such block ends the program.
size_t block_size(const void *block);

/// Forgets all blocks, freed or not. From now on they are those of an input, for what is reported.
void begin_blocks_of(const char *input);

} // namespace kvt_prove
