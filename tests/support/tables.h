// The tables that the tests go through.
#pragma once

#include <vector>

#include "record/row.h"

namespace kvt_test {

/// The records of all kinds of messages, and those of the tests' own.
std::vector<const kvt_str::Record *> all_tables();

} // namespace kvt_test
