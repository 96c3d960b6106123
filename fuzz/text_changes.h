// Changes texts of messages by what the tables know: lines are put in, doubled, moved and dropped,
// values and kinds are changed, counts lie, messages are added.
#pragma once

#include <string>

#include "support/random_records.h"

namespace kvt_fuzz {

/// The text after a few changes, or now and then another one.
std::string change_text(std::string text, kvt_test::Random &random);

} // namespace kvt_fuzz
