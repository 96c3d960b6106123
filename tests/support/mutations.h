// Texts that nobody would write on purpose: made from good ones by small and large changes.
#pragma once

#include <string>

#include "engine/row.h"
#include "support/random_records.h"

namespace kvt_test {

/// Changes a text once: a character, a line, a value or an end. Lines that are put in have keys of
/// the table or of the records in it.
std::string mutate(std::string text, const kvt_str::Record &table, Random &random);

} // namespace kvt_test
