// What a comparison of two records promises, for any records.
#pragma once

#include <string>

#include "model/fields.h"

namespace kvt_test {

/// What does not hold of the differences between two records of a kind; empty when all does:
///
/// - a record has no differences from itself;
/// - where there are none, both are written alike; where both are written alike, there are none but
///   in the digits of floats that are not written;
/// - a path leads to the field, in the record whose path it is, and the values there differ;
/// - what is removed and added makes up for the lengths of the lists;
/// - with the records exchanged the differences are the same, the other way round.
std::string broken_diff_promise(const kvt_tool::MessageKind &kind, const void *a, const void *b);

} // namespace kvt_test
