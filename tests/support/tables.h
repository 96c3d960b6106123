// The tables that the tests go through.
#pragma once

#include <string>
#include <vector>

#include "engine/codec.h"

namespace kvt_test {

/// The records of all kinds of messages, and those of the tests' own.
std::vector<const kvt_str::Record *> all_tables();

/// Writes a record as the block "some_block" of a level, into a buffer of exactly the size that is
/// measured. Fails when another size is written.
std::string write_block(const kvt_str::Codec &codec, const void *record, unsigned level);
std::string write_block(const kvt_str::Record &table, const void *record, unsigned level);

} // namespace kvt_test
