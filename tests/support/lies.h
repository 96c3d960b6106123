// Texts whose counts lie at several depths at once.
#pragma once

#include <string>

#include "engine/row.h"
#include "support/random_records.h"

namespace kvt_test {

/// Makes some blocks of a text lie, or all of them: after its lines a block gets counts, most of
/// them wrong, and runs that replace what was read, with elements that lie as well. The table is
/// that of records whose envelope names no kind.
std::string lie(const std::string &text, const kvt_str::Record &table, Random &random);

} // namespace kvt_test
