// JSON that nobody would write on purpose: made from good JSON by small and large changes.
#pragma once

#include <string>

#include "support/random_records.h"

namespace kvt_test {

/// Changes a text once: a character, a value, a key, a part or its end.
std::string mutate_json(std::string json, Random &random);

} // namespace kvt_test
